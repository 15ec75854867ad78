#pragma once

#include "pane/EditorContext.h"

#include <QCoreApplication>

namespace qir {

class OutsideChanges;
class Remembered;

/// Writing the active pane's database, under its own name or under another. Only these two commands save.
class SaveCommands {
    Q_DECLARE_TR_FUNCTIONS(SaveCommands)

public:
    SaveCommands(EditorContext &editor, Remembered &remembered, OutsideChanges &changes)
        : m_editor(editor)
        , m_remembered(remembered)
        , m_changes(changes) {}

    /// Its rows for the menus.
    void addCommands();

    /// Where it fails, the reason is shown and Save As is offered. With nothing to write the status line tells of
    /// changes in the other pane.
    void SaveMenu_Click();
    /// Asks for a name and writes under it. A name that the component refuses stays the pane's name, while label and
    /// component keep the old one.
    void SaveAsMenu_Click();
    /// The save-file dialog; the chosen name, trimmed and in upper case, and whether one was chosen. The extension of
    /// the name passed in is the default one.
    void SalvaSecco(QString &fileName, bool &chosen);

private:
    void tellOfOtherPane();
    /// A pane's file holds what the pane does, and may be protected now.
    void saved(int pane);

    EditorContext &m_editor;
    Remembered &m_remembered;
    OutsideChanges &m_changes;
};

} // namespace qir
