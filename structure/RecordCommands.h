#pragma once

#include "pane/EditorContext.h"

namespace qir {

class CellDifferences;
class TableLoader;

/// Adding and removing records of the table that the active pane shows. Without a selected real table a command ends
/// silently.
class RecordCommands {
public:
    RecordCommands(EditorContext &editor, CellDifferences &differences, TableLoader &tables)
        : m_editor(editor)
        , m_differences(differences)
        , m_tables(tables) {}

    /// Appends an empty record, brings it into view and makes it current.
    void AddRecordMenu_Click();
    void RemoveRecordMenu_Click() { RemoveRecordSecco(); }
    void RemoveRecordPOP_Click() { RemoveRecordSecco(); }

    /// Removes the record that the grid's current row shows, without asking. A grid without records gets a message.
    void RemoveRecordSecco();

private:
    void goToLastRecord(int pane);

    EditorContext &m_editor;
    CellDifferences &m_differences;
    TableLoader &m_tables;
};

} // namespace qir
