#pragma once

#include "qirtbase/model/Table.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qir {

/// Records in another order: the one at i is the one that stood at order[i] before.
using RecordOrder = std::vector<std::uint32_t>;

/// Whether each of `count` records is there once.
bool isPermutation(std::span<const std::uint32_t> order, std::size_t count);
/// The order that leads back; `order` must be a permutation.
RecordOrder inverse(std::span<const std::uint32_t> order);

/// A column's values in another order.
Column reordered(const Column &column, std::span<const std::uint32_t> order);
/// Whether `now` has nothing but the records of `before` in this order, value by value and bit for bit, in the same
/// fields. `order` must be a permutation.
bool isReordered(const Table &now, const Table &before, std::span<const std::uint32_t> order);

} // namespace qir
