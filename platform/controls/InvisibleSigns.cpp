#include "platform/controls/InvisibleSigns.h"

#include <QLineF>
#include <QPainter>
#include <QPolygonF>
#include <QRectF>
#include <QString>

#include <algorithm>

namespace qir {

namespace {

constexpr QChar keepingBlank(0x00A0);

/// A line with a head of two strokes at its end.
void drawArrow(QPainter &painter, QPointF from, QPointF to, qreal head) {
    painter.drawLine(from, to);
    const qreal back = to.x() > from.x() ? -head : head;
    painter.drawPolyline(QPolygonF({to + QPointF(back, -head), to, to + QPointF(back, head)}));
}

void drawSign(QPainter &painter, QChar character, const QRectF &room) {
    const QPointF middle = room.center();
    const qreal unit = std::max(room.height() / 10, 1.0);
    if (character == u'\t') {
        drawArrow(painter, {room.left() + 1, middle.y()}, {std::max(room.right() - 1, room.left() + 3), middle.y()},
                  unit);
    } else if (isLineEnd(character)) {
        const qreal right = room.left() + std::max(room.width() - 1, 3.0);
        painter.drawLine(QPointF(right, middle.y() - 2 * unit), QPointF(right, middle.y() + unit));
        drawArrow(painter, {right, middle.y() + unit}, {room.left(), middle.y() + unit}, unit);
    } else if (character == keepingBlank) {
        painter.drawEllipse(middle, unit, unit);
    } else {
        painter.drawLine(QPointF(room.left(), middle.y() - 3 * unit), QPointF(room.left(), middle.y() + 3 * unit));
    }
}

} // namespace

bool isLineEnd(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

bool isInvisible(QChar character) {
    if (character.unicode() >= u' ' && character.unicode() < 0x7F)
        return false;
    return isLineEnd(character) || character == keepingBlank || character.category() == QChar::Other_Control ||
           character.category() == QChar::Other_Format;
}

void drawInvisibleSigns(QPainter &painter, const QString &text, const QRectF &area,
                        const std::function<qreal(qsizetype index)> &edge) {
    if (std::none_of(text.begin(), text.end(), isInvisible))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0, 0, 160), 1));
    painter.setBrush(Qt::NoBrush);
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isInvisible(text[i]))
            drawSign(painter, text[i], {QPointF(edge(i), area.top()), QPointF(edge(i + 1), area.bottom())});
    }
    painter.restore();
}

} // namespace qir
