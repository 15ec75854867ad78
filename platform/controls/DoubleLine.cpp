#include "platform/controls/DoubleLine.h"

#include <QPainter>

namespace qir {

namespace {

/// A line of so many pixels along the inner edge.
void drawInside(QPainter &painter, const QRect &area, int width, const QColor &colour) {
    QPen pen(colour, width);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.drawRect(QRectF(area).adjusted(width / 2.0, width / 2.0, -width / 2.0, -width / 2.0));
}

} // namespace

void drawDoubleLine(QPainter &painter, const QRect &area, int blackWidth) {
    painter.save();
    painter.setBrush(Qt::NoBrush);
    drawInside(painter, area, blackWidth, Qt::black);
    drawInside(painter, area.adjusted(blackWidth, blackWidth, -blackWidth, -blackWidth), 1, Qt::white);
    painter.restore();
}

} // namespace qir
