#include "view/GridAlignment.h"

#include "platform/grid/Grid.h"

#include <QLineEdit>

namespace qir {

namespace {

/// The follower raises no LeaveCell that would end an edit in it.
void endEditOfFollower(EditorContext &editor, int pane) {
    if (!editor.txtEdit(pane).isHidden())
        editor.endEdit();
}

} // namespace

void AllineaTopLeftTabelle(EditorContext &editor, int Index) {
    const int Other = 1 - Index;
    if (!editor.DtbAperto(Other))
        return;
    endEditOfFollower(editor, Other);
    editor.Tabella(Other).followScroll(editor.Tabella(Index));
}

void mirrorSelection(EditorContext &editor, int Index) {
    const int Other = 1 - Index;
    if (!editor.DtbAperto(Other))
        return;
    AllineaTopLeftTabelle(editor, Index);
    editor.Tabella(Other).followSelection(editor.Tabella(Index));
}

void mirrorRowHeight(EditorContext &editor, int Index, int row) {
    if (!editor.gridsShowSameTable())
        return;
    endEditOfFollower(editor, 1 - Index);
    editor.Tabella(1 - Index).followRowHeight(editor.Tabella(Index), row);
}

void mirrorColumnWidth(EditorContext &editor, int Index, int column) {
    if (!editor.gridsShowSameTable())
        return;
    endEditOfFollower(editor, 1 - Index);
    editor.Tabella(1 - Index).followColumnWidth(editor.Tabella(Index), column);
}

} // namespace qir
