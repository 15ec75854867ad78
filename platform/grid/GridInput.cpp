// What the user does in a grid: mouse, keys, headers.

#include "platform/grid/Grid.h"

#include "platform/controls/KeyCodes.h"
#include "platform/controls/PointerPlace.h"
#include "platform/grid/GridModel.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace qir {

namespace {

constexpr int dragStepMilliseconds = 40; // between two rows when a drag points outside
constexpr int enterCode = 13;

/// The key that moves from left to right what it moves from right to left.
int asSeen(int key, bool fromRight) {
    if (fromRight && key == Qt::Key_Left)
        return Qt::Key_Right;
    if (fromRight && key == Qt::Key_Right)
        return Qt::Key_Left;
    return key;
}

} // namespace

void Grid::pressColumn(int section, Qt::KeyboardModifiers modifiers) {
    if (section < 0)
        return;
    if (modifiers.testFlag(Qt::ShiftModifier))
        extendColumns(columnOf(section));
    else
        select({shownCells().firstRow, columnOf(section), shownCells().lastRow, columnOf(section)});
}

void Grid::pressRow(int section, Qt::KeyboardModifiers modifiers) {
    if (section < 0)
        return;
    if (modifiers.testFlag(Qt::ShiftModifier))
        extendRows(rowOf(section));
    else
        select({rowOf(section), shownCells().firstColumn, rowOf(section), shownCells().lastColumn});
}

void Grid::extendColumns(int column) {
    select({shownCells().firstRow, Col(), shownCells().lastRow, column});
}

void Grid::extendRows(int row) {
    select({Row(), shownCells().firstColumn, row, shownCells().lastColumn});
}

bool Grid::selectionHoldsRow(int row) const {
    const GridRange range = m_selection.range();
    return row >= range.firstRow && row <= range.lastRow;
}

void Grid::mousePressEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(*m_pointer, event->globalPosition().toPoint());
    const QModelIndex index = indexAt(event->position().toPoint());
    const auto [row, column] = cellAt(index);
    const bool left = event->button() == Qt::LeftButton;
    m_clickDue = left;
    m_dragging = left && index.isValid();
    if (m_dragging && event->modifiers().testFlag(Qt::ShiftModifier))
        select({Row(), Col(), row, column});
    else if (m_dragging || (event->button() == Qt::RightButton && !m_selection.range().contains(row, column)))
        select(singleCell(row, column));
    event->accept();
    Q_EMIT MouseDown(event->button(), row, column, event->globalPosition().toPoint());
}

void Grid::mouseMoveEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(*m_pointer, event->globalPosition().toPoint());
    event->accept();
    if (!m_dragging || !event->buttons().testFlag(Qt::LeftButton))
        return;
    m_dragPosition = event->position().toPoint();
    if (viewport()->rect().contains(m_dragPosition)) {
        m_dragTimer.stop();
        dragOn();
    } else if (!m_dragTimer.isActive()) {
        m_dragTimer.start(dragStepMilliseconds, this);
        dragOn();
    }
}

void Grid::mouseReleaseEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(*m_pointer, event->globalPosition().toPoint());
    event->accept();
    if (event->button() != Qt::LeftButton)
        return;
    endDrag();
    if (std::exchange(m_clickDue, false))
        Q_EMIT Click();
}

void Grid::endDrag() {
    m_dragging = false;
    m_dragTimer.stop();
}

void Grid::focusOutEvent(QFocusEvent *event) {
    QTableView::focusOutEvent(event);
    m_model->tellInFull(); // to who comes back
    endDrag();             // whoever has the focus now may get the button's release too
}

void Grid::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton) {
        mousePressEvent(event);
        return;
    }
    const PointerPlace::Handling handling(*m_pointer, event->globalPosition().toPoint());
    event->accept();
    const QModelIndex index = indexAt(event->position().toPoint());
    if (!index.isValid())
        return;
    const auto [row, column] = cellAt(index);
    select(singleCell(row, column));
    Q_EMIT DblClick();
}

void Grid::dragOn() {
    // Outside the cells the corner goes one row or column further each time, else it is the cell under the pointer.
    const QRect area = viewport()->rect();
    const auto along = [](int position, int extent, int end, int last, int under) {
        if (position < 0)
            return std::max(end - 1, std::min(1, last));
        if (position >= extent)
            return std::min(end + 1, last);
        return under < 0 ? last : under + 1;
    };
    const GridSelection from = inView(m_selection);
    const GridExtent extent = extentInView();
    const int row = along(m_dragPosition.y(), area.height(), from.rowEnd, extent.rows - 1, rowAt(m_dragPosition.y()));
    const int column =
        along(m_dragPosition.x(), area.width(), from.columnEnd, extent.columns - 1, columnAt(m_dragPosition.x()));
    const GridSelection to = fromView({from.row, from.column, row, column});
    select({Row(), Col(), to.rowEnd, to.columnEnd},
           area.contains(m_dragPosition) ? Reveal::Nothing : Reveal::FarCorner);
}

void Grid::timerEvent(QTimerEvent *event) {
    if (event->timerId() == m_dragTimer.timerId())
        dragOn();
    else
        QTableView::timerEvent(event);
}

void Grid::keyPressEvent(QKeyEvent *event) {
    const int key = event->key();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    const bool menu = isMenuShortcut(*event);
    event->setAccepted(enter || menu);
    if (const int code = virtualKeyCode(key); code != 0)
        Q_EMIT KeyDown(code, shiftMask(event->modifiers()));
    if (enter)
        Q_EMIT KeyPress(enterCode);
    else if (!event->text().isEmpty())
        Q_EMIT KeyPress(event->text().front().unicode());

    if (menu) {
        tellMenuKey(event->modifiers());
    } else if (event->matches(QKeySequence::SelectAll)) {
        event->accept();
        selectAll();
    } else if (const auto next =
                   moved(inView(m_selection), asSeen(key, isRightToLeft()), event->modifiers(), extentInView())) {
        event->accept();
        if (!showsAll() && (m_model->rowCount() == 0 || m_model->columnCount() == 0))
            return; // there is no cell to go to
        select(fromView(*next), Reveal::FarCorner);
        revealFarCorner(); // a key that moves no further shows the cell all the same
    }
}

void Grid::contextMenuEvent(QContextMenuEvent *event) {
    event->accept();
    // A press with the mouse has been told already.
    if (event->reason() == QContextMenuEvent::Keyboard)
        tellMenuKey(event->modifiers());
}

void Grid::tellMenuKey(Qt::KeyboardModifiers modifiers) {
    const int row = modifiers.testFlag(Qt::ControlModifier) ? 0 : Row();
    Q_EMIT MouseDown(Qt::RightButton, row, Col(), menuPosition(row));
}

} // namespace qir
