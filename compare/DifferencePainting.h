#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// A window of grid cells, from 1; 0 stands for the first or the last there is.
struct CellWindow {
    int firstRow = 0;
    int lastRow = 0;
    int firstColumn = 0;
    int lastColumn = 0;
};

/// Paints a cell red where CelleDiverse says it differs, white elsewhere; nothing outside the grid.
void SetEqualColor(EditorContext &editor, int pane, int row, int column);

/// Paints the cells of a grid inside a window, its bounds all given, as CelleDiverse says.
void paintWindow(EditorContext &editor, int pane, const CellWindow &window);

} // namespace qir
