#pragma once

#include "base/columns/ColumnBlock.h"

#include <cstdint>
#include <span>

namespace qir {

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
