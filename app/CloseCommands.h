#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class CellDifferences;
class TableListAlignment;

/// Letting go of databases. Changes are kept because a component writes a changed database when it is released, and
/// discarded by clearing its changed flag first; nothing here saves.
class CloseCommands {
    Q_DECLARE_TR_FUNCTIONS(CloseCommands)

public:
    CloseCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences)
        : m_editor(editor)
        , m_alignment(alignment)
        , m_differences(differences) {}

    /// Its rows for the menus.
    void addCommands();

    /// Closes the active pane's database; its name stays the pane's name.
    void CloseDatabaseMenu_Click();
    /// The window is being closed: asks about each changed database, left first, and releases both. False when a
    /// component could not take a No: its release would write what was refused, so it stays open, as does the window.
    bool Form_QueryUnload();

private:
    /// Asks about the pane's component and clears its changed flag after a No.
    void askAndRelease(int pane);
    /// After a release: menus, lists and colours without that database.
    void showReleased(int pane);

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
};

} // namespace qir
