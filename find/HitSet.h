#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace qir {

/// A record cell of a table, counted from 1.
struct HitCell {
    int record = 0;
    int field = 0;
    friend bool operator==(const HitCell &, const HitCell &) = default;
};

/// Which cells of a table hit: a bit for each, in the order of its records, and in them of its fields. Finding the next
/// one, or the one of a number, passes over those in between by words.
class HitSet {
public:
    HitSet() = default;
    HitSet(int records, int fields);

    int records() const { return m_records; }
    int fields() const { return m_fields; }
    std::int64_t count() const { return m_count; }

    bool at(HitCell cell) const;
    /// Does nothing outside.
    void set(HitCell cell, bool hit);

    /// The first hit at `from` or behind it, the last one at `from` or before it.
    std::optional<HitCell> nextFrom(HitCell from) const;
    std::optional<HitCell> previousFrom(HitCell from) const;
    /// The hit of a number (0 is the first), nothing where there are no so many.
    std::optional<HitCell> hit(std::int64_t number) const;

private:
    static constexpr std::int64_t wordBits = 64;
    static constexpr std::size_t wordsPerSum = 64;

    bool holds(HitCell cell) const;
    std::int64_t indexOf(HitCell cell) const;
    HitCell cellOf(std::int64_t index) const;
    void sumUp() const;

    int m_records = 0;
    int m_fields = 0;
    std::int64_t m_count = 0;
    std::vector<std::uint64_t> m_words;
    mutable std::vector<std::int64_t> m_sums; // of the hits before every so many words; made when asked for
    mutable std::size_t m_summed = 0;         // so many of them hold
};

} // namespace qir
