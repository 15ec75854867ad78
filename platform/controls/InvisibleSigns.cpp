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

void drawInvisibleSigns(QPainter &painter, const QString &text, const LaidOutLine &drawn, QPointF left, qreal height) {
    constexpr int most = 256; // more characters without width than anybody tells apart
    constexpr int mostPlaced = 4096;
    const QRectF room = painter.window();
    const auto [first, end] = drawn.between(room.left() - left.x(), room.right() - left.x());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0, 0, 160), 1));
    painter.setBrush(Qt::NoBrush);
    int signs = 0;
    int placed = 0;
    for (qsizetype i = first; i < std::min(end, text.size()) && signs < most && placed < mostPlaced; ++i) {
        if (!isInvisible(text[i]))
            continue;
        ++placed;
        const QPointF from = left + QPointF(drawn.edge(i), 0);
        const QPointF to = left + QPointF(drawn.edge(i + 1), height);
        const QRectF place = QRectF(from, to).normalized();
        if (place.right() < room.left() || place.left() > room.right())
            continue;
        drawSign(painter, text[i], place);
        ++signs;
    }
    painter.restore();
}

bool goesBothWays(const QString &text, Qt::LayoutDirection direction) {
    const bool fromRight = direction == Qt::RightToLeft;
    return std::any_of(text.begin(), text.end(), [fromRight](QChar character) {
        switch (character.direction()) {
        case QChar::DirL:
        case QChar::DirEN:
        case QChar::DirAN:
            return fromRight;
        case QChar::DirR:
        case QChar::DirAL:
            return !fromRight;
        default:
            return false;
        }
    });
}

LaidOutLine::LaidOutLine(const QString &line, const QFont &font, Qt::LayoutDirection direction)
    : m_layout(std::make_unique<QTextLayout>(line, font))
    , m_mixed(goesBothWays(line, direction)) {
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(direction);
    m_layout->setTextOption(option);
    m_layout->beginLayout();
    m_line = m_layout->createLine();
    m_layout->endLayout();
}

LaidOutLine::~LaidOutLine() = default;

qreal LaidOutLine::edge(qsizetype index) const {
    return m_line.isValid() ? m_line.cursorToX(static_cast<int>(index)) : 0;
}

std::pair<qsizetype, qsizetype> LaidOutLine::between(qreal left, qreal right) const {
    if (m_mixed)
        return {0, m_layout->text().size()};
    const auto [first, last] = std::minmax({at(left), at(right)});
    return {first, last + 1};
}

qsizetype LaidOutLine::at(qreal x) const {
    return m_line.isValid() ? m_line.xToCursor(x, QTextLine::CursorOnCharacter) : 0;
}

} // namespace qir
