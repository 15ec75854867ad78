#pragma once

#include <QString>

#include <cstddef>

namespace qir {

/// Room that any text of formatNumber() fits into, in characters.
inline constexpr std::size_t numberTextCapacity = 32;

/// Writes the shortest decimal that leadingNumber() reads back as the same double, bit for bit, always with "." as
/// the decimal point. From 1e-5 up to below 1e15 without exponent ("100000", "0.25"), outside with one ("1e+20").
/// `value` must be finite. Returns one past the last character written; nothing is terminated.
char *formatNumber(char *out, double value);

/// The same for whole numbers.
char *formatNumber(char *out, int value);

/// formatNumber() as a QString.
QString numberText(double value);

} // namespace qir
