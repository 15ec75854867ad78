#pragma once

#include <cstddef>
#include <cstdint>

namespace qir::test {

/// What the monkey does in one step follows from one number alone, so that a run can be replayed with steps left out.
using Step = std::uint64_t;

/// A stream of numbers that follows from its seed, on every machine the same.
class Numbers {
public:
    explicit Numbers(std::uint64_t seed)
        : m_state(seed) {}

    std::uint64_t next() {
        m_state += 0x9e3779b97f4a7c15U;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
        return mixed ^ (mixed >> 31U);
    }
    /// 0 .. count - 1; 0 for a count of 0 or less.
    int below(int count) { return count > 0 ? static_cast<int>(next() % static_cast<std::uint64_t>(count)) : 0; }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }
    /// One of a list that is not empty.
    template<class List>
    const auto &oneOf(const List &list) {
        return list[static_cast<decltype(list.size())>(below(static_cast<int>(list.size())))];
    }

private:
    std::uint64_t m_state;
};

} // namespace qir::test
