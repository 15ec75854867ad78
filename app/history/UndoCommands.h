#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>
#include <QStringList>

#include <functional>

namespace qir {

class CellDifferences;
class ListRefill;
class TableListAlignment;
class TableLoader;

/// Taking steps back and making them again, in the active pane's database. While a text is edited the keys work in it.
class UndoCommands {
    Q_DECLARE_TR_FUNCTIONS(UndoCommands)

public:
    UndoCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                 TableLoader &tables)
        : m_editor(editor)
        , m_alignment(alignment)
        , m_differences(differences)
        , m_tables(tables) {}

    /// Its rows for the menus.
    void addCommands();
    /// From now on the Edit menu that opens while a text box has the keyboard tells of that text's steps.
    void watchMenu();
    /// Names in the menu what the commands would take, and enables them. Called when a command ends.
    void follow();

    void UndoMenu_Click();
    void RedoMenu_Click();
    /// Shows the steps, and goes to the state that is chosen.
    void HistoryMenu_Click();
    /// Asks, and makes the tables those of the file.
    void RevertMenu_Click();

private:
    /// The active pane, -1 where its database has no steps.
    int paneWithSteps() const;
    void change(int pane, const std::function<void(const QirDatabase &)> &procedure);
    void showChanges(int pane, ListRefill &lists);
    void goToCell(int pane, const QString &table);
    void menuOpens() const;
    void setCaption(Command command, const QString &caption, bool enabled) const;

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
};

} // namespace qir
