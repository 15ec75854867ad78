#pragma once

#include <QStringView>

#include <optional>

namespace qir {

/// The value of the number that a text begins with, 0 when it begins with none.
///
/// Blanks, tabs and line feeds are skipped wherever they stand, inside the number too. The number is a sign, decimal
/// digits with at most one point, and an exponent (e or d, either case) when digits follow it. Reading stops at the
/// first character that cannot go on. No locale, no other notation; digits are ASCII. A value past the range of
/// double is the largest finite double of its sign; one too small is 0. The nearest double is returned.
double leadingNumber(QStringView text);

/// The value of a text that is a number from its first to its last character (skipped blanks aside, at least one
/// digit), nothing when it is no such text. Same notation as leadingNumber().
std::optional<double> wholeNumber(QStringView text);

/// True when the number that a text begins with lies past the range of double, so that a finite one stands for it.
bool passesRange(QStringView text);

/// The value of a text that reads as one number: an optional sign, decimal digits with at most one point, and an
/// exponent (e or E, an optional sign, digits). Blanks may stand around it, nothing inside. Nothing for every other
/// text.
std::optional<double> plainNumber(QStringView text);

} // namespace qir
