#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

namespace qir {

class DifferingTables;

/// A window of grid cells, from 1; 0 stands for the first or the last there is.
struct CellWindow {
    int firstRow = 0;
    int lastRow = 0;
    int firstColumn = 0;
    int lastColumn = 0;
};

enum class SelectionRule {
    SameLine, ///< Do nothing while the two lists' selections differ.
    Ignore,   ///< Run even then, so that a grid left alone is cleared.
};

/// The cells that differ between the tables shown in the two panes.
class CellDifferences {
public:
    CellDifferences(EditorContext &editor, DifferingTables &tables)
        : m_editor(editor)
        , m_tables(tables) {}

    /// Compares the shown tables, paints the cells inside the window red or white in both grids and marks the selected
    /// line of both lists. With one table shown, or different lines selected, it clears the colours instead.
    /// CelleDiverse holds the whole truth afterwards, whatever the window. Yields.
    void EvidenziaDifferenzeTabella(SelectionRule rule = SelectionRule::SameLine, CellWindow window = {});
    /// Marks the lines of a table that changed without being shown by whether it differs.
    void markTable(const QString &name);
    /// Writes every cell text of the pane's grid into the current table of its database, then compares. Yields.
    void SalvaGridInDatabase(int pane);
    /// Writes the texts of some cells only, those of them that the grid has. All others must be stored as they show
    /// already: the outcome is that of writing every cell.
    void SalvaGridInDatabase(int pane, const GridRange &cells);

private:
    void compareGrids(CellWindow window);
    void clearGrid(int pane, CellWindow window);

    EditorContext &m_editor;
    DifferingTables &m_tables;
};

} // namespace qir
