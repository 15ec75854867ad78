#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

#include <cstdint>
#include <vector>

namespace qir {

class GridSave;
class Grid;
class TableLoader;

/// Sorting a table by one field: the records are rewritten in the database in the new order.
class Sorting {
    Q_DECLARE_TR_FUNCTIONS(Sorting)

public:
    Sorting(EditorContext &editor, GridSave &save, TableLoader &tables)
        : m_editor(editor)
        , m_save(save)
        , m_tables(tables) {}

    /// Its rows for the menus.
    void addCommands();

    /// Sorts the table of the pane whose pop-up was opened by its grid's current column. When sorting or writing fails,
    /// the group of changes is undone, the table is loaded again as it stands and the error goes on to the caller. A
    /// table that is not loaded whole is refused with an error. Yields.
    void SortFPOP_Click();
    /// Sorts the record rows of a grid by a column, ascending, and selects that column's records; does nothing while
    /// ColonnaOrdinamento is negative. Nothing is written to the database. After an error the grid's texts may be out
    /// of step with each other. Gives the order that the rows have now, by where they stood (from 0); nothing where
    /// they stand as before.
    std::vector<std::uint32_t> OrdinaPerColonna(Grid &grid, int Column);

private:
    EditorContext &m_editor;
    GridSave &m_save;
    TableLoader &m_tables;
};

} // namespace qir
