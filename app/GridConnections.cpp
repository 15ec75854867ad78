#include "app/GridConnections.h"

#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/CellEditor.h"
#include "view/GridAlignment.h"
#include "view/GridEvents.h"

#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>

#include <limits>

namespace qir {

namespace {

constexpr int enterCode = 13;

} // namespace

void GridConnections::connectPane(int pane) {
    connectGrid(pane);
    connectEditor(pane);
}

void GridConnections::connectGrid(int pane) {
    Grid *grid = &m_editor.Tabella(pane);
    connect(grid, &Grid::Click, this, [this, pane] { runCommand([&] { m_grid.Tabella_Click(pane); }); });
    connect(grid, &Grid::DblClick, this, [this, pane] { runCommand([&] { m_grid.Tabella_DblClick(pane); }); });
    connect(grid, &Grid::LeaveCell, this, [this, pane] { runCommand([&] { m_grid.Tabella_LeaveCell(pane); }); });
    connect(grid, &Grid::SelChange, this, [this, pane] { runCommand([&] { m_grid.Tabella_SelChange(pane); }); });
    connect(grid, &Grid::Scroll, this, [this, pane] { runCommand([&] { m_grid.Tabella_Scroll(pane); }); });
    connect(grid, &Grid::Revealed, this, [this, pane] { runCommand([&] { m_grid.Tabella_Revealed(pane); }); });
    connect(grid, &Grid::KeyPress, this,
            [this, pane](int KeyAscii) { runCommand([&] { m_grid.Tabella_KeyPress(pane, KeyAscii); }); });
    connect(grid, &Grid::KeyDown, this, [this, pane](int KeyCode, int Shift) {
        runCommand([&] { m_grid.Tabella_KeyDown(pane, KeyCode, Shift); });
    });
    connect(grid, &Grid::MouseDown, this,
            [this, pane](Qt::MouseButton button, int row, int column, const QPoint &globalPosition) {
                runCommand([&] { m_grid.Tabella_MouseDown(pane, button, row, column, globalPosition); });
            });

    connect(grid, &Grid::RowResized, this, [this, pane](int row) { mirrorRowHeight(m_editor, pane, row); });
    connect(grid, &Grid::ColumnResized, this, [this, pane](int column) { mirrorColumnWidth(m_editor, pane, column); });
    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, [this, pane] { placeEditorLater(pane); });
    grid->installEventFilter(this);
}

void GridConnections::connectEditor(int pane) {
    QLineEdit &txtEdit = m_editor.txtEdit(pane);
    // A cell's text is taken whole, whatever its length: opening the editor must not change it.
    txtEdit.setMaxLength(std::numeric_limits<int>::max());
    connect(&txtEdit, &QLineEdit::textChanged, this,
            [this, pane] { runCommand([&] { m_cellEditor.txtEdit_Change(pane); }); });
    connect(&txtEdit, &QLineEdit::returnPressed, this,
            [this, pane] { runCommand([&] { m_cellEditor.txtEdit_KeyPress(pane, enterCode); }); });
    txtEdit.installEventFilter(this);
}

bool GridConnections::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress && tabPressed(watched, static_cast<const QKeyEvent &>(*event)))
        return true;
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        for (const int pane : {0, 1}) {
            if (watched == &m_editor.Tabella(pane))
                placeEditorLater(pane);
        }
    }
    return QObject::eventFilter(watched, event);
}

bool GridConnections::tabPressed(const QObject *watched, const QKeyEvent &key) {
    const bool back = key.key() == Qt::Key_Backtab || key.modifiers().testFlag(Qt::ShiftModifier);
    if ((key.key() != Qt::Key_Tab && key.key() != Qt::Key_Backtab) ||
        key.modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier))
        return false;
    for (const int pane : {0, 1}) {
        if (watched == &m_editor.txtEdit(pane)) {
            runCommand([&] { m_cellEditor.editBeside(pane, back ? -1 : 1); });
            return true;
        }
    }
    return false;
}

void GridConnections::placeEditorLater(int pane) {
    if (!m_editor.txtEdit(pane).isHidden())
        QMetaObject::invokeMethod(
            this, [this, pane] { m_cellEditor.placeEditor(pane); }, Qt::QueuedConnection);
}

} // namespace qir
