#include "platform/grid/GridHeader.h"

#include "platform/controls/DifferenceSigns.h"
#include "platform/controls/PointerPlace.h"
#include "platform/grid/CellTextDrawing.h"
#include "platform/grid/GridModel.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionHeader>

#include <algorithm>

namespace qir {

GridHeader::GridHeader(Qt::Orientation orientation, PointerPlace &pointer, QWidget *parent)
    : QHeaderView(orientation, parent)
    , m_pointer(pointer) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // A column may be dragged to nothing; a row keeps a handle to be drawn open by.
    if (orientation == Qt::Horizontal)
        setMinimumSectionSize(0);
    setUserResizing(true);
}

void GridHeader::setMarks(int first, int last, int current) {
    if (first == m_firstMarked && last == m_lastMarked && current == m_current)
        return;
    m_firstMarked = first;
    m_lastMarked = last;
    m_current = current;
    viewport()->update();
}

void GridHeader::drawAgain(int first, int last) {
    const int begin = sectionViewportPosition(first);
    const int length = sectionViewportPosition(last) + sectionSize(last) - begin;
    const QRect all = viewport()->rect();
    viewport()->update(orientation() == Qt::Vertical ? QRect(0, begin, all.width(), length)
                                                     : QRect(begin, 0, length, all.height()));
}

void GridHeader::setUserResizing(bool allowed) {
    setSectionResizeMode(allowed ? Interactive : Fixed);
}

std::optional<int> GridHeader::sectionAt(const QPoint &globalPosition) const {
    const QPoint position = viewport()->mapFromGlobal(globalPosition);
    if (!viewport()->isVisible() || !viewport()->rect().contains(position))
        return std::nullopt;
    return logicalIndexAt(position);
}

void GridHeader::mousePressEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(m_pointer, event->globalPosition().toPoint());
    // The base class tells sections from their resize handles and says so by its signals.
    const auto modifiers = event->modifiers();
    const auto onSection =
        connect(this, &QHeaderView::sectionPressed, this, [&](int section) { Q_EMIT pressed(section, modifiers); });
    QHeaderView::mousePressEvent(event);
    disconnect(onSection);
    Q_EMIT buttonDown(event->button(), logicalIndexAt(event->position().toPoint()), event->globalPosition().toPoint());
}

void GridHeader::mouseMoveEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(m_pointer, event->globalPosition().toPoint());
    const auto onSection = connect(this, &QHeaderView::sectionEntered, this, &GridHeader::draggedTo);
    const auto onEdge = connect(this, &QHeaderView::sectionResized, this,
                                [this](int section, int, int pixels) { Q_EMIT resizedByUser(section, pixels); });
    QHeaderView::mouseMoveEvent(event);
    disconnect(onSection);
    disconnect(onEdge);
}

void GridHeader::mouseReleaseEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(m_pointer, event->globalPosition().toPoint());
    QHeaderView::mouseReleaseEvent(event);
}

void GridHeader::mouseDoubleClickEvent(QMouseEvent *event) {
    const PointerPlace::Handling handling(m_pointer, event->globalPosition().toPoint());
    QHeaderView::mouseDoubleClickEvent(event);
}

void GridHeader::contextMenuEvent(QContextMenuEvent *event) {
    // The press has been told already; the view must not take this for a menu key.
    event->accept();
}

void GridHeader::paintEvent(QPaintEvent *event) {
    if (count() == 0 || offset() < length()) {
        QHeaderView::paintEvent(event);
        return;
    }
    // Every section is scrolled away; the base class would paint them all.
    QPainter painter(viewport());
    QStyleOption option;
    option.initFrom(this);
    option.rect = viewport()->rect();
    style()->drawControl(QStyle::CE_HeaderEmptyArea, &option, &painter, this);
}

void GridHeader::paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const {
    if (!rect.isValid())
        return;
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = logicalIndex;
    option.position = QStyleOptionHeader::Middle;
    if (logicalIndex >= m_firstMarked && logicalIndex <= m_lastMarked)
        option.state |= QStyle::State_On;
    if (isEnabled())
        option.state |= QStyle::State_Enabled;
    if (window()->isActiveWindow())
        option.state |= QStyle::State_Active;

    painter->save();
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    painter->setClipRect(rect);
    painter->setPen(palette().color(QPalette::ButtonText));
    painter->setFont(font());
    if (orientation() == Qt::Vertical) {
        drawRowSigns(*painter, drawRowNumber(*painter, rect, logicalIndex), logicalIndex);
    } else {
        drawCellText(*painter, rect, model()->headerData(logicalIndex, orientation()).toString(), Qt::AlignLeft);
    }
    painter->restore();
}

/// Draws the row's number where the header tells it, and returns the room that is left for the signs.
QRect GridHeader::drawRowNumber(QPainter &painter, const QRect &rect, int section) const {
    const QString number = model()->headerData(section, Qt::Vertical).toString();
    if (number.isEmpty())
        return rect;
    drawCellText(painter, rect, number, Qt::AlignRight);
    const int room = std::max(rect.width() - painter.fontMetrics().horizontalAdvance(number) - 2 * cellMargin, 0);
    const int width = std::min(room, rect.height());
    return {isRightToLeft() ? rect.right() - width + 1 : rect.left(), rect.top(), width, rect.height()};
}

void GridHeader::drawRowSigns(QPainter &painter, const QRect &rect, int section) const {
    const bool current = section == m_current;
    const bool differs = model()->headerData(section, Qt::Vertical, GridModel::DiffersRole).toBool();
    if (current && !differs)
        drawCurrentMark(painter, rect);
    if (!differs)
        return;
    // Where both are to be shown each has one half; the one that points at the row is the one beside it.
    const int half = rect.width() / 2;
    const QRect start(rect.left(), rect.top(), half, rect.height());
    const QRect end(rect.left() + half, rect.top(), rect.width() - half, rect.height());
    if (current)
        drawCurrentMark(painter, isRightToLeft() ? start : end);
    drawDiffersSign(painter, current ? (isRightToLeft() ? end : start) : rect);
}

void GridHeader::drawCurrentMark(QPainter &painter, const QRect &rect) const {
    // A triangle that points at the row.
    const qreal half = qMin(rect.width(), rect.height()) / 4.0;
    const QPointF middle = QRectF(rect).center();
    const qreal towards = isRightToLeft() ? -half : half;
    QPainterPath triangle(middle - QPointF(towards / 2, half));
    triangle.lineTo(middle + QPointF(towards / 2, 0));
    triangle.lineTo(middle + QPointF(-towards / 2, half));
    triangle.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(triangle, painter.pen().color());
}

} // namespace qir
