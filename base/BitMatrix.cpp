#include "base/BitMatrix.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>

namespace qir {

namespace {

constexpr std::size_t bitsPerWord = 64;

/// The first set bit from `from` on, of the first `size` ones; `size` when there is none.
std::size_t nextBit(std::span<const std::uint64_t> words, std::size_t from, std::size_t size) {
    if (from >= size)
        return size;
    std::size_t i = from / bitsPerWord;
    std::uint64_t word = words[i] & (~std::uint64_t{0} << (from % bitsPerWord));
    while (word == 0) {
        if (++i * bitsPerWord >= size)
            return size;
        word = words[i];
    }
    return std::min(size, i * bitsPerWord + static_cast<std::size_t>(std::countr_zero(word)));
}

/// The last set bit up to `from`, which there is; `none` when there is none.
std::size_t previousBit(std::span<const std::uint64_t> words, std::size_t from, std::size_t none) {
    std::size_t i = from / bitsPerWord;
    std::uint64_t word = words[i] & (~std::uint64_t{0} >> (bitsPerWord - 1 - from % bitsPerWord));
    while (word == 0) {
        if (i-- == 0)
            return none;
        word = words[i];
    }
    return i * bitsPerWord + bitsPerWord - 1 - static_cast<std::size_t>(std::countl_zero(word));
}

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
    noteRow(row);
}

void BitMatrix::clear() {
    m_words.clear();
    m_rowsSet.clear();
    m_rowCount = 0;
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
    noteRow(row);
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
    for (std::size_t row = firstRow; row < storedRows(); ++row) {
        setIn(ownRow(row), 1);
        noteRow(row);
    }
    setIn(m_rest.data(), m_rows - storedRows());
}

std::uint64_t *BitMatrix::ownRow(std::size_t row) {
    storeRows(row + 1);
    return m_words.data() + row * m_wordsPerRow;
}

void BitMatrix::storeRows(std::size_t count) {
    const std::size_t stored = storedRows();
    if (stored >= count)
        return;
    if (!restIsSet()) { // the usual case: many rows at once, none of which has to be looked at
        m_words.resize(count * m_wordsPerRow);
        m_rowsSet.resize((count - 1) / bitsPerWord + 1);
        return;
    }
    for (std::size_t row = stored; row < count; ++row) {
        m_words.insert(m_words.end(), m_rest.begin(), m_rest.end());
        noteRow(row);
    }
}

void BitMatrix::noteRow(std::size_t row) {
    if (row / bitsPerWord >= m_rowsSet.size())
        m_rowsSet.resize(row / bitsPerWord + 1);
    const std::uint64_t bit = std::uint64_t{1} << (row % bitsPerWord);
    const bool any = std::ranges::any_of(this->row(row), [](std::uint64_t word) { return word != 0; });
    std::uint64_t &word = m_rowsSet[row / bitsPerWord];
    if (((word & bit) != 0) == any)
        return;
    word ^= bit;
    if (any)
        ++m_rowCount;
    else
        --m_rowCount;
}

bool BitMatrix::restIsSet() const {
    return std::ranges::any_of(m_rest, [](std::uint64_t word) { return word != 0; });
}

std::size_t BitMatrix::nextRow(std::size_t row) const {
    const std::size_t stored = storedRows();
    if (const std::size_t found = nextBit(m_rowsSet, row, stored); found < stored)
        return found;
    row = std::max(row, stored);
    return row < m_rows && restIsSet() ? row : m_rows;
}

std::size_t BitMatrix::previousRow(std::size_t row) const {
    if (m_rows == 0)
        return m_rows;
    row = std::min(row, m_rows - 1);
    const std::size_t stored = storedRows();
    if (row >= stored && restIsSet())
        return row;
    return stored == 0 ? m_rows : previousBit(m_rowsSet, std::min(row, stored - 1), m_rows);
}

std::size_t BitMatrix::nextColumn(std::size_t row, std::size_t column) const {
    return row < m_rows ? nextBit(this->row(row), column, m_columns) : m_columns;
}

std::size_t BitMatrix::previousColumn(std::size_t row, std::size_t column) const {
    if (row >= m_rows || m_columns == 0)
        return m_columns;
    return previousBit(this->row(row), std::min(column, m_columns - 1), m_columns);
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
