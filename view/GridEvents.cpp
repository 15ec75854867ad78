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

void GridEvents::Tabella_Click(int Index) {
    activatePane(m_editor, Index);
    m_editor.gridCommands().enable(m_editor);
}

void GridEvents::Tabella_DblClick(int Index) {
    m_cellEditor.IniziaEdit(Index);
}

void GridEvents::Tabella_KeyPress(int Index, int KeyAscii) {
    if (KeyAscii == enterCode)
        m_cellEditor.IniziaEdit(Index);
}

void GridEvents::Tabella_KeyDown(int Index, int KeyCode, int Shift) {
    const Grid &grid = m_editor.Tabella(Index);
    if (grid.Row() == 0 && grid.Col() == 0)
        return;
    if (Shift == ctrlOnly && (KeyCode == insertKey || KeyCode == cKey))
        m_clipboard.COPIA_AreaTabella(Index);
    else if ((Shift == shiftOnly && KeyCode == insertKey) || (Shift == ctrlOnly && KeyCode == vKey))
        m_clipboard.INCOLLA_AreaTabella(Index);
}

void GridEvents::Tabella_LeaveCell(int Index) {
    m_cellEditor.Interrompiedit(Index);
}

void GridEvents::Tabella_Scroll(int Index) {
    Grid &grid = m_editor.Tabella(Index);
    // Beyond the last row or column there is room only to stay level with the other grid.
    grid.setSelection(singleCell(std::min(grid.TopRow(), grid.Rows() - 1), std::min(grid.LeftCol(), grid.Cols() - 1)));
    m_cellEditor.Interrompiedit(Index); // also when that cell was current already
    AllineaTopLeftTabelle(m_editor, Index);
}

void GridEvents::Tabella_Revealed(int Index) {
    m_cellEditor.Interrompiedit(Index); // its cell is no longer under it
    AllineaTopLeftTabelle(m_editor, Index);
}

void GridEvents::Tabella_SelChange(int Index) {
    mirrorSelection(m_editor, Index);
}

void GridEvents::Tabella_MouseDown(int Index, Qt::MouseButton button, int row, int column,
                                   const QPoint &globalPosition) {
    // A press on a header may leave the current cell where it is, in this pane and in the other one.
    if (row < 1 || column < 1) {
        for (const int pane : {0, 1})
            m_cellEditor.Interrompiedit(pane);
    }
    if (button != Qt::RightButton)
        return;
    activatePane(m_editor, Index);
    m_popups.popUp(Index, row, column, globalPosition);
}

} // namespace qir
