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

void AllineaTopLeftTabelle(EditorContext &editor, int pane) {
    const int other = 1 - pane;
    if (!editor.DtbAperto(other))
        return;
    endEditOfFollower(editor, other);
    editor.Tabella(other).followScroll(editor.Tabella(pane));
}

void mirrorSelection(EditorContext &editor, int pane) {
    const int other = 1 - pane;
    if (!editor.DtbAperto(other))
        return;
    AllineaTopLeftTabelle(editor, pane);
    editor.Tabella(other).followSelection(editor.Tabella(pane));
}

void mirrorRowHeight(EditorContext &editor, int pane, int row) {
    if (!editor.gridsShowSameTable())
        return;
    endEditOfFollower(editor, 1 - pane);
    editor.Tabella(1 - pane).followRowHeight(editor.Tabella(pane), row);
}

void mirrorColumnWidth(EditorContext &editor, int pane, int column) {
    if (!editor.gridsShowSameTable())
        return;
    endEditOfFollower(editor, 1 - pane);
    editor.Tabella(1 - pane).followColumnWidth(editor.Tabella(pane), column);
}

} // namespace qir
