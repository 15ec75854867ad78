#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

/// Going to a record, a field or a cell of the shown table by its number and its name.
class GoToCommand {
    Q_DECLARE_TR_FUNCTIONS(GoToCommand)

public:
    explicit GoToCommand(EditorContext &editor)
        : m_editor(editor) {}

    /// Its row for the menus.
    void addCommands();
    void GoToMenu_Click();

private:
    /// 0 for no record of the grid.
    int recordOf(const QString &text, int pane) const;
    /// The column of a field by its name; 0 for none.
    int columnOf(const QString &name, int pane) const;

    EditorContext &m_editor;
};

} // namespace qir
