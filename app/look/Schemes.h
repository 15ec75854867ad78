#pragma once

#include <QPalette>

namespace qir {

/// The colours of a scheme that is the editor's own, for desktops that bring none.
QPalette lightScheme();
QPalette darkScheme();

/// True for light text on a dark ground.
bool isDark(const QPalette &palette);

/// How well two colours are told apart, from 1 (not at all) to 21 (black and white): the ratio of their luminances as
/// the guidelines for accessible web content define it, which ask for 4.5.
double contrast(const QColor &one, const QColor &other);

} // namespace qir
