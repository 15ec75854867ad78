#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

#include <optional>

namespace qir {

class CellDifferences;
class StoredMarks;
class TableLoader;

/// Adding, renaming, removing and resizing fields of the table that the active pane shows. The field is the one of the
/// grid's current column; without a selected real table, or without a field there, a command ends silently.
class FieldCommands {
    Q_DECLARE_TR_FUNCTIONS(FieldCommands)

public:
    FieldCommands(EditorContext &editor, CellDifferences &differences, TableLoader &tables, StoredMarks &stored)
        : m_editor(editor)
        , m_differences(differences)
        , m_tables(tables)
        , m_stored(stored) {}

    /// Its rows for the menus.
    void addCommands();

    /// Asks for name, type and, for a text, size, and appends a field to the table last shown in the active pane. When
    /// that table is not shown now, a message names it afterwards. A name that the table has already, but for case and
    /// surrounding blanks, is refused with a message.
    void AddFieldMenu_Click();

    /// Asks for a new name of the field; it is taken as typed.
    void RenameFieldSecco();
    /// Asks, and removes the field.
    void RemoveFieldSecco();
    /// Asks for a new size of a text field; does nothing for other fields. The grid is not loaded again.
    void ResizeTextFieldSecco();

private:
    const QirDatabase &database() { return m_editor.OggettoDtb(m_editor.IndexAttivo()); }
    bool makeLastShownTableCurrent();
    int currentField();
    bool nameTaken(const QString &name);
    std::optional<int> askType();
    std::optional<double> askSize(const QString &prompt, const QString &defaultSize);
    void showAddedField(const QString &name);
    void showTableAgain();

    EditorContext &m_editor;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    StoredMarks &m_stored;
};

} // namespace qir
