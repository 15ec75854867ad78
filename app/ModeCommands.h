#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class CellDifferences;
class TableListAlignment;
class TableLoader;

/// One pane or two, and what concerns both panes at once. The mode is held in the check marks of the two mode commands
/// alone.
class ModeCommands {
    Q_DECLARE_TR_FUNCTIONS(ModeCommands)

public:
    ModeCommands(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                 TableLoader &tables)
        : m_editor(editor)
        , m_alignment(alignment)
        , m_differences(differences)
        , m_tables(tables) {}

    /// Its rows for the menus.
    void addCommands();

    /// Both commands toggle between the modes. Going to one pane closes the right database: this one asks about the
    /// left database and applies the answer to the right one, the other one asks about the right one.
    void OneMenu_Click();
    void TwoMenu_Click();

    /// Lines the lists up and compares everything afresh; the active pane's table stays selected, on both sides.
    void CompareAgainMenu_Click();
    /// Makes the other pane active and gives it the keyboard focus: its grid where the grid had it in the pane left,
    /// else its list.
    void OtherPaneMenu_Click();

private:
    void setMode(bool two);
    /// Releases the right pane's database, discarding its changes when `keep` is False.
    void closeRightPane(bool keep);
    /// Selects a line in both lists without loading it, and scrolls both to line `top`.
    void selectInBothLists(int line, int top);
    /// The end of both mode commands: menus, layout, colours.
    void showMode();
    void showModeAfterError();

    EditorContext &m_editor;
    TableListAlignment &m_alignment;
    CellDifferences &m_differences;
    TableLoader &m_tables;
};

} // namespace qir
