#include "platform/grid/CellColours.h"

#include <algorithm>
#include <bit>

namespace qir {

namespace {

constexpr std::size_t wordBits = 64;

std::size_t unsignedOf(int value) {
    return static_cast<std::size_t>(std::max(value, 0));
}

/// The bits of word `word` of a row that stand for columns first..last.
std::uint64_t columnMask(std::size_t word, std::size_t first, std::size_t last) {
    const std::size_t begin = word * wordBits;
    if (last < begin || first >= begin + wordBits)
        return 0;
    const std::size_t low = first > begin ? first - begin : 0;
    const std::size_t high = std::min(last - begin, wordBits - 1);
    return (~std::uint64_t{0} << low) & (~std::uint64_t{0} >> (wordBits - 1 - high));
}

} // namespace

CellColours::CellColours(int rows, int columns)
    : m_red(unsignedOf(rows), unsignedOf(columns)) {}

CellColour CellColours::at(int row, int column) const {
    if (row < 1 || column < 1)
        return CellColour::White;
    return m_red.at(unsignedOf(row), unsignedOf(column)) ? CellColour::Red : CellColour::White;
}

bool CellColours::set(int row, int column, CellColour colour) {
    if (row < 1 || column < 1 || row >= rows() || column >= columns() || at(row, column) == colour)
        return false;
    m_red.set(unsignedOf(row), unsignedOf(column), colour == CellColour::Red);
    return true;
}

GridRange CellColours::paint(const GridRange &window, const BitMatrix &different) {
    const int firstRow = std::max(window.firstRow, 1);
    const int lastRow = std::min(window.lastRow, rows() - 1);
    const int firstColumn = std::max(window.firstColumn, 1);
    const int lastColumn = std::min(window.lastColumn, columns() - 1);
    if (firstRow > lastRow || firstColumn > lastColumn)
        return {};

    const std::size_t words = m_red.wordsPerRow();
    std::vector<std::uint64_t> mask(words);
    for (std::size_t word = 0; word < words; ++word)
        mask[word] = columnMask(word, unsignedOf(firstColumn), unsignedOf(lastColumn));

    std::vector<std::uint64_t> painted(words);
    std::vector<std::uint64_t> changedColumns(words);
    int firstChanged = -1;
    int lastChanged = -1;
    for (int row = firstRow; row <= lastRow; ++row) {
        const auto wanted =
            unsignedOf(row) < different.rows() ? different.row(unsignedOf(row)) : std::span<const std::uint64_t>();
        const auto present = m_red.row(unsignedOf(row));
        std::uint64_t changed = 0;
        for (std::size_t word = 0; word < words; ++word) {
            const std::uint64_t value = word < wanted.size() ? wanted[word] : 0;
            const std::uint64_t flips = (value ^ present[word]) & mask[word];
            painted[word] = present[word] ^ flips;
            changedColumns[word] |= flips;
            changed |= flips;
        }
        if (changed == 0)
            continue;
        m_red.setRow(unsignedOf(row), painted);
        if (firstChanged < 0)
            firstChanged = row;
        lastChanged = row;
    }
    if (firstChanged < 0)
        return {};

    const auto isSet = [](std::uint64_t word) { return word != 0; };
    const auto low = std::find_if(changedColumns.begin(), changedColumns.end(), isSet);
    const auto high = std::find_if(changedColumns.rbegin(), changedColumns.rend(), isSet);
    const auto lowest = (low - changedColumns.begin()) * std::ptrdiff_t{wordBits} + std::countr_zero(*low);
    const auto highest =
        (high.base() - changedColumns.begin()) * std::ptrdiff_t{wordBits} - 1 - std::countl_zero(*high);
    return {firstChanged, static_cast<int>(lowest), lastChanged, static_cast<int>(highest)};
}

void CellColours::setShape(int rows, int columns) {
    BitMatrix reshaped(unsignedOf(rows), unsignedOf(columns));
    if (m_red.count() > 0) {
        std::vector<std::uint64_t> words(reshaped.wordsPerRow());
        for (std::size_t row = 0; row < std::min(reshaped.rows(), m_red.rows()); ++row) {
            const auto present = m_red.row(row);
            for (std::size_t word = 0; word < words.size(); ++word)
                words[word] = word < present.size() ? present[word] : 0;
            reshaped.setRow(row, words);
        }
    }
    m_red = std::move(reshaped);
}

void CellColours::permuteRecords(const std::vector<std::uint32_t> &order) {
    if (m_red.count() == 0)
        return;
    const BitMatrix before = m_red;
    for (std::size_t i = 0; i < order.size() && i + 1 < m_red.rows(); ++i)
        m_red.setRow(i + 1, before.row(order[i] + std::size_t{1}));
}

} // namespace qir
