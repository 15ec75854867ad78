#pragma once

#include "app/shared/EditorContext.h"

namespace qir {

/// The table name in the selected line of a pane's list, trimmed and without markers; "" with no selection.
QString selectedTableName(EditorContext &editor, int pane);

/// True when the selected line of the pane's list is a real table (item data 1 or more).
bool realTableSelected(EditorContext &editor, int pane);

/// Makes a table current in the pane's component and remembers that it is.
void makeTableCurrent(EditorContext &editor, int pane, const QString &name);

/// Makes the table that the pane's grid shows current in the pane's component, when another one is. Called before
/// fields or records are read or written for the pane: marking tables leaves the component at the last one compared.
void makeShownTableCurrent(EditorContext &editor, int pane);

/// True when both panes hold a database and their selected lines stand for the same table, so that the cells of the
/// two grids may be compared.
bool panesShowSameTable(EditorContext &editor);

/// True when, beyond that, that table is what both grids were filled with: a pane that was refilled and not loaded
/// again yet, or whose load failed, shows another one. An empty table counts, although its grid is hidden.
bool gridsShowSameTable(EditorContext &editor);

/// Ends an edit in any pane: hides the editor and clears RigaEdit and ColonnaEdit. Nothing is written; every
/// keystroke was. A focus that the editor had goes to its grid.
void endEdit(EditorContext &editor);

/// Shows or hides a pane's grid by its own flag; hiding ends an edit first and gives the grid's focus to the list.
void showGrid(EditorContext &editor, int pane, bool visible);

/// Releases a pane's component there and then (which may write the file), and with it all that was shown of it:
/// ends an edit, empties list and grid, hides the grid, UltimoListIndex -1, DtbAperto False.
void releaseComponent(EditorContext &editor, int pane);

/// While it lives, clicks of the lists are not handled and the active pane stays.
class RefillScope {
public:
    explicit RefillScope(EditorContext &editor)
        : m_editor(editor) {
        ++m_editor.state.RefillInCorso;
    }
    ~RefillScope() { --m_editor.state.RefillInCorso; }
    RefillScope(const RefillScope &) = delete;
    RefillScope &operator=(const RefillScope &) = delete;

private:
    EditorContext &m_editor;
};

} // namespace qir
