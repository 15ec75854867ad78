#pragma once

#include "compare/engine/TableComparison.h"
#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

#include <functional>
#include <utility>

namespace qir {

class EqualTables;
class TableMarks;

/// A block of grid cells, counted from 1. A 0 stands for the first row or column, or for the last one.
struct CellWindow {
    int firstRow = 0;
    int lastRow = 0;
    int firstColumn = 0;
    int lastColumn = 0;
};

/// Records and fields of the shown tables, by what the grids hold: one without fields shows an empty column, which
/// stands for none.
TableSizes shownSizes(const EditorContext &editor);

/// Paints a cell red where CelleDiverse says it differs, white elsewhere; nothing outside the grid.
void SetEqualColor(EditorContext &editor, int pane, int row, int column);

enum class SelectionRule {
    SameLine, ///< Do nothing while the two lists' selections differ.
    Ignore,   ///< Run even then, so that a grid left alone is cleared.
};

/// The cells that differ between the tables shown in the two panes.
class CellDifferences {
public:
    CellDifferences(EditorContext &editor, TableMarks &marks, const EqualTables &equal)
        : m_editor(editor)
        , m_marks(marks)
        , m_equal(equal) {}

    /// Compares the shown tables, paints the cells inside the window red or white in both grids and marks the selected
    /// line of both lists. With one table shown, or different lines selected, it clears the colours instead.
    /// CelleDiverse holds the whole truth afterwards, whatever the window. Yields.
    void EvidenziaDifferenzeTabella(SelectionRule rule = SelectionRule::SameLine, CellWindow window = {});
    /// Cells that both grids have were given new values: finds out whether they differ by what is stored, paints them
    /// and marks the line. Where these are many the tables are compared. Yields.
    void recheck(const GridRange &cells);
    /// Compares a table that was changed without being shown, and marks or clears its lines.
    void markTable(const QString &name);
    /// Compares the current tables of both databases value by value over records 1..R and fields 1..F that both have,
    /// and sets `matrix` (record, field) where they differ. Elements beyond both R and F are set. Calls `step`
    /// after each record. Yields. Two tables that were found equal, and not written to since, are not read again.
    void TabelleDiverseBool(int R, int F, BitMatrix &matrix, const ComparisonStep &step = {});

    /// Called after each comparison, before the grids are drawn.
    void setCompared(std::function<void()> compared) { m_compared = std::move(compared); }

    /// A grid shows another table, or none any more: the cells are to be compared before the command ends.
    void becomeDue() { m_due = true; }
    /// True when that happened since they were compared last.
    bool due() const { return m_due; }

private:
    void compareGrids(CellWindow window);
    void clearGrid(int pane, CellWindow window);

    EditorContext &m_editor;
    TableMarks &m_marks;
    const EqualTables &m_equal;
    std::function<void()> m_compared;
    bool m_due = false;
};

} // namespace qir
