#pragma once

#include <cstddef>
#include <functional>

namespace qir {

/// Does something for each of `count` numbers from 0 on, on the cores there are; what each does must concern nobody
/// else. Throws what the first of them has thrown, once all have ended.
void inParallel(std::size_t count, const std::function<void(std::size_t index)> &work);

} // namespace qir
