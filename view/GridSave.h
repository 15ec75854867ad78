#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

namespace qir {

class CellDifferences;

/// Writing what a grid shows back into its database.
class GridSave {
public:
    GridSave(EditorContext &editor, CellDifferences &differences)
        : m_editor(editor)
        , m_differences(differences) {}

    /// Writes every cell text of the pane's grid into the current table of its database, then compares. One group of
    /// changes: an error on the way undoes it. Yields.
    void SalvaGridInDatabase(int pane);
    /// Writes only the texts of these cells, as far as the grid has them. All others must be stored already as they
    /// show, so that the outcome is the same as writing every cell.
    void SalvaGridInDatabase(int pane, const GridRange &cells);

    /// Writes the texts of these cells into the pane's current table, and compares nothing. Cells beyond the table are
    /// the component's error. The caller has a group of changes open. Yields.
    void store(int pane, const GridRange &cells);

private:
    EditorContext &m_editor;
    CellDifferences &m_differences;
};

} // namespace qir
