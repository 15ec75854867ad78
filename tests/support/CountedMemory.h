#pragma once

#include <cstddef>

namespace qir {

/// Counts what this process allocates from its making on. Builds without the address sanitizer count nothing.
class CountedMemory {
public:
    CountedMemory();

    /// False where nothing is counted.
    static bool counts();
    /// The most bytes that were held at once, beyond what was held at the beginning.
    std::size_t peak() const;
    std::size_t allocations() const;

private:
    std::size_t m_before;
    std::size_t m_allocationsBefore;
};

} // namespace qir
