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

bool gridsStandApart(const EditorContext &editor) {
    const Grid &left = editor.Tabella(0);
    const Grid &right = editor.Tabella(1);
    if (!left.Visible() || !right.Visible() || left.Row() < 1 || right.Row() < 1)
        return false;
    const bool otherRow = left.Row() != right.Row() && left.Row() < right.Rows() && right.Row() < left.Rows();
    const bool otherColumn = left.Col() != right.Col() && left.Col() < right.Cols() && right.Col() < left.Cols();
    return otherRow || otherColumn;
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
