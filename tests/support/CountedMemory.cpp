#include "tests/support/CountedMemory.h"

#include <algorithm>

#ifdef __SANITIZE_ADDRESS__
// The sanitizer's run time has these; this compiler comes without the header that says so.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*onAllocation)(const volatile void *, std::size_t),
                                              void (*onFree)(const volatile void *));
std::size_t __sanitizer_get_allocated_size(const volatile void *memory);
}
#endif

namespace qir {

namespace {

std::size_t heldNow = 0;
std::size_t heldMost = 0;
std::size_t allocated = 0;

#ifdef __SANITIZE_ADDRESS__
void onAllocation(const volatile void *, std::size_t size) {
    heldNow += size;
    heldMost = std::max(heldMost, heldNow);
    ++allocated;
}
void onFree(const volatile void *memory) {
    if (memory)
        heldNow -= std::min(heldNow, __sanitizer_get_allocated_size(memory));
}
const int hooked = __sanitizer_install_malloc_and_free_hooks(onAllocation, onFree);
#else
const int hooked = 0;
#endif

} // namespace

CountedMemory::CountedMemory()
    : m_before(heldNow)
    , m_allocationsBefore(allocated) {
    heldMost = heldNow;
}

bool CountedMemory::counts() {
    return hooked != 0;
}

std::size_t CountedMemory::peak() const {
    return heldMost - std::min(heldMost, m_before);
}

std::size_t CountedMemory::allocations() const {
    return allocated - m_allocationsBefore;
}

} // namespace qir
