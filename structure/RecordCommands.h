#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class CellDifferences;
class TableLoader;

/// Adding and removing records of the table that the active pane shows. Without a selected real table a command ends
/// silently.
class RecordCommands {
    Q_DECLARE_TR_FUNCTIONS(RecordCommands)

public:
    RecordCommands(EditorContext &editor, CellDifferences &differences, TableLoader &tables)
        : m_editor(editor)
        , m_differences(differences)
        , m_tables(tables) {}

    /// Its rows for the menus.
    void addCommands();

    /// Appends an empty record, brings it into view and makes it current.
    void AddRecordMenu_Click();

    /// Removes the record that the grid's current row shows, without asking. A grid without records gets a message.
    void RemoveRecordSecco();

private:
    void goToLastRecord(int pane);

    EditorContext &m_editor;
    CellDifferences &m_differences;
    TableLoader &m_tables;
};

} // namespace qir
