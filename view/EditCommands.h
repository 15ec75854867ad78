#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

#include <QCoreApplication>

#include <functional>

namespace qir {

class GridSave;
class StoredMarks;
class TableLoader;

/// Commands on the selected cells of a grid. Each that writes is one group of changes; an error on the way undoes it.
class EditCommands {
    Q_DECLARE_TR_FUNCTIONS(EditCommands)

public:
    EditCommands(EditorContext &editor, GridSave &save, TableLoader &tables, StoredMarks &stored)
        : m_editor(editor)
        , m_save(save)
        , m_tables(tables)
        , m_stored(stored) {}

    /// Its rows for the menus.
    void addCommands();
    /// Gives the pane's grid the keys of these commands: only while it has the keyboard are they not somebody else's.
    void connectPane(int pane);

    /// Empties the selected cells, as if their texts had been deleted in the cell editor one by one.
    void deleteCells(int pane);
    /// Fills the selected cells with the texts of the first selected record; those of one record, with the texts of the
    /// record above it, if there is one.
    void fillDown(int pane);
    void selectAll(int pane);

private:
    // In the text that has the keyboard, where one has it.
    void DeleteCellsMenu_Click();
    void SelectAllMenu_Click();
    /// The pane whose grid has the keyboard, else the active one.
    int workingPane() const;
    /// Lays texts into `cells` of the pane's grid and stores them. Yields.
    void rewrite(int pane, const GridRange &cells, const QString &name, const std::function<void()> &lay);

    EditorContext &m_editor;
    GridSave &m_save;
    TableLoader &m_tables;
    StoredMarks &m_stored;
};

} // namespace qir
