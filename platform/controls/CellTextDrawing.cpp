#include "platform/controls/CellTextDrawing.h"

#include <QFontMetrics>
#include <QPainter>

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

} // namespace

QString fittedText(const QFontMetrics &metrics, const QString &text, int cellWidth) {
    return metrics.elidedText(showablePart(text, cellWidth), Qt::ElideRight, roomForText(cellWidth),
                              Qt::TextSingleLine);
}

bool isCutOff(const QFontMetrics &metrics, const QString &text, int cellWidth) {
    if (text.contains(u'\n') || text.contains(u'\r') || text.contains(QChar::LineSeparator))
        return true;
    const QString part = showablePart(text, cellWidth);
    return part.size() < text.size() || metrics.horizontalAdvance(part) > roomForText(cellWidth);
}

void drawCellText(QPainter &painter, const QRect &cell, const QString &text, Qt::Alignment horizontal) {
    if (text.isEmpty())
        return;
    const QRect room = cell.adjusted(cellMargin, 0, -cellMargin, 0);
    painter.drawText(room, static_cast<int>(horizontal | Qt::AlignVCenter) | Qt::TextSingleLine,
                     fittedText(painter.fontMetrics(), text, cell.width()));
}

} // namespace qir
