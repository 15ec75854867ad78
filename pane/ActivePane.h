#pragma once

#include "pane/EditorContext.h"

namespace qir {

/// Paints frame and file label of the active pane yellow, those of the other one in the button-face colour (pane 1's
/// only in two-pane mode); all of them in the button-face colour when no pane is active.
void SettaColoriIndexAttivo(EditorContext &editor);

/// Enables the commands that need a database by whether `pane` holds one, and shows or hides that pane's list, label
/// and grid. The grid shows only with a selected real table that has records. Pane -1 (none) disables the commands.
void AbilitaMenu(EditorContext &editor, int pane);

/// Makes a pane the active one, or with -1 none: IndexAttivo, colours, menus. Nothing where it is that already.
void activatePane(EditorContext &editor, int pane);

/// Remembers which pane is active and makes it that again at the end: selecting lines from code, which a command does
/// in both lists, would leave the other pane active.
class ActivePaneScope {
public:
    explicit ActivePaneScope(EditorContext &editor)
        : m_editor(editor)
        , m_pane(editor.IndexAttivo()) {}
    ~ActivePaneScope();
    ActivePaneScope(const ActivePaneScope &) = delete;
    ActivePaneScope &operator=(const ActivePaneScope &) = delete;

private:
    EditorContext &m_editor;
    int m_pane;
};

} // namespace qir
