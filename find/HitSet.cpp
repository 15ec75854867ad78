#include "find/HitSet.h"

#include <algorithm>
#include <bit>

namespace qir {

HitSet::HitSet(int records, int fields)
    : m_records(std::max(records, 0))
    , m_fields(std::max(fields, 0))
    , m_words(static_cast<std::size_t>((std::int64_t{m_records} * m_fields + wordBits - 1) / wordBits))
    , m_sums(m_words.size() / wordsPerSum + 1) {}

bool HitSet::holds(HitCell cell) const {
    return cell.record >= 1 && cell.record <= m_records && cell.field >= 1 && cell.field <= m_fields;
}

std::int64_t HitSet::indexOf(HitCell cell) const {
    return std::int64_t{cell.record - 1} * m_fields + cell.field - 1;
}

HitCell HitSet::cellOf(std::int64_t index) const {
    return {static_cast<int>(index / m_fields) + 1, static_cast<int>(index % m_fields) + 1};
}

bool HitSet::at(HitCell cell) const {
    if (!holds(cell))
        return false;
    const std::int64_t index = indexOf(cell);
    return (m_words[static_cast<std::size_t>(index / wordBits)] >> (index % wordBits) & 1U) != 0;
}

void HitSet::set(HitCell cell, bool hit) {
    if (!holds(cell) || at(cell) == hit)
        return;
    const std::int64_t index = indexOf(cell);
    const auto word = static_cast<std::size_t>(index / wordBits);
    m_words[word] ^= std::uint64_t{1} << (index % wordBits);
    m_count += hit ? 1 : -1;
    m_summed = std::min(m_summed, word / wordsPerSum + 1);
}

std::optional<HitCell> HitSet::nextFrom(HitCell from) const {
    const std::int64_t cells = std::int64_t{m_records} * m_fields;
    const std::int64_t start = std::max<std::int64_t>(indexOf(from), 0);
    if (start >= cells)
        return std::nullopt;
    auto word = static_cast<std::size_t>(start / wordBits);
    std::uint64_t bits = m_words[word] & (~std::uint64_t{0} << (start % wordBits));
    while (bits == 0 && ++word < m_words.size())
        bits = m_words[word];
    if (bits == 0)
        return std::nullopt;
    return cellOf(static_cast<std::int64_t>(word) * wordBits + std::countr_zero(bits));
}

std::optional<HitCell> HitSet::previousFrom(HitCell from) const {
    const std::int64_t cells = std::int64_t{m_records} * m_fields;
    const std::int64_t start = std::min(indexOf(from), cells - 1);
    if (start < 0)
        return std::nullopt;
    auto word = static_cast<std::size_t>(start / wordBits);
    std::uint64_t bits = m_words[word] & (~std::uint64_t{0} >> (wordBits - 1 - start % wordBits));
    while (bits == 0 && word > 0)
        bits = m_words[--word];
    if (bits == 0)
        return std::nullopt;
    return cellOf(static_cast<std::int64_t>(word) * wordBits + wordBits - 1 - std::countl_zero(bits));
}

void HitSet::sumUp() const {
    for (; m_summed < m_sums.size(); ++m_summed) {
        if (m_summed == 0) {
            m_sums[0] = 0;
            continue;
        }
        std::int64_t sum = m_sums[m_summed - 1];
        for (std::size_t word = (m_summed - 1) * wordsPerSum; word < m_summed * wordsPerSum; ++word)
            sum += std::popcount(m_words[word]);
        m_sums[m_summed] = sum;
    }
}

std::optional<HitCell> HitSet::hit(std::int64_t number) const {
    if (number < 0 || number >= m_count)
        return std::nullopt;
    sumUp();
    const auto behind = std::upper_bound(m_sums.begin(), m_sums.end(), number);
    const auto sum = static_cast<std::size_t>(behind - m_sums.begin()) - 1;
    std::int64_t left = number - m_sums[sum];
    std::size_t word = sum * wordsPerSum;
    while (left >= std::popcount(m_words[word]))
        left -= std::popcount(m_words[word++]);
    std::uint64_t bits = m_words[word];
    for (; left > 0; --left)
        bits &= bits - 1; // takes the lowest one away
    return cellOf(static_cast<std::int64_t>(word) * wordBits + std::countr_zero(bits));
}

} // namespace qir
