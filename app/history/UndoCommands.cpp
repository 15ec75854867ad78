#include "app/history/UndoCommands.h"

#include "app/desktop/ListRefill.h"
#include "app/desktop/ShownPlace.h"
#include "app/history/HistoryWindow.h"
#include "base/Collation.h"
#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "pane/ActivePane.h"
#include "platform/controls/FocusedText.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "view/GridAlignment.h"
#include "view/TableLoader.h"

#include <QAction>
#include <QMenu>

#include <exception>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// A name within a caption: an ampersand marks no key there.
QString captionOf(QString name) {
    return name.replace(u"&"_s, u"&&"_s);
}

} // namespace

void UndoCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::UndoMenu, tr("&Undo"), [this] { UndoMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_Z)});
    commands.add(Command::RedoMenu, tr("&Redo"), [this] { RedoMenu_Click(); });
    commands.action(Command::RedoMenu)
        .setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    commands.add(Command::HistoryMenu, tr("&History..."), [this] { HistoryMenu_Click(); });
    commands.add(Command::RevertMenu, tr("Re&vert to Saved..."), [this] { RevertMenu_Click(); });
    for (const Command command : {Command::UndoMenu, Command::RedoMenu, Command::HistoryMenu, Command::RevertMenu})
        commands.action(command).setEnabled(false);
}

void UndoCommands::watchMenu() {
    const QMenu &menu = m_editor.controls().menu(Menu::EditMenu);
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this] { menuOpens(); });
    // An entry that was chosen is done only once its menu is hidden.
    QObject::connect(
        &menu, &QMenu::aboutToHide, &menu, [this] { follow(); }, Qt::QueuedConnection);
}

void UndoCommands::menuOpens() const {
    const QLineEdit *text = focusedText();
    if (text == nullptr)
        return;
    setCaption(Command::UndoMenu, tr("&Undo"), text->isUndoAvailable());
    setCaption(Command::RedoMenu, tr("&Redo"), text->isRedoAvailable());
}

int UndoCommands::paneWithSteps() const {
    const int pane = m_editor.IndexAttivo();
    return pane >= 0 && m_editor.DtbAperto(pane) && m_editor.OggettoDtb(pane).hasSteps() ? pane : -1;
}

void UndoCommands::follow() {
    const int pane = paneWithSteps();
    QString undo;
    QString redo;
    bool reverts = false;
    try {
        if (pane >= 0) {
            const QirDatabase &database = m_editor.OggettoDtb(pane);
            undo = database.UndoName();
            redo = database.RedoName();
            reverts = database.hasRevert() && database.DtbHasChanged();
        }
    } catch (const std::exception &) { // NOLINT(bugprone-empty-catch): the command that has ended is what counts
    }
    const bool inText = pane >= 0 && m_editor.RigaEdit() > 0; // the keys work there
    setCaption(Command::UndoMenu, undo.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(captionOf(undo)),
               inText || !undo.isEmpty());
    setCaption(Command::RedoMenu, redo.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(captionOf(redo)),
               inText || !redo.isEmpty());
    m_editor.controls().action(Command::HistoryMenu).setEnabled(pane >= 0);
    m_editor.controls().action(Command::RevertMenu).setEnabled(reverts);
}

void UndoCommands::setCaption(Command command, const QString &caption, bool enabled) const {
    QAction &action = m_editor.controls().action(command);
    action.setEnabled(enabled);
    if (action.text() != caption)
        action.setText(caption);
}

void UndoCommands::UndoMenu_Click() {
    if (QLineEdit *text = focusedText()) {
        text->undo();
        return;
    }
    if (const int pane = paneWithSteps(); pane >= 0)
        change(pane, [](const QirDatabase &database) { database.Undo(); });
}

void UndoCommands::RedoMenu_Click() {
    if (QLineEdit *text = focusedText()) {
        text->redo();
        return;
    }
    if (const int pane = paneWithSteps(); pane >= 0)
        change(pane, [](const QirDatabase &database) { database.Redo(); });
}

void UndoCommands::HistoryMenu_Click() {
    const int pane = paneWithSteps();
    if (pane < 0)
        return;
    m_editor.endEdit();
    HistoryWindow window(m_editor.OggettoDtb(pane), m_editor.controls().window);
    if (window.exec() != QDialog::Accepted || window.chosen() == m_editor.OggettoDtb(pane).StepsDone())
        return;
    change(pane, [&](const QirDatabase &database) { database.GoToStep(window.chosen()); });
}

void UndoCommands::RevertMenu_Click() {
    const int pane = paneWithSteps();
    if (pane < 0 || !m_editor.OggettoDtb(pane).hasRevert())
        return;
    const QString question = tr("Do you want to go back to what is saved of '%1' ?").arg(m_editor.NomeFileDtb(pane));
    if (askYesNo(m_editor.controls().window, question, u"?"_s) == Answer::No)
        return;
    change(pane, [](const QirDatabase &database) { database.RevertToSaved(tr("Revert to Saved")); });
}

/// Runs what changes the pane's database by itself, and shows what it has become.
void UndoCommands::change(int pane, const std::function<void(const QirDatabase &)> &procedure) {
    m_editor.endEdit();
    const ActivePaneScope active(m_editor); // lists are clicked from code
    ListRefill lists(m_editor, m_alignment, m_differences, m_tables, pane);
    m_editor.pane(pane).currentTableLost();
    procedure(m_editor.OggettoDtb(pane));
    showChanges(pane, lists);
}

void UndoCommands::showChanges(int pane, ListRefill &lists) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const QString table = database.ChangedTable();
    const ListBox &list = m_editor.ListaTabelle(pane);
    const int line = table.isEmpty() ? -1 : lineOfKey(list, collationKey(table));
    if (lists.namesHaveChanged() || database.ChangedTables() > 1 || line < 0) {
        lists.refill(table);
    } else if (line == list.ListIndex()) {
        m_tables.CaricaTabellaDaLista(pane);
    } else {
        m_editor.pane(pane).refilled(); // so that the click loads it
        m_editor.ListaTabelle(pane).setListIndex(line);
    }
    goToCell(pane, table);
}

/// Where the change was, in the grid that shows its table.
void UndoCommands::goToCell(int pane, const QString &table) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    Grid &grid = m_editor.Tabella(pane);
    if (table.isEmpty() || !grid.Visible() || m_editor.pane(pane).selectedTableName() != table.trimmed())
        return;
    const int record = database.ChangedRecord();
    const int field = database.ChangedField();
    const int row = record > 0 ? record : grid.Row();
    const int column = field > 0 ? field : grid.Col();
    if ((record < 1 && field < 1) || row < 1 || row >= grid.Rows() || column < 1 || column >= grid.Cols())
        return;
    grid.setSelection(singleCell(row, column));
    grid.bringCellIntoView();
    AllineaTopLeftTabelle(m_editor, pane);
}

} // namespace qir
