#include "qirtbase/model/BodyMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace qir {

void giveBack(QByteArrayView bytes) noexcept {
    static const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(bytes.data());
    const std::uintptr_t first = (begin + page - 1) / page * page;
    const std::uintptr_t end = (begin + static_cast<std::uintptr_t>(bytes.size())) / page * page;
    // Where the system refuses the memory is held until the block is freed, and nothing else is lost.
    if (first < end)
        (void)::madvise(reinterpret_cast<void *>(first), end - first, MADV_DONTNEED);
}

} // namespace qir
