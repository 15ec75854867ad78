#include "platform/controls/DifferenceSigns.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace qir {

namespace {

constexpr qreal mostSize = 14; // pixels
constexpr qreal thickness = 1.6;

/// A square in the middle of a place, with a little room round it.
QRectF squareIn(const QRectF &place) {
    const qreal side = std::min({place.width() - 2, place.height() - 2, mostSize});
    return {place.center().x() - side / 2, place.center().y() - side / 2, side, side};
}

/// Lines of the pen's colour while it lives.
class SignPen {
public:
    explicit SignPen(QPainter &painter)
        : m_painter(painter) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(painter.pen().color(), thickness, Qt::SolidLine, Qt::RoundCap));
        painter.setBrush(Qt::NoBrush);
    }
    ~SignPen() { m_painter.restore(); }
    SignPen(const SignPen &) = delete;
    SignPen &operator=(const SignPen &) = delete;

private:
    QPainter &m_painter;
};

} // namespace

void drawDiffersSign(QPainter &painter, const QRectF &place) {
    const SignPen pen(painter);
    const QRectF square = squareIn(place);
    const auto at = [&](qreal x, qreal y) {
        return QPointF(square.left() + x * square.width(), square.top() + y * square.height());
    };
    painter.drawLine(at(0.1, 0.36), at(0.9, 0.36));
    painter.drawLine(at(0.1, 0.64), at(0.9, 0.64));
    painter.drawLine(at(0.28, 0.95), at(0.72, 0.05));
}

void drawOnlyHereSign(QPainter &painter, const QRectF &place) {
    const SignPen pen(painter);
    const QRectF square = squareIn(place);
    const QPointF middle = square.center();
    const qreal arm = square.width() * 0.28;
    QPainterPath disc;
    disc.addEllipse(square);
    QPainterPath plus;
    plus.addRect(QRectF(middle.x() - arm, middle.y() - thickness / 2, 2 * arm, thickness));
    plus.addRect(QRectF(middle.x() - thickness / 2, middle.y() - arm, thickness, 2 * arm));
    plus.setFillRule(Qt::WindingFill);
    painter.fillPath(disc.subtracted(plus), painter.pen().color());
}

void drawMissingHereSign(QPainter &painter, const QRectF &place) {
    const SignPen pen(painter);
    QPen broken = painter.pen();
    broken.setStyle(Qt::DotLine);
    painter.setPen(broken);
    painter.drawEllipse(squareIn(place).adjusted(1, 1, -1, -1));
}

} // namespace qir
