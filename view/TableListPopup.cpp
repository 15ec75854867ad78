#include "view/TableListPopup.h"

#include "base/Collation.h"
#include "pane/ActivePane.h"

#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QAction>
#include <QMenu>

namespace qir {

namespace {

/// False once the window was closed while a table was loading.
bool windowStands() {
    const MessageLoop *loop = MessageLoop::instance();
    return loop == nullptr || !loop->programEnded();
}

} // namespace

void TableListPopup::connectPane(int pane) {
    // No command of its own, whose end would load the line that a left press has selected before its release comes to
    // load it: the procedure lets no error out and changes nothing but the pop-up.
    ListBox &list = m_editor.ListaTabelle(pane);
    QObject::connect(&list, &ListBox::MouseDown, &list,
                     [this, pane](Qt::MouseButton button, const QPoint &globalPosition) {
                         ListaTabelle_MouseDown(pane, button, globalPosition);
                     });
}

void TableListPopup::ListaTabelle_MouseDown(int pane, Qt::MouseButton Button, const QPoint &globalPosition) {
    if (pane != m_editor.IndexAttivo() || m_editor.ListaTabelle(pane).ListIndex() < 0 || Button != Qt::RightButton ||
        !windowStands())
        return;
    try {
        offerCommands(pane);
    } catch (const std::exception &) {
        return;
    }
    const EditorControls &controls = m_editor.controls();
    if (!windowStands())
        return;
    if (controls.action(Command::ClonePOP).isVisible() || controls.action(Command::RemoveTablePOP).isVisible())
        controls.menu(Menu::popmenuCopyToOther).popup(globalPosition);
}

void TableListPopup::offerCommands(int pane) {
    const EditorControls &controls = m_editor.controls();
    const int other = 1 - pane;
    const ListBox &list = m_editor.ListaTabelle(pane);
    ListBox &otherList = m_editor.ListaTabelle(other);
    const int line = list.ListIndex();
    const bool table = m_editor.pane(pane).realTableSelected();
    controls.action(Command::RemoveTablePOP).setVisible(table);
    controls.action(Command::RenameTablePOP).setVisible(table);

    bool clone = false;
    if (m_editor.DtbAperto(other)) {
        // Copied from the side that has the table, whichever side was pressed.
        m_editor.setOrigin(table ? pane : other);
        const bool otherTable = otherList.ItemData(line) >= 1;
        const bool paired = line < otherList.ListCount() && // added tables put the lists out of line
                            collationKey(list.List(line)) == collationKey(otherList.List(line));
        clone = paired && table != otherTable;
        // What is copied is the table selected on the side that has it, and lists that are out of line may stand on
        // different lines.
        if (clone && otherTable && otherList.ListIndex() != line) {
            runCommand([&] {
                const ActivePaneScope active(m_editor);
                otherList.setListIndex(line);
            });
        }
    }
    controls.action(Command::ClonePOP).setVisible(clone);
}

} // namespace qir
