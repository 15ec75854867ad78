#pragma once

#include "app/shared/EditorContext.h"

namespace qir {

/// Letting go of databases. Changes are kept because a component writes a changed database when it is released, and
/// discarded by clearing its changed flag first; nothing here saves.
class CloseCommands {
public:
    explicit CloseCommands(EditorContext &editor)
        : m_editor(editor) {}

    /// The window is being closed: asks about each changed database, left first, and releases both. Never refuses.
    void Form_QueryUnload();

private:
    /// Asks about the pane's component and clears its changed flag after a No.
    void askAndRelease(int pane);

    EditorContext &m_editor;
};

} // namespace qir
