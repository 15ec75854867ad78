#pragma once

#include "pane/EditorContext.h"
#include "platform/cells/CellTexts.h"
#include "platform/grid/GridRange.h"

#include <QCoreApplication>

#include <functional>
#include <optional>

namespace qir {

class GridSave;
class ClipboardBlock;
class StoredMarks;
class TableLoader;

/// Copying a block of cells to the system clipboard and pasting one. The plain text has tabs between cells and carriage
/// returns between rows; further formats beside it keep tabs and line ends inside cells and serve other programs.
class AreaClipboard {
    Q_DECLARE_TR_FUNCTIONS(AreaClipboard)

public:
    AreaClipboard(EditorContext &editor, GridSave &save, TableLoader &tables, StoredMarks &stored)
        : m_editor(editor)
        , m_save(save)
        , m_tables(tables)
        , m_stored(stored) {}

    /// Its rows for the menus.
    void addCommands();

    /// Copies the selected block of the pane's grid. Errors are silent.
    void COPIA_AreaTabella(int pane);
    /// The same with the columns' headers as the first row.
    void copyWithHeaders(int pane);
    /// Pastes into the selected block of the pane's grid and writes the grid to the database. Errors are silent; one on
    /// the way undoes the whole paste. A table that is not loaded whole is refused with an error. Yields.
    void INCOLLA_AreaTabella(int pane);

    /// What became of the values of the last paste that is worth telling: those that lay outside the selection, and
    /// those that are stored otherwise than they were pasted, with the first place of each. "" for nothing.
    const QString &outcome() const { return m_outcome; }

private:
    // In the text that has the keyboard, where one has it.
    void CopyMenu_Click();
    void PasteMenu_Click();
    void tellOutcome(int pane, const ClipboardBlock &block);

    EditorContext &m_editor;
    GridSave &m_save;
    TableLoader &m_tables;
    StoredMarks &m_stored;
    QString m_outcome;
};

/// True where a pane's table has fields, with or without records.
bool hasFields(const EditorContext &editor, int pane);
/// True where a pane shows cells of records: not the empty column of a table without fields.
bool showsFields(const EditorContext &editor, int pane);

/// Where a value of a block stands, counted from 0.
QString blockPlaceWords(int row, int column);

/// What to tell of cells that were just written, where some are stored otherwise than they show: how many, and the
/// first of them; "" for none.
QString storedOtherwise(const Grid &grid, const GridRange &cells);

/// The record cells of a grid's selection, which may hold the header row.
GridRange recordCells(const Grid &grid);

/// What the clipboard held when it was taken, whatever comes there since.
class ClipboardBlock {
public:
    /// Nothing where the clipboard holds no text.
    static std::optional<ClipboardBlock> taken();

    int records() const { return m_records; }
    int fields() const { return m_fields; }
    /// Calls `value` for each value, rows and columns counted from 0.
    void forEachValue(const std::function<void(int row, int column, QStringView value)> &value) const;
    /// Lays the values into the selected cells of a grid; what there is no value for stays.
    void layInto(Grid &grid) const;

private:
    QString m_text;
    std::optional<CellTexts> m_cells; // where the clipboard had them as cells
    int m_records = 0;
    int m_fields = 0;
};

/// A clipboard text as the grid takes it: rows end in carriage returns. Line feeds beside carriage returns go; without
/// any carriage return they are the row ends. One last row end is dropped.
QString gridClip(const QString &clipboardText);

} // namespace qir
