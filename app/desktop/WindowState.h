#pragma once

#include "base/state/Remembered.h"

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qir {

/// Puts a window that is not shown yet where it was last, as far as the screens of today have that place.
void restoreWindowPlace(QWidget &window, const Remembered &remembered);

void rememberWindowPlace(const QWidget &window, Remembered &remembered);

} // namespace qir
