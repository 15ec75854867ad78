#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qir::test {

/// Where a random test takes its decisions from: the generators of a property, or the bytes of a fuzzed input.
class Choices {
public:
    Choices() = default;
    virtual ~Choices() = default;
    Choices(const Choices &) = delete;
    Choices &operator=(const Choices &) = delete;

    /// A number of [from, to); `from` is the least and less than `to`.
    virtual int inRange(int from, int to) = 0;
    /// Any 64 bits.
    virtual std::uint64_t bits() = 0;

    bool yesOrNo() { return inRange(0, 2) == 1; }
    template<class T>
    T elementOf(const std::vector<T> &elements) {
        return elements[static_cast<std::size_t>(inRange(0, static_cast<int>(elements.size())))];
    }
};

} // namespace qir::test
