#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// A block of grid cells, counted from 1. A 0 stands for the first row or column, or for the last one.
struct CellWindow {
    int firstRow = 0;
    int lastRow = 0;
    int firstColumn = 0;
    int lastColumn = 0;
};

/// Paints a cell red where CelleDiverse says it differs, white elsewhere; nothing outside the grid.
void SetEqualColor(EditorContext &editor, int pane, int row, int column);

/// Paints the cells of a grid inside a window as CelleDiverse says. None of its bounds is 0.
void paintWindow(EditorContext &editor, int pane, const CellWindow &window);

} // namespace qir
