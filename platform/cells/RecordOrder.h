#pragma once

#include "platform/cells/CellColumn.h"

#include <cstdint>
#include <vector>

namespace qir {

/// The order in which a column's texts ascend: element i is the index of the text that comes to place i.
///
/// Empty texts come first, then those that are a number from end to end, by value (NaN, which a component may hold,
/// behind all others), then the others by their upper-cased code units (Unicode's rules whatever the locale) and, where
/// those are equal, by their own code units. What is still equal keeps its order. O(n log n); every text is read once,
/// and a number that the database holds as one is not made a text for it.
std::vector<std::uint32_t> ascendingOrder(const CellColumn &column);

} // namespace qir
