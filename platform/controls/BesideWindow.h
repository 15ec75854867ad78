#pragma once

#include <QRect>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// Where a window of a wanted size, frame included, stands beside another one: on its right, its left, below or above,
/// the first of these where it has all its size, else the largest where it has at least `least`. Without such a place
/// it stands in the screen's lower right corner.
QRect placeBeside(const QRect &window, const QSize &wanted, const QSize &least, const QRect &screen);

/// Puts a window that does not show yet there, with the size that it has.
void moveBeside(QWidget &window, const QWidget &other);

} // namespace qir
