#pragma once

#include "base/BitMatrix.h"
#include "platform/grid/GridRange.h"

#include <cstdint>
#include <vector>

namespace qir {

/// A cell's background: red 255, green and blue in the next two bytes.
enum class CellColour : std::int32_t {
    Red = 0x0000FF,   ///< RGB(255,0,0): the cell differs.
    White = 0xFFFFFF, ///< RGB(255,255,255): everything else.
};

/// The background colour of every cell of a grid, one flag a cell, rows and columns counted as the grid counts them
/// (row 0 and column 0 are the fixed ones and stay white). White outside.
class CellColours {
public:
    CellColours() = default;
    /// All white, for a grid of so many rows and columns, fixed ones included.
    CellColours(int rows, int columns);

    CellColour at(int row, int column) const;
    /// Returns whether the colour changed; outside, and in the fixed row and column, nothing changes.
    bool set(int row, int column, CellColour colour);

    /// Gives every cell of `window` the colour that `different` says: red where (row, column) is set, white where it
    /// is clear or has no such element. Both count rows and columns as the grid does; whole words of a row are compared
    /// and only rows that change are written. Returns the least block that holds every changed cell.
    GridRange paint(const GridRange &window, const BitMatrix &different);

    /// Cuts, or extends with white cells.
    void setShape(int rows, int columns);
    /// Reorders the record rows: afterwards row i + 1 is the one that was row order[i] + 1.
    void permuteRecords(const std::vector<std::uint32_t> &order);

    int rows() const { return static_cast<int>(m_red.rows()); }
    int columns() const { return static_cast<int>(m_red.columns()); }
    bool rowHasRed(int row) const {
        return row >= 0 && m_red.nextColumn(static_cast<std::size_t>(row), 0) < m_red.columns();
    }
    /// How many cells are red; costs nothing.
    std::size_t redCount() const { return m_red.count(); }

private:
    BitMatrix m_red;
};

} // namespace qir
