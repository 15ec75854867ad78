#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class ClipboardBlock;
class GridSave;
class StoredMarks;
struct GridRange;
class TableLoader;

/// Pasting a whole block from the first selected cell on, however few cells are selected.
class PasteAll {
    Q_DECLARE_TR_FUNCTIONS(PasteAll)

public:
    PasteAll(EditorContext &editor, GridSave &save, TableLoader &tables, StoredMarks &stored)
        : m_editor(editor)
        , m_save(save)
        , m_tables(tables)
        , m_stored(stored) {}

    /// Its row for the menus.
    void addCommands();
    /// Offers to add the records that the block needs; fields it adds none. One group of changes, undone after an
    /// error. The cells pasted into are selected afterwards. Yields.
    void PasteAllMenu_Click();

private:
    void paste(int pane, const ClipboardBlock &block, int newRecords);
    void addRecords(int pane, int count);
    void tellOutcome(const Grid &grid, const GridRange &cells, const ClipboardBlock &block) const;

    EditorContext &m_editor;
    GridSave &m_save;
    TableLoader &m_tables;
    StoredMarks &m_stored;
};

} // namespace qir
