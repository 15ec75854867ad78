#include "base/BitMatrix.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>

namespace qir {

namespace {

constexpr std::size_t bitsPerWord = 64;

} // namespace

BitMatrix::BitMatrix(std::size_t rows, std::size_t columns)
    : m_rows(rows)
    , m_columns(columns)
    , m_wordsPerRow(columns / bitsPerWord + (columns % bitsPerWord != 0 ? 1 : 0)) {
    if (m_wordsPerRow != 0 && rows > std::numeric_limits<std::size_t>::max() / m_wordsPerRow)
        throw std::length_error("BitMatrix: too many flags");
    m_words.resize(rows * m_wordsPerRow);
}

bool BitMatrix::at(std::size_t row, std::size_t column) const {
    if (row >= m_rows || column >= m_columns)
        return false;
    return (m_words[row * m_wordsPerRow + column / bitsPerWord] >> (column % bitsPerWord)) & 1U;
}

void BitMatrix::set(std::size_t row, std::size_t column, bool value) {
    if (row >= m_rows || column >= m_columns)
        return;
    std::uint64_t &word = m_words[row * m_wordsPerRow + column / bitsPerWord];
    const std::uint64_t bit = std::uint64_t{1} << (column % bitsPerWord);
    if (((word & bit) != 0) == value)
        return;
    word ^= bit;
    if (value)
        ++m_count;
    else
        --m_count;
}

void BitMatrix::clear() {
    std::ranges::fill(m_words, 0);
    m_count = 0;
}

std::span<const std::uint64_t> BitMatrix::row(std::size_t row) const {
    return {m_words.data() + row * m_wordsPerRow, m_wordsPerRow};
}

void BitMatrix::setRow(std::size_t row, std::span<const std::uint64_t> words) {
    std::uint64_t *target = m_words.data() + row * m_wordsPerRow;
    const std::size_t used = m_columns % bitsPerWord;
    const std::uint64_t lastMask = used == 0 ? ~std::uint64_t{0} : (std::uint64_t{1} << used) - 1;
    for (std::size_t i = 0; i < m_wordsPerRow; ++i) {
        const std::uint64_t word = i + 1 == m_wordsPerRow ? words[i] & lastMask : words[i];
        m_count -= static_cast<std::size_t>(std::popcount(target[i]));
        m_count += static_cast<std::size_t>(std::popcount(word));
        target[i] = word;
    }
}

} // namespace qir
