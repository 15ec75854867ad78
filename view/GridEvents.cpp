#include "view/GridEvents.h"

#include "pane/ActivePane.h"
#include "pane/GridCommands.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/AreaClipboard.h"
#include "view/CellEditor.h"
#include "view/GridAlignment.h"
#include "view/GridPopups.h"

#include <QEvent>
#include <QHeaderView>

#include <algorithm>

namespace qir {

namespace {

constexpr int insertKey = 45;
constexpr int cKey = 67;
constexpr int vKey = 86;
constexpr int f2Key = 113;
constexpr int noModifier = 0;
constexpr int shiftOnly = 1;
constexpr int ctrlOnly = 2;

} // namespace

void GridEvents::connectPane(int pane) {
    Grid *grid = &m_editor.Tabella(pane);
    connect(grid, &Grid::Click, this, [this, pane] { runCommand([&] { Tabella_Click(pane); }); });
    connect(grid, &Grid::DblClick, this, [this, pane] { runCommand([&] { Tabella_DblClick(pane); }); });
    connect(grid, &Grid::LeaveCell, this, [this, pane] { runCommand([&] { Tabella_LeaveCell(pane); }); });
    connect(grid, &Grid::SelChange, this, [this, pane] { runCommand([&] { Tabella_SelChange(pane); }); });
    connect(grid, &Grid::Scroll, this, [this, pane] { runCommand([&] { Tabella_Scroll(pane); }); });
    connect(grid, &Grid::Revealed, this, [this, pane] { runCommand([&] { Tabella_Revealed(pane); }); });
    connect(grid, &Grid::KeyPress, this,
            [this, pane](int KeyAscii) { runCommand([&] { Tabella_KeyPress(pane, KeyAscii); }); });
    connect(grid, &Grid::KeyDown, this,
            [this, pane](int KeyCode, int Shift) { runCommand([&] { Tabella_KeyDown(pane, KeyCode, Shift); }); });
    connect(grid, &Grid::MouseDown, this,
            [this, pane](Qt::MouseButton button, int row, int column, const QPoint &globalPosition) {
                runCommand([&] { Tabella_MouseDown(pane, button, row, column, globalPosition); });
            });

    connect(grid, &Grid::RowResized, this, [this, pane](int row) { mirrorRowHeight(m_editor, pane, row); });
    connect(grid, &Grid::ColumnResized, this, [this, pane](int column) { mirrorColumnWidth(m_editor, pane, column); });
    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this, pane] { m_cellEditor.placeEditorLater(pane); });
    grid->installEventFilter(this);
}

bool GridEvents::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        for (const int pane : {0, 1}) {
            if (watched == &m_editor.Tabella(pane))
                m_cellEditor.placeEditorLater(pane);
        }
    }
    return QObject::eventFilter(watched, event);
}

void GridEvents::Tabella_Click(int pane) {
    activatePane(m_editor, pane);
    m_commands.enable(m_editor);
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
    else if (Shift == noModifier && KeyCode == f2Key)
        m_cellEditor.editCurrentCell(pane);
}

void GridEvents::Tabella_LeaveCell(int pane) {
    m_cellEditor.Interrompiedit(pane);
}

void GridEvents::Tabella_Scroll(int pane) {
    Grid &grid = m_editor.Tabella(pane);
    // Beyond the last row or column there is room only to stay level with the other grid.
    const int row = std::max(grid.nextShownRow(std::min(grid.TopRow(), grid.Rows() - 1), -1), 0);
    const int column = std::max(grid.nextShownColumn(std::min(grid.LeftCol(), grid.Cols() - 1), -1), 1);
    grid.setSelection(singleCell(row, column));
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
