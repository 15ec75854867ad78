#pragma once

#include <QRect>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace qir {

/// Marks where a person is: a black line of so many pixels along the inner edge of `area`, and a white one inside it.
/// Seen on every colour, also on red and white and on the desktop's selection colour, whatever that is.
void drawDoubleLine(QPainter &painter, const QRect &area, int blackWidth);

} // namespace qir
