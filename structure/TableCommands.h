#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class CellDifferences;
class TableListAlignment;
class TableLoader;

/// Adding, renaming and removing tables of the active pane's database.
class TableCommands {
    Q_DECLARE_TR_FUNCTIONS(TableCommands)

public:
    TableCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                  TableLoader &tables)
        : m_editor(editor)
        , m_alignment(alignment)
        , m_differences(differences)
        , m_tables(tables) {}

    /// Its rows for the menus.
    void addCommands();

    /// Asks for a name and appends a table. A name that the database has already, but for case and surrounding blanks,
    /// is refused with a message. The list is refilled from the database alone: in two-pane mode it is out of line with
    /// the other one until the next comparison.
    void AddTableMenu_Click();

    /// Asks for a new name of the selected table. It is taken as typed; a name that is taken already is the
    /// component's error. Afterwards the same position is selected, whatever line stands there now.
    void RenameTableSecco();
    /// Asks, and removes the selected table. Afterwards both lists select the line whose position is the removed
    /// table's number, where they have one.
    void RemoveTableSecco();

private:
    bool nameTaken(const QString &name) const;
    void selectAgain(const std::array<int, 2> &positions);

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
};

} // namespace qir
