#include "app/history/UndoCommands.h"

#include "app/history/HistoryWindow.h"
#include "base/Collation.h"
#include "base/UndoOnError.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "pane/ActivePane.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "view/GridAlignment.h"
#include "view/TableLoader.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>

#include <exception>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// The text box that has the keyboard, null when none has.
QLineEdit *textUnderEdit() {
    return qobject_cast<QLineEdit *>(QApplication::focusWidget());
}

QStringList tableNames(const QirDatabase &database) {
    QStringList names;
    const int tables = database.QIRTablesCount();
    for (int table = 1; table <= tables; ++table)
        names.append(database.QIRTableName(table));
    return names;
}

/// The key of a line's name, "" for no line.
QString keyOfLine(const ListBox &list, int line) {
    return line < 0 ? QString() : collationKey(list.List(line));
}

/// The line whose name has this key, -1 when there is none.
int lineOfKey(const ListBox &list, const QString &key) {
    for (int line = 0; line < list.ListCount(); ++line)
        if (keyOfLine(list, line) == key)
            return line;
    return -1;
}

/// A name within a caption: an ampersand marks no key there.
QString captionOf(QString name) {
    return name.replace(u"&"_s, u"&&"_s);
}

} // namespace

void UndoCommands::addCommands() {
    CommandTable &commands = m_editor.controls.commands;
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
    const QMenu &menu = m_editor.controls.menu(Menu::EditMenu);
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this] { menuOpens(); });
    // An entry that was chosen is done only once its menu is hidden.
    QObject::connect(
        &menu, &QMenu::aboutToHide, &menu, [this] { follow(); }, Qt::QueuedConnection);
}

void UndoCommands::menuOpens() const {
    const QLineEdit *text = textUnderEdit();
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
    m_editor.controls.action(Command::HistoryMenu).setEnabled(pane >= 0);
    m_editor.controls.action(Command::RevertMenu).setEnabled(reverts);
}

void UndoCommands::setCaption(Command command, const QString &caption, bool enabled) const {
    QAction &action = m_editor.controls.action(command);
    action.setEnabled(enabled);
    if (action.text() != caption)
        action.setText(caption);
}

void UndoCommands::UndoMenu_Click() {
    if (QLineEdit *text = textUnderEdit()) {
        text->undo();
        return;
    }
    if (const int pane = paneWithSteps(); pane >= 0)
        change(pane, [](const QirDatabase &database) { database.Undo(); });
}

void UndoCommands::RedoMenu_Click() {
    if (QLineEdit *text = textUnderEdit()) {
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
    HistoryWindow window(m_editor.OggettoDtb(pane), m_editor.controls.window);
    if (window.exec() != QDialog::Accepted || window.chosen() == m_editor.OggettoDtb(pane).StepsDone())
        return;
    change(pane, [&](const QirDatabase &database) { database.GoToStep(window.chosen()); });
}

void UndoCommands::RevertMenu_Click() {
    const int pane = paneWithSteps();
    if (pane < 0 || !m_editor.OggettoDtb(pane).hasRevert())
        return;
    const QString question = tr("Do you want to go back to what is saved of '%1' ?").arg(m_editor.NomeFileDtb(pane));
    if (askYesNo(m_editor.controls.window, question, u"?"_s) == Answer::No)
        return;
    change(pane, [](const QirDatabase &database) { database.RevertToSaved(tr("Revert to Saved")); });
}

/// Runs what changes the pane's database by itself, and shows what it has become.
void UndoCommands::change(int pane, const std::function<void(const QirDatabase &)> &procedure) {
    m_editor.endEdit();
    const ActivePaneScope active(m_editor); // lists are clicked from code
    const ListBox &list = m_editor.ListaTabelle(pane);
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const Shown before{tableNames(database), keyOfLine(list, list.ListIndex()), list.ListIndex(), list.TopIndex()};
    m_editor.pane(pane).currentTableLost();
    procedure(database);
    showChanges(pane, before);
}

void UndoCommands::showChanges(int pane, const Shown &before) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const QString table = database.ChangedTable();
    const ListBox &list = m_editor.ListaTabelle(pane);
    const int line = table.isEmpty() ? -1 : lineOfKey(list, collationKey(table));
    if (tableNames(database) != before.tables || database.ChangedTables() > 1 || line < 0) {
        refillLists(pane, before, table);
    } else if (line == list.ListIndex()) {
        m_tables.CaricaTabellaDaLista(pane);
    } else {
        m_editor.pane(pane).refilled(); // so that the click loads it
        m_editor.ListaTabelle(pane).setListIndex(line);
    }
    goToCell(pane, table);
}

/// The lists, their marks and both grids anew.
void UndoCommands::refillLists(int pane, const Shown &before, const QString &table) {
    forgetLostTable(pane);
    m_alignment.MostraTabelleDiverseInLista();
    const ListBox &list = m_editor.ListaTabelle(pane);
    int line = table.isEmpty() ? -1 : lineOfKey(list, collationKey(table));
    if (line < 0 && !before.selected.isEmpty())
        line = lineOfKey(list, before.selected);
    if (line < 0 && list.ListCount() > 0)
        line = qBound(0, before.line, list.ListCount() - 1);
    selectLine(line, before.top);
    const Pane &shown = m_editor.pane(pane);
    if (shown.realTableSelected() && shown.TabellaMostrata() == shown.selectedTableName())
        m_tables.CaricaTabellaDaLista(pane); // what it shows may have changed
    m_tables.settlePanes();
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::Ignore);
}

void UndoCommands::selectLine(int line, int top) {
    const RefillScope refill(m_editor.listClicks()); // what is selected is loaded afterwards
    for (const int pane : {0, 1}) {
        if (!m_editor.DtbAperto(pane))
            continue;
        m_editor.ListaTabelle(pane).setListIndex(line);
        m_editor.ListaTabelle(pane).setTopIndex(top);
    }
}

/// A table that is no more, or has another name, is not shown.
void UndoCommands::forgetLostTable(int pane) {
    Pane &shown = m_editor.pane(pane);
    const auto isLost = [&](const QString &name) {
        return !name.isEmpty() && !m_editor.OggettoDtb(pane).ExistTable(name);
    };
    if (!isLost(shown.TabellaMostrata()) && !isLost(shown.UltimaTabella()))
        return;
    shown.tableRemoved();
    m_differences.becomeDue();
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
