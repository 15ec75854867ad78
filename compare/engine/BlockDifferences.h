#pragma once

#include "base/columns/ColumnBlock.h"

#include <cstdint>
#include <span>

namespace qir {

/// Bits of rows: one for each value, `stride` words apart.
struct RowBits {
    std::span<std::uint64_t> words; ///< The word of the first row and all behind it.
    std::size_t stride;
    std::uint64_t bit; ///< Within a word.
};

/// Sets the bit of each of `count` values, from `leftFirst` and from `rightFirst` on, that differ as valuesEqual() has
/// it: numbers by value whatever their types, texts by what they say, a number never like a text. Equal memory is not
/// looked at.
void markDifferences(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst,
                     qsizetype count, const RowBits &rows);

/// True where any of them differs.
bool anyDifference(const ColumnBlock &left, qsizetype leftFirst, const ColumnBlock &right, qsizetype rightFirst,
                   qsizetype count);

} // namespace qir
