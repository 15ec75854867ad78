#include "app/desktop/ShownPlace.h"

#include "base/Collation.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"

namespace qir {

int lineOfKey(const ListBox &list, const QString &key) {
    for (int line = 0; line < list.ListCount(); ++line) {
        if (collationKey(list.List(line)) == key)
            return line;
    }
    return -1;
}

ShownPlace::ShownPlace(EditorContext &editor, int pane)
    : m_editor(editor)
    , m_pane(pane)
    , m_key(collationKey(editor.pane(pane).TabellaMostrata()))
    , m_selection(editor.Tabella(pane).selection())
    , m_place(editor.Tabella(pane).place()) {}

void ShownPlace::showAgain() const {
    const int line = m_key.isEmpty() ? -1 : lineOfKey(m_editor.ListaTabelle(m_pane), m_key);
    if (line < 0)
        return;
    m_editor.ListaTabelle(m_pane).setListIndex(line); // loads it
    Grid &grid = m_editor.Tabella(m_pane);
    if (!grid.Visible())
        return;
    grid.setSelection(cutTo(m_selection, {.rows = grid.Rows(), .columns = grid.Cols()}));
    grid.setPlace(m_place);
}

} // namespace qir
