#include "app/GridConnections.h"

#include "platform/controls/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/CellEditor.h"
#include "view/GridEvents.h"

#include <QEvent>
#include <QHeaderView>
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
    const Grid *grid = &m_editor.Tabella(pane);
    const auto onEvent = [this, pane, grid](auto signal, auto procedure) {
        connect(grid, signal, this, [this, pane, procedure](auto... arguments) {
            runCommand([&] { (m_grid.*procedure)(pane, arguments...); });
        });
    };
    onEvent(&Grid::Click, &GridEvents::Tabella_Click);
    onEvent(&Grid::DblClick, &GridEvents::Tabella_DblClick);
    onEvent(&Grid::KeyPress, &GridEvents::Tabella_KeyPress);
    onEvent(&Grid::KeyDown, &GridEvents::Tabella_KeyDown);
    onEvent(&Grid::LeaveCell, &GridEvents::Tabella_LeaveCell);
    onEvent(&Grid::Scroll, &GridEvents::Tabella_Scroll);
    onEvent(&Grid::SelChange, &GridEvents::Tabella_SelChange);
    onEvent(&Grid::MouseDown, &GridEvents::Tabella_MouseDown);

    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, [this, pane] { placeEditorLater(pane); });
    m_editor.Tabella(pane).installEventFilter(this);
}

void GridConnections::connectEditor(int pane) {
    QLineEdit &txtEdit = m_editor.txtEdit(pane);
    // A cell's text is taken whole, whatever its length: opening the editor must not change it.
    txtEdit.setMaxLength(std::numeric_limits<int>::max());
    connect(&txtEdit, &QLineEdit::textChanged, this,
            [this, pane] { runCommand([&] { m_cellEditor.txtEdit_Change(pane); }); });
    connect(&txtEdit, &QLineEdit::returnPressed, this,
            [this, pane] { runCommand([&] { m_cellEditor.txtEdit_KeyPress(pane, enterCode); }); });
}

bool GridConnections::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        for (const int pane : {0, 1}) {
            if (watched == &m_editor.Tabella(pane))
                placeEditorLater(pane);
        }
    }
    return QObject::eventFilter(watched, event);
}

void GridConnections::placeEditorLater(int pane) {
    if (!m_editor.txtEdit(pane).isHidden())
        QMetaObject::invokeMethod(
            this, [this, pane] { m_cellEditor.placeEditor(pane); }, Qt::QueuedConnection);
}

} // namespace qir
