#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qir {

/// A two-dimensional array of flags, rows 0..rows()-1 and columns 0..columns()-1, that always knows how many of them
/// are set. A row is a run of 64-bit words (column c is bit c % 64 of word c / 64; bits beyond the last column are
/// 0), so that whole rows are compared and copied by word. Sizes multiply in 64 bits.
///
/// The last rows, as many as are alike, are kept once: a block of rows that only one of two tables has takes no memory.
class BitMatrix {
public:
    BitMatrix() = default;
    /// All clear.
    BitMatrix(std::size_t rows, std::size_t columns);

    std::size_t rows() const { return m_rows; }
    std::size_t columns() const { return m_columns; }
    /// How many flags are set; costs nothing.
    std::size_t count() const { return m_count; }

    /// A flag; false outside the bounds.
    bool at(std::size_t row, std::size_t column) const;
    /// Sets or clears a flag within the bounds; does nothing outside.
    void set(std::size_t row, std::size_t column, bool value);
    void clear();
    /// Sets all flags that stand both in `firstRow` or a later row and in `firstColumn` or a later column.
    void setBlock(std::size_t firstRow, std::size_t firstColumn);
    /// Bytes of memory held.
    std::size_t memory() const {
        return (m_words.capacity() + m_rest.capacity() + m_rowsSet.capacity()) * sizeof(std::uint64_t);
    }

    std::size_t wordsPerRow() const { return m_wordsPerRow; }
    /// The words of a row, for reading.
    std::span<const std::uint64_t> row(std::size_t row) const;
    /// Replaces a row; `words` has wordsPerRow() words, bits beyond the last column are dropped.
    void setRow(std::size_t row, std::span<const std::uint64_t> words);

    // Where flags are set, found by words: a bit is kept for each row that has any.

    /// The first row from `row` on that has a set flag, rows() when none has.
    std::size_t nextRow(std::size_t row) const;
    /// The last row up to `row` that has a set flag, rows() when none has.
    std::size_t previousRow(std::size_t row) const;
    /// How many rows have a set flag; costs no more than a look at one row.
    std::size_t rowCount() const { return m_rowCount + (restIsSet() ? m_rows - storedRows() : 0); }
    /// The first column of a row from `column` on whose flag is set, columns() when none is.
    std::size_t nextColumn(std::size_t row, std::size_t column) const;
    /// The last column of a row up to `column` whose flag is set, columns() when none is.
    std::size_t previousColumn(std::size_t row, std::size_t column) const;

    friend bool operator==(const BitMatrix &left, const BitMatrix &right);

private:
    std::size_t storedRows() const { return m_wordsPerRow == 0 ? 0 : m_words.size() / m_wordsPerRow; }
    /// The words of a row that is going to change.
    std::uint64_t *ownRow(std::size_t row);
    void storeRows(std::size_t count);
    void noteRow(std::size_t row);
    bool restIsSet() const;

    std::size_t m_rows = 0;
    std::size_t m_columns = 0;
    std::size_t m_wordsPerRow = 0;
    std::size_t m_count = 0;
    std::size_t m_rowCount = 0;           // of the first rows
    std::vector<std::uint64_t> m_words;   // of the first rows
    std::vector<std::uint64_t> m_rest;    // of each row behind them
    std::vector<std::uint64_t> m_rowsSet; // a bit for each of the first rows: whether it has a set flag
};

} // namespace qir
