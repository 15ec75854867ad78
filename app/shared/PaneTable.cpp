#include "app/shared/PaneTable.h"

#include "app/shared/utility.h"
#include "base/Collation.h"
#include "platform/controls/Grid.h"
#include "platform/controls/ListBox.h"

#include <QLineEdit>

#include <stdexcept>

namespace qir {

QString selectedTableName(EditorContext &editor, int pane) {
    const ListBox &list = editor.ListaTabelle(pane);
    // Trimmed again: behind a marker may stand blanks that belong to the name, and the name with a marker and the one
    // without must be the same.
    return list.ListIndex() < 0 ? QString() : TogliMarcatori(list.List(list.ListIndex()).trimmed()).trimmed();
}

bool realTableSelected(EditorContext &editor, int pane) {
    const ListBox &list = editor.ListaTabelle(pane);
    return list.ListIndex() >= 0 && list.ItemData(list.ListIndex()) >= 1;
}

void makeTableCurrent(EditorContext &editor, int pane, const QString &name) {
    editor.TabellaCorrente(pane).clear();
    editor.OggettoDtb(pane).QIRTableRecordSource(name);
    editor.TabellaCorrente(pane) = name;
}

void makeShownTableCurrent(EditorContext &editor, int pane) {
    const QString &shown = editor.TabellaMostrata(pane);
    // The component may still stand at another table, which nobody sees.
    if (shown.isEmpty() && realTableSelected(editor, pane))
        throw std::runtime_error("The selected table could not be loaded.");
    if (!shown.isEmpty() && editor.TabellaCorrente(pane) != shown)
        makeTableCurrent(editor, pane, shown);
}

bool panesShowSameTable(EditorContext &editor) {
    const int left = editor.ListaTabelle(0).ListIndex();
    if (!editor.DtbAperto(0) || !editor.DtbAperto(1) || left < 0 || left != editor.ListaTabelle(1).ListIndex())
        return false;
    return collationKey(editor.ListaTabelle(0).List(left)) == collationKey(editor.ListaTabelle(1).List(left));
}

bool gridsShowSameTable(EditorContext &editor) {
    return panesShowSameTable(editor) &&
           collationKey(editor.TabellaMostrata(0)) == collationKey(editor.TabellaMostrata(1));
}

void endEdit(EditorContext &editor) {
    for (const PaneControls &pane : editor.controls.pane) {
        // Also while another window is active: a hidden control would get the keys when this one is again.
        if (pane.txtEdit->window()->focusWidget() == pane.txtEdit)
            pane.Tabella->setFocus(Qt::OtherFocusReason);
        pane.txtEdit->hide();
        pane.Tabella->setUserResizing(true);
    }
    editor.state.RigaEdit = -1;
    editor.state.ColonnaEdit = -1;
}

void showGrid(EditorContext &editor, int pane, bool visible) {
    Grid &grid = editor.Tabella(pane);
    if (!visible && grid.Visible()) {
        endEdit(editor);
        // The keyboard stays in the pane; Qt would give it to the next control, which may be the other pane's.
        if (grid.window()->focusWidget() == &grid)
            editor.ListaTabelle(pane).setFocus(Qt::OtherFocusReason);
    }
    grid.setVisibleFlag(visible);
}

void releaseComponent(EditorContext &editor, int pane) {
    endEdit(editor);
    const RefillScope refill(editor);
    editor.UltimoListIndex(pane) = -1;
    editor.DtbAperto(pane) = false;
    editor.TabellaMostrata(pane).clear();
    editor.TabellaCorrente(pane).clear();
    editor.UltimaTabella(pane).clear();
    editor.ListaTabelle(pane).clear();
    showGrid(editor, pane, false);
    editor.Tabella(pane).clear();
    editor.OggettoDtb(pane).release();
}

} // namespace qir
