#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// Its row for the menus.
void addColumnFit(EditorContext &editor);

/// Fits the columns of the active pane's grid to their texts, when a real table is shown there.
void ColumnSizeAdjust_Click(EditorContext &editor);

/// Fits all field columns of a grid to their texts, headers included; column 0 becomes 300 twips wide. Yields.
void SizeAdjust(EditorContext &editor, Grid &grid);

} // namespace qir
