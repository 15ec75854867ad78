#pragma once

#include "platform/grid/GridRange.h"

#include <QtCore/qnamespace.h>

#include <optional>

namespace qir {

/// The current cell (row, column) and the other corner of the selected block, counted as the grid counts.
struct GridSelection {
    int row = 0;
    int column = 0;
    int rowEnd = 0;
    int columnEnd = 0;

    /// The selected block with its bounds in order.
    GridRange range() const;
    friend bool operator==(const GridSelection &, const GridSelection &) = default;
};

/// How many rows and columns a grid has, the fixed ones included, and how many rows it shows at once.
struct GridExtent {
    int rows = 0;
    int columns = 0;
    int pageRows = 1;
};

/// The current cell and nothing else.
GridSelection singleCell(int row, int column);
/// Cuts a selection to what a grid has; record cells are preferred over the fixed row and column.
GridSelection cutTo(const GridSelection &selection, const GridExtent &extent);
/// Where a key takes a selection, or nothing for a key that does not move. Arrows, Home, End, Page keys; Ctrl goes to
/// the edge, Shift moves the other corner and leaves the current cell.
std::optional<GridSelection> moved(const GridSelection &from, int key, Qt::KeyboardModifiers modifiers,
                                   const GridExtent &extent);

} // namespace qir
