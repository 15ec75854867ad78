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
    m_rest.resize(m_wordsPerRow);
}

bool BitMatrix::at(std::size_t row, std::size_t column) const {
    if (row >= m_rows || column >= m_columns)
        return false;
    return (this->row(row)[column / bitsPerWord] >> (column % bitsPerWord)) & 1U;
}

void BitMatrix::set(std::size_t row, std::size_t column, bool value) {
    if (row >= m_rows || column >= m_columns || at(row, column) == value)
        return;
    ownRow(row)[column / bitsPerWord] ^= std::uint64_t{1} << (column % bitsPerWord);
    if (value)
        ++m_count;
    else
        --m_count;
}

void BitMatrix::clear() {
    m_words.clear();
    std::ranges::fill(m_rest, 0);
    m_count = 0;
}

std::span<const std::uint64_t> BitMatrix::row(std::size_t row) const {
    return row < storedRows() ? std::span(m_words).subspan(row * m_wordsPerRow, m_wordsPerRow) : std::span(m_rest);
}

void BitMatrix::setRow(std::size_t row, std::span<const std::uint64_t> words) {
    if (row >= storedRows() && std::ranges::equal(m_rest, words.first(m_wordsPerRow)))
        return;
    std::uint64_t *target = ownRow(row);
    const std::size_t used = m_columns % bitsPerWord;
    const std::uint64_t lastMask = used == 0 ? ~std::uint64_t{0} : (std::uint64_t{1} << used) - 1;
    for (std::size_t i = 0; i < m_wordsPerRow; ++i) {
        const std::uint64_t word = i + 1 == m_wordsPerRow ? words[i] & lastMask : words[i];
        m_count -= static_cast<std::size_t>(std::popcount(target[i]));
        m_count += static_cast<std::size_t>(std::popcount(word));
        target[i] = word;
    }
}

void BitMatrix::setBlock(std::size_t firstRow, std::size_t firstColumn) {
    if (firstRow >= m_rows || firstColumn >= m_columns)
        return;
    std::vector<std::uint64_t> block(m_wordsPerRow);
    for (std::size_t column = firstColumn; column < m_columns; ++column)
        block[column / bitsPerWord] |= std::uint64_t{1} << (column % bitsPerWord);
    storeRows(firstRow);
    const auto setIn = [&](std::uint64_t *words, std::size_t rows) {
        for (std::size_t i = 0; i < m_wordsPerRow; ++i) {
            m_count += rows * static_cast<std::size_t>(std::popcount(block[i] & ~words[i]));
            words[i] |= block[i];
        }
    };
    for (std::size_t row = firstRow; row < storedRows(); ++row)
        setIn(ownRow(row), 1);
    setIn(m_rest.data(), m_rows - storedRows());
}

std::uint64_t *BitMatrix::ownRow(std::size_t row) {
    storeRows(row + 1);
    return m_words.data() + row * m_wordsPerRow;
}

void BitMatrix::storeRows(std::size_t count) {
    for (std::size_t stored = storedRows(); stored < count; ++stored)
        m_words.insert(m_words.end(), m_rest.begin(), m_rest.end());
}

bool operator==(const BitMatrix &left, const BitMatrix &right) {
    if (left.m_rows != right.m_rows || left.m_columns != right.m_columns || left.m_count != right.m_count)
        return false;
    const std::size_t last = std::min(left.m_rows, std::max(left.storedRows(), right.storedRows()) + 1);
    for (std::size_t row = 0; row < last; ++row) {
        if (!std::ranges::equal(left.row(row), right.row(row)))
            return false;
    }
    return true;
}

} // namespace qir
