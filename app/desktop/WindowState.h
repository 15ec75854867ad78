#pragma once

#include "base/state/Remembered.h"

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// Puts a window that is not shown yet where it was last, as far as the screens of today have that place.
void restoreWindowPlace(QWidget &window, const Remembered &remembered);

/// Makes a window that is not shown yet no larger than its screen has room for with a frame round it.
void fitToScreen(QWidget &window);

void rememberWindowPlace(const QWidget &window, Remembered &remembered);

} // namespace qir
