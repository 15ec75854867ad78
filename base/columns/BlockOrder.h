#pragma once

#include "base/columns/ColumnBlock.h"

#include <cstdint>
#include <span>
#include <vector>

namespace qir {

/// Values that most blocks are made of.
inline constexpr qsizetype usualBlockValues = 65536;
/// With more bytes of text than these a block has fewer values, one at least.
inline constexpr qsizetype mostBlockBytes = qsizetype{32} << 20;

/// The values of a column's blocks in another order: value i is the one that stood at order[i], counted through all
/// blocks. The blocks are of one type; `order` may leave values out and repeat them.
std::vector<ColumnBlock> reordered(std::span<const ColumnBlock> blocks, std::span<const std::uint32_t> order);

} // namespace qir
