#include "view/GridEvents.h"

#include "pane/ActivePane.h"
#include "platform/grid/Grid.h"
#include "view/AreaClipboard.h"
#include "view/CellEditor.h"
#include "view/GridAlignment.h"
#include "view/GridPopups.h"

#include <algorithm>

namespace qir {

namespace {

constexpr int enterCode = 13;
constexpr int insertKey = 45;
constexpr int cKey = 67;
constexpr int vKey = 86;
constexpr int shiftOnly = 1;
constexpr int ctrlOnly = 2;

} // namespace

void GridEvents::Tabella_Click(int pane) {
    activatePane(m_editor, pane);
    m_editor.gridCommands().enable(m_editor);
}

void GridEvents::Tabella_DblClick(int pane) {
    m_cellEditor.IniziaEdit(pane);
}

void GridEvents::Tabella_KeyPress(int pane, int KeyAscii) {
    if (KeyAscii == enterCode)
        m_cellEditor.IniziaEdit(pane);
}

void GridEvents::Tabella_KeyDown(int pane, int KeyCode, int Shift) {
    const Grid &grid = m_editor.Tabella(pane);
    if (grid.Row() == 0 && grid.Col() == 0)
        return;
    if (Shift == ctrlOnly && (KeyCode == insertKey || KeyCode == cKey))
        m_clipboard.COPIA_AreaTabella(pane);
    else if ((Shift == shiftOnly && KeyCode == insertKey) || (Shift == ctrlOnly && KeyCode == vKey))
        m_clipboard.INCOLLA_AreaTabella(pane);
}

void GridEvents::Tabella_LeaveCell(int pane) {
    m_cellEditor.Interrompiedit(pane);
}

void GridEvents::Tabella_Scroll(int pane) {
    Grid &grid = m_editor.Tabella(pane);
    // Beyond the last row or column there is room only to stay level with the other grid.
    grid.setSelection(singleCell(std::min(grid.TopRow(), grid.Rows() - 1), std::min(grid.LeftCol(), grid.Cols() - 1)));
    m_cellEditor.Interrompiedit(pane); // also when that cell was current already
    AllineaTopLeftTabelle(m_editor, pane);
}

void GridEvents::Tabella_Revealed(int pane) {
    m_cellEditor.Interrompiedit(pane); // its cell is no longer under it
    AllineaTopLeftTabelle(m_editor, pane);
}

void GridEvents::Tabella_SelChange(int pane) {
    mirrorSelection(m_editor, pane);
}

void GridEvents::Tabella_MouseDown(int pane, Qt::MouseButton button, int row, int column,
                                   const QPoint &globalPosition) {
    // A press on a header may leave the current cell where it is, in this pane and in the other one.
    if (row < 1 || column < 1) {
        for (const int each : {0, 1})
            m_cellEditor.Interrompiedit(each);
    }
    if (button != Qt::RightButton)
        return;
    activatePane(m_editor, pane);
    m_popups.popUp(pane, row, column, globalPosition);
}

} // namespace qir
