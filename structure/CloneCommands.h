#pragma once

#include "pane/EditorContext.h"

#include "platform/grid/GridRange.h"

#include <QCoreApplication>

#include <functional>

namespace qir {

class CellDifferences;
class GridSave;
class TableListAlignment;
class TableLoader;

/// Copying from one pane's database into the other's: from IndexOrigine to IndexDestinazione, which the pop-ups set,
/// whichever pane is active. What one command writes is one group of changes: an error on the way undoes it. The
/// commands that copy rows of the grids refuse, with an error, a table that is not loaded whole.
class CloneCommands {
    Q_DECLARE_TR_FUNCTIONS(CloneCommands)

public:
    CloneCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                  TableLoader &tables, GridSave &save)
        : m_editor(editor)
        , m_alignment(alignment)
        , m_differences(differences)
        , m_tables(tables)
        , m_save(save) {}

    /// Its rows for the menus.
    void addCommands();

    /// Copies the table selected in the source list, which the target database lacks. Yields.
    void CloneSecco();
    /// Asks whether cells are to be copied too, and appends records to the shown target table until it has as many as
    /// the source's. Yields.
    void CloneTableSizeSecco();
    /// Copies the texts of the source grid's selected block into the same cells of the target. Yields.
    void CloneSelectedAreaSecco();

    /// Whether a cell of a block is to be copied.
    using TakesCell = std::function<bool(int row, int column)>;
    /// Copies the texts of a block of the source grid into the same cells of the target, those that `takes` has nothing
    /// against; what fails is undone. The cells are not compared by that. Yields.
    void copyArea(const GridRange &block, const TakesCell &takes = {});

private:
    const QirDatabase &source() { return m_editor.OggettoDtb(m_editor.IndexOrigine()); }
    const QirDatabase &target() { return m_editor.OggettoDtb(m_editor.IndexDestinazione()); }
    void requireWholeTables();
    void copyTable(const QString &name);
    void appendRecords(bool withContent);
    /// Appends records to the target's current table; with content, that of the source's records of the same numbers.
    void appendCopies(int count, bool withContent);
    void copyBlock(const GridRange &block, const TakesCell &takes);
    void copyTakenCells(const Grid &from, Grid &to, const GridRange &block, const TakesCell &takes);

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    GridSave &m_save;
};

} // namespace qir
