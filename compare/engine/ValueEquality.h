#pragma once

#include "base/columns/ColumnBlock.h"

#include <QVariant>

#include <cmath>
#include <cstdint>
#include <span>

namespace qir {

/// True when two values of a component are the same value: numbers by value whatever their types (true is -1 and
/// false 0, as everywhere between caller and component; all not-a-numbers are one value), texts by code unit. A
/// number never equals a text: QVariant's own == would find 5 equal to "5".
///
/// An empty value equals another empty one and what a field without a value holds: the number 0 and the empty text.
bool valuesEqual(const QVariant &left, const QVariant &right);

/// The same of two numbers.
inline bool realsEqual(double left, double right) {
    return left == right || (std::isnan(left) && std::isnan(right));
}

/// One bit for each value, in successive rows of a matrix: `stride` words apart.
struct RowBits {
    std::span<std::uint64_t> words; ///< The word of the first row and all behind it.
    std::size_t stride;
    std::uint64_t bit; ///< Within a word.
};

/// Compares `count` values, from `leftFirst` and from `rightFirst` on, and sets the bits of those that differ, as
/// valuesEqual() has it: numbers by value whatever their types, texts by what they say; a number never equals a text.
/// Memory that both share is not looked at.
void markDifferences(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst,
                     qsizetype count, const RowBits &rows);

/// True where any of them differs.
bool anyDifference(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst,
                   qsizetype count);

} // namespace qir
