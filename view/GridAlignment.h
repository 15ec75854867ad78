#pragma once

#include "app/shared/EditorContext.h"

namespace qir {

/// Scrolls the grid of the pane beside `Index` to the first row and column that this pane's grid shows, when a database
/// is open there. The other grid raises nothing; an edit in it ends.
void AllineaTopLeftTabelle(EditorContext &editor, int Index);

/// Gives the grid of the pane beside `Index` the same current cell and selection, as far as it is large enough, and
/// aligns the scroll positions, when a database is open there. The other grid raises nothing; an edit in it ends.
void mirrorSelection(EditorContext &editor, int Index);

} // namespace qir
