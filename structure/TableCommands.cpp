#include "structure/TableCommands.h"

#include "app/shared/Funzioni.h"
#include "app/shared/utility.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "pane/ActivePane.h"

#include "platform/dialogs/Dialogs.h"
#include "platform/list/ListBox.h"
#include "structure/Names.h"
#include "view/TableLoader.h"

namespace qir {

using namespace Qt::StringLiterals;

void TableCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::AddTableMenu, tr("&Add..."), [this] { AddTableMenu_Click(); });
    commands.add(Command::RenameTableMenu, tr("&Rename..."), [this] { RenameTableSecco(); });
    commands.add(Command::RemoveTableMenu, tr("Re&move..."), [this] { RemoveTableSecco(); });
    commands.add(Command::RenameTablePOP, tr("&Rename..."), [this] { RenameTableSecco(); });
    commands.add(Command::RemoveTablePOP, tr("Re&move..."), [this] { RemoveTableSecco(); });
}

bool TableCommands::nameTaken(const QString &name) const {
    const QirDatabase &database = m_editor.OggettoDtb(m_editor.IndexAttivo());
    const int tables = database.QIRTablesCount();
    for (int i = 1; i <= tables; ++i)
        if (sameName(name, database.QIRTableName(i)))
            return true;
    return false;
}

void TableCommands::AddTableMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    QWidget *window = m_editor.controls().window;
    const QString name = inputBox(window, tr("New table name"), u"?"_s, u"Tablex"_s).trimmed();
    if (name.isEmpty())
        return;
    if (nameTaken(name)) {
        messageBox(window, tr("Table: '%1' already exists").arg(name), u"!"_s);
        return;
    }
    {
        const ChangeStep step(m_editor.OggettoDtb(pane), tr("Adding table %1").arg(name));
        m_editor.OggettoDtb(pane).AddTable(name);
    }
    {
        const RefillScope refill(m_editor.listClicks());
        m_editor.pane(pane).refilled();
        CaricaListaTabelle(m_editor.OggettoDtb(pane), m_editor.ListaTabelle(pane));
    }
    m_tables.CaricaTabellaDaLista(pane);
}

void TableCommands::RenameTableSecco() {
    const int pane = m_editor.IndexAttivo();
    if (!m_editor.pane(pane).realTableSelected())
        return;
    ListBox &list = m_editor.ListaTabelle(pane);
    const std::array<int, 2> positions{m_editor.ListaTabelle(0).ListIndex(), m_editor.ListaTabelle(1).ListIndex()};
    const int position = list.ListIndex();
    const QString oldName = TogliMarcatori(list.List(position));
    const QString name =
        inputBox(m_editor.controls().window, tr("Table's new name (%1)").arg(oldName), u"?"_s, oldName);
    if (name.isEmpty())
        return;
    {
        const ChangeStep step(m_editor.OggettoDtb(pane), tr("Renaming table %1").arg(oldName));
        m_editor.OggettoDtb(pane).RenameTable(list.ItemData(position), name);
    }
    list.setList(position, name);
    // The grid goes on showing this table, now under its new name; when its load failed it shows none.
    m_editor.pane(pane).renamed();
    m_alignment.MostraTabelleDiverseInLista();
    selectAgain(positions);
    m_tables.CaricaTabellaDaLista(pane);
}

/// Placeholders inserted by the alignment have moved the selected lines: goes back to the positions, to the first line
/// where a list has lost its position, loading nothing.
void TableCommands::selectAgain(const std::array<int, 2> &positions) {
    const RefillScope refill(m_editor.listClicks());
    for (const int pane : {0, 1}) {
        ListBox &list = m_editor.ListaTabelle(pane);
        const int position = positions[static_cast<std::size_t>(pane)];
        list.setListIndex(position < list.ListCount() ? position : 0);
    }
}

void TableCommands::RemoveTableSecco() {
    const int pane = m_editor.IndexAttivo();
    if (!m_editor.pane(pane).realTableSelected())
        return;
    ListBox &list = m_editor.ListaTabelle(pane);
    const int other = 1 - pane;
    const QString question = tr("Do you want to remove table: '%1' ?").arg(list.List(list.ListIndex()));
    if (askYesNo(m_editor.controls().window, question, u"?"_s) == Answer::No)
        return;
    const ActivePaneScope active(m_editor);
    const int removed = list.ItemData(list.ListIndex());
    {
        const ChangeStep step(m_editor.OggettoDtb(pane),
                              tr("Removing table %1").arg(TogliMarcatori(list.List(list.ListIndex()))));
        m_editor.OggettoDtb(pane).RemoveTable(removed);
    }
    // Nothing of the table is left to show or to work on. Its line goes before the refill, which would select another,
    // and with it all lines, whose numbers are those of other tables now: the refill may break off at the other list.
    m_editor.pane(pane).tableRemoved();
    m_differences.becomeDue();
    list.clear();
    m_alignment.MostraTabelleDiverseInLista();
    // Positions count from 0 and table numbers from 1, so this is the line behind the removed one.
    if (removed < list.ListCount())
        list.setListIndex(removed);
    if (m_editor.DtbAperto(other))
        m_editor.ListaTabelle(other).setListIndex(removed);
}

} // namespace qir
