#pragma once

namespace qir {

/// A block of grid cells, bounds included, rows and columns counted as the grid counts them: row 0 is the header row,
/// column 0 the fixed column. Empty when its last row or column stands before its first.
struct GridRange {
    int firstRow = 0;
    int firstColumn = 0;
    int lastRow = -1;
    int lastColumn = -1;

    bool isEmpty() const { return lastRow < firstRow || lastColumn < firstColumn; }
    bool contains(int row, int column) const {
        return row >= firstRow && row <= lastRow && column >= firstColumn && column <= lastColumn;
    }
    friend bool operator==(const GridRange &, const GridRange &) = default;
};

} // namespace qir
