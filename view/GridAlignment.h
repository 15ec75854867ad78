#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// Scrolls the grid of the pane beside `pane` to the first row and column that this pane's grid shows, when a database
/// is open there. The other grid raises nothing; an edit in it ends.
void AllineaTopLeftTabelle(EditorContext &editor, int pane);

/// Gives the grid of the pane beside `pane` the same current cell and selection, as far as it is large enough, and
/// aligns the scroll positions, when a database is open there. The other grid raises nothing; an edit in it ends.
void mirrorSelection(EditorContext &editor, int pane);
/// True where both grids have a current cell, not the same one, and neither is too small for the other's.
bool gridsStandApart(const EditorContext &editor);

/// Gives a row, or a column, of the grid beside `pane` the size that the user gives it in this pane's grid, when both
/// show the same table. An edit in the other grid ends.
void mirrorRowHeight(EditorContext &editor, int pane, int row);
void mirrorColumnWidth(EditorContext &editor, int pane, int column);

} // namespace qir
