#pragma once

#include <cstddef>
#include <functional>
#include <limits>

namespace qir {

/// Does something for each of `count` numbers from 0 on, on the cores there are; what each does must concern nobody
/// else. Throws what the first of them has thrown, once all have ended.
void inParallel(std::size_t count, const std::function<void(std::size_t index)> &work,
                std::size_t mostAtOnce = std::numeric_limits<std::size_t>::max());

/// The same for columns of so many records: one after the other, in this thread, where they are too short for threads
/// to pay; else a few at a time, each of which may take the memory of a column.
void forEachColumn(std::size_t columns, std::size_t records, const std::function<void(std::size_t column)> &work);

} // namespace qir
