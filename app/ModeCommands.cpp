#include "app/ModeCommands.h"

#include "app/Layout.h"
#include "app/desktop/ShownPlace.h"
#include "app/shared/Funzioni.h"
#include "base/Collation.h"
#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "pane/ActivePane.h"

#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "view/TableLoader.h"

#include <QAction>
#include <QGroupBox>
#include <QLabel>

#include <algorithm>

namespace qir {

namespace {

/// The label shows when the right pane holds a database.
bool rightPaneLoaded(const EditorContext &editor) {
    return !editor.nomelab(1).isHidden();
}

} // namespace

void ModeCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::OneMenu, tr("&One Database"), [this] { OneMenu_Click(); });
    commands.add(Command::TwoMenu, tr("&Two Databases"), [this] { TwoMenu_Click(); });
    commands.add(Command::CompareAgainMenu, tr("Compare &Again"), [this] { CompareAgainMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::Key_F5), .needs = Needs::BothDatabases});
    commands.add(Command::OtherPaneMenu, tr("Other &Pane"), [this] { OtherPaneMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::Key_F6), .needs = Needs::TwoPanes});
    for (const Command mode : {Command::OneMenu, Command::TwoMenu})
        m_editor.controls().action(mode).setCheckable(true);
    setMode(false);
}

void ModeCommands::selectInBothLists(int line, int top) {
    const RefillScope refill(m_editor.listClicks()); // what is selected is loaded afterwards
    for (const int pane : {0, 1}) {
        m_editor.ListaTabelle(pane).setListIndex(line);
        m_editor.ListaTabelle(pane).setTopIndex(top);
    }
}

void ModeCommands::setMode(bool two) {
    m_editor.controls().action(Command::OneMenu).setChecked(!two);
    m_editor.controls().action(Command::TwoMenu).setChecked(two);
}

void ModeCommands::closeRightPane(bool keep) {
    if (!keep)
        m_editor.OggettoDtb(1).setDtbHasChanged(false);
    m_editor.pane(1).release();
    AbilitaMenu(m_editor, 1);
}

void ModeCommands::showMode() {
    // The pane that is not shown any more cannot be the active one.
    if (!m_editor.twoPanes() && m_editor.IndexAttivo() == 1)
        activatePane(m_editor, 0);
    // Nor can it keep the keyboard: also while another window is active, a hidden control would get the keys later.
    const QWidget *focus = m_editor.controls().window->focusWidget();
    if (!m_editor.twoPanes() && focus != nullptr && m_editor.IDtb(1).isAncestorOf(focus)) {
        const PaneControls &left = m_editor.pane(0).controls();
        (m_editor.DtbAperto(0) ? static_cast<QWidget *>(left.ListaTabelle) : left.hint)->setFocus(Qt::OtherFocusReason);
    }
    RicalcolaSistemazioneForm(m_editor);
    SettaColoriIndexAttivo(m_editor);
    AbilitaMenu(m_editor, m_editor.IndexAttivo());
}

void ModeCommands::showModeAfterError() {
    // A right database that is still open needs its pane.
    setMode(m_editor.DtbAperto(1));
    showMode();
}

void ModeCommands::OneMenu_Click() {
    m_editor.endEdit();
    // The chosen item has toggled its own check mark already; the other one's still tells the mode.
    const bool wasOnePane = !m_editor.controls().action(Command::TwoMenu).isChecked();
    setMode(wasOnePane);
    if (!wasOnePane) {
        undoneOnError(
            [this] {
                // The question is about the left database and its answer is for the right one.
                if (rightPaneLoaded(m_editor))
                    closeRightPane(ChiediSalvataggio(m_editor.controls().window, m_editor.OggettoDtb(0)));
                m_differences.EvidenziaDifferenzeTabella(SelectionRule::Ignore); // the grid left alone becomes white
                m_alignment.MostraTabelleDiverseInLista();
            },
            [this] { showModeAfterError(); });
    }
    showMode();
}

void ModeCommands::TwoMenu_Click() {
    m_editor.endEdit();
    const bool wasTwoPanes = !m_editor.controls().action(Command::OneMenu).isChecked();
    setMode(!wasTwoPanes);
    // Unlike the other command this one compares nothing: the left list keeps its marks.
    undoneOnError(
        [&] {
            if (wasTwoPanes && rightPaneLoaded(m_editor))
                closeRightPane(ChiediSalvataggio(m_editor.controls().window, m_editor.OggettoDtb(1)));
        },
        [this] { showModeAfterError(); });
    showMode();
}

void ModeCommands::CompareAgainMenu_Click() {
    const int pane = std::max(m_editor.IndexAttivo(), 0);
    const ListBox &list = m_editor.ListaTabelle(pane);
    const QString selected = list.ListIndex() < 0 ? QString() : collationKey(list.List(list.ListIndex()));
    const int top = list.TopIndex();
    m_alignment.MostraTabelleDiverseInLista();
    // A refilled list selects by position; who looks again wants to look at the same table.
    if (const int line = lineOfKey(list, selected); line >= 0)
        selectInBothLists(line, top);
    m_tables.settlePanes();
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::Ignore);
}

void ModeCommands::OtherPaneMenu_Click() {
    const int from = m_editor.IndexAttivo();
    const int to = from < 0 ? 0 : 1 - from;
    const bool gridLeft = from >= 0 && m_editor.Tabella(from).hasFocus();
    const PaneControls &target = m_editor.pane(to).controls();
    activatePane(m_editor, to);
    if (!m_editor.DtbAperto(to))
        target.hint->setFocus(Qt::ShortcutFocusReason);
    else if (gridLeft && target.Tabella->Visible())
        target.Tabella->setFocus(Qt::ShortcutFocusReason);
    else
        target.ListaTabelle->setFocus(Qt::ShortcutFocusReason);
}

} // namespace qir
