#include "platform/grid/CellTextDrawing.h"

#include "platform/controls/InvisibleSigns.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace qir {

namespace {

/// No more of a text than could ever show: laying out a text of megabytes for one cell would stop the window.
QString showablePart(const QString &text, int cellWidth) {
    constexpr qsizetype spare = 64;
    const qsizetype most = 2 * static_cast<qsizetype>(std::max(cellWidth, 0)) + spare;
    return text.size() > most ? text.left(most) : text;
}

int roomForText(int cellWidth) {
    return std::max(cellWidth - 2 * cellMargin, 0);
}

/// What is laid out to show a text, which is what column fitting measures: with a blank in front, which is not shown
/// but shifts the tab stops.
QString withBlank(const QString &line) {
    return u' ' + line;
}

qreal shownWidth(const QFontMetricsF &metrics, const QString &line) {
    return metrics.horizontalAdvance(withBlank(line)) - metrics.horizontalAdvance(u' ');
}

} // namespace

QString oneLine(QString text) {
    std::replace_if(text.begin(), text.end(), isLineEnd, QChar(u' '));
    return text;
}

QString fittedText(const QFontMetrics &metrics, const QString &text, int cellWidth) {
    const QFontMetricsF exact(metrics);
    const int room = roomForText(cellWidth);
    const QString line = oneLine(showablePart(text, cellWidth));
    const QString fitted = exact.elidedText(withBlank(line), Qt::ElideRight, room + exact.horizontalAdvance(u' '));
    if (fitted.startsWith(u' '))
        return fitted.sliced(1);
    return exact.horizontalAdvance(fitted) <= room ? fitted : QString();
}

bool isCutOff(const QFontMetrics &metrics, const QString &text, int cellWidth) {
    if (std::any_of(text.begin(), text.end(), isLineEnd))
        return true;
    const QString part = showablePart(text, cellWidth);
    return part.size() < text.size() || shownWidth(QFontMetricsF(metrics), part) > roomForText(cellWidth);
}

void drawCellText(QPainter &painter, const QRect &cell, const QString &text, Qt::Alignment horizontal) {
    if (text.isEmpty())
        return;
    const QRectF room = cell.adjusted(cellMargin, 0, -cellMargin, 0);
    const QFontMetricsF metrics(painter.fontMetrics());
    const QString line = fittedText(painter.fontMetrics(), text, cell.width());
    const Qt::LayoutDirection direction = painter.layoutDirection();
    const bool atRight = QStyle::visualAlignment(direction, horizontal).testFlag(Qt::AlignRight);
    QPointF place(atRight ? room.right() - shownWidth(metrics, line) : room.left(),
                  room.top() + (room.height() - metrics.height()) / 2 + metrics.ascent());
    // In a window from right to left a number's sign or a path's first separator would go to the other end.
    const bool fromRight = direction == Qt::RightToLeft && line.isRightToLeft();
    painter.setLayoutDirection(fromRight ? Qt::RightToLeft : Qt::LeftToRight);
    if (!fromRight)
        place.rx() -= metrics.horizontalAdvance(u' '); // outside the room, in the margin
    // Drawn at a point a text has the tab stops that it is measured with; drawn into a rectangle it has none or others.
    painter.drawText(place, withBlank(line));
    // Signs stand over the room that a fit leaves for what they stand for; they never widen a column.
    const QString whole = text.left(std::min(line.size(), text.size()) - (line.size() < text.size() ? 1 : 0));
    if (std::any_of(whole.begin(), whole.end(), isInvisible)) {
        const LaidOutLine drawn(withBlank(line), painter.font(), painter.layoutDirection());
        drawInvisibleSigns(painter, withBlank(whole), drawn, {place.x(), qreal(cell.top())}, cell.height());
    }
    painter.setLayoutDirection(direction);
}

} // namespace qir
