#pragma once

#include <QChar>

#include <functional>

QT_BEGIN_NAMESPACE
class QPainter;
class QRectF;
class QString;
QT_END_NAMESPACE

namespace qir {

/// True for a line end of any kind.
bool isLineEnd(QChar character);

/// True for a character that takes room, or none, and shows nothing: line ends, tabs, controls, the blank that keeps
/// words together, marks of no width.
bool isInvisible(QChar character);

/// Draws a small sign for each invisible character of a text over the room that it takes: a hook for a line end, an
/// arrow for a tab, a ring for a blank, a bar for any other. `edge` gives where the part before a character ends;
/// `area` is the height of the line. The text itself stays as it is drawn and measured.
void drawInvisibleSigns(QPainter &painter, const QString &text, const QRectF &area,
                        const std::function<qreal(qsizetype index)> &edge);

} // namespace qir
