#include "base/FreedMemory.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#define QIR_OWN_FREE 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QIR_OWN_FREE 0
#endif
#endif
#ifndef QIR_OWN_FREE
#define QIR_OWN_FREE 1
#endif

namespace {

// Constant-initialised: memory is given back before any constructor runs.
constinit std::atomic<int> wipers = 0;

} // namespace

namespace qir {

FreedMemoryWipe::FreedMemoryWipe() {
    wipers.fetch_add(1, std::memory_order_relaxed);
}

FreedMemoryWipe::~FreedMemoryWipe() {
    wipers.fetch_sub(1, std::memory_order_relaxed);
}

bool FreedMemoryWipe::works() {
    return QIR_OWN_FREE != 0;
}

} // namespace qir

#if QIR_OWN_FREE

// The allocator's own overwriting (M_PERTURB) leaves out the blocks that it keeps for the next request of their size,
// which are all small ones. Seen from the executable, these two come before the C library's for every library.

namespace {

// A block with a mapping of its own goes back to the system, which wipes it before anybody has it; to write it over
// would bring in again all pages of it that were given back before. The allocator's mark for it, below the size:
bool isMapped(const void *memory) {
    constexpr std::size_t mappedBit = 2;
    std::size_t head = 0;
    std::memcpy(&head, static_cast<const char *>(memory) - sizeof head, sizeof head);
    return (head & mappedBit) != 0;
}

} // namespace

// NOLINTBEGIN(*-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,*-no-malloc,*-inconsistent-declaration-parameter-name):
// the allocator's own calls under the names that it gives them
extern "C" {

void __libc_free(void *memory);
void *__libc_realloc(void *memory, std::size_t size);

__attribute__((visibility("default"))) void free(void *memory) {
    if (memory != nullptr && wipers.load(std::memory_order_relaxed) > 0 && !isMapped(memory))
        explicit_bzero(memory, malloc_usable_size(memory));
    __libc_free(memory);
}

__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size) {
    if (memory == nullptr || wipers.load(std::memory_order_relaxed) == 0 || (isMapped(memory) && size > 0))
        return __libc_realloc(memory, size);
    if (size == 0) {
        free(memory);
        return nullptr;
    }
    const std::size_t before = malloc_usable_size(memory);
    if (size <= before) {
        explicit_bzero(static_cast<char *>(memory) + size, before - size);
        return __libc_realloc(memory, size);
    }
    void *larger = std::malloc(size);
    if (larger != nullptr) {
        std::memcpy(larger, memory, before);
        free(memory);
    }
    return larger;
}
}
// NOLINTEND(*-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,*-no-malloc,*-inconsistent-declaration-parameter-name)

#endif
