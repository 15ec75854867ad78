#include "app/desktop/ListRefill.h"

#include "app/desktop/ShownPlace.h"
#include "base/Collation.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "platform/list/ListBox.h"
#include "view/TableLoader.h"

namespace qir {

namespace {

QStringList namesOf(const QirDatabase &database) {
    QStringList names;
    const int tables = database.QIRTablesCount();
    for (int table = 1; table <= tables; ++table)
        names.append(database.QIRTableName(table));
    return names;
}

} // namespace

ListRefill::ListRefill(EditorContext &editor, TableListAlignment &alignment, CellDifferences &differences,
                       TableLoader &tables, int pane)
    : m_editor(editor)
    , m_alignment(alignment)
    , m_differences(differences)
    , m_tables(tables)
    , m_pane(pane)
    , m_names(namesOf(editor.OggettoDtb(pane)))
    , m_line(editor.ListaTabelle(pane).ListIndex())
    , m_top(editor.ListaTabelle(pane).TopIndex()) {
    if (m_line >= 0)
        m_selected = collationKey(editor.ListaTabelle(pane).List(m_line));
}

bool ListRefill::namesHaveChanged() const {
    return namesOf(m_editor.OggettoDtb(m_pane)) != m_names;
}

void ListRefill::refill(const QString &table) {
    forgetLostTable();
    m_alignment.MostraTabelleDiverseInLista();
    const ListBox &list = m_editor.ListaTabelle(m_pane);
    int line = table.isEmpty() ? -1 : lineOfKey(list, collationKey(table));
    if (line < 0 && !m_selected.isEmpty())
        line = lineOfKey(list, m_selected);
    if (line < 0 && list.ListCount() > 0)
        line = qBound(0, m_line, list.ListCount() - 1);
    selectLine(line);
    const Pane &shown = m_editor.pane(m_pane);
    if (shown.realTableSelected() && shown.TabellaMostrata() == shown.selectedTableName())
        m_tables.CaricaTabellaDaLista(m_pane); // what it shows may have changed
    m_tables.settlePanes();
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::Ignore);
}

void ListRefill::selectLine(int line) const {
    const RefillScope refill(m_editor.listClicks()); // what is selected is loaded afterwards
    for (const int pane : {0, 1}) {
        if (!m_editor.DtbAperto(pane))
            continue;
        m_editor.ListaTabelle(pane).setListIndex(line);
        m_editor.ListaTabelle(pane).setTopIndex(m_top);
    }
}

/// A table that is no more, or has another name, is not shown.
void ListRefill::forgetLostTable() const {
    Pane &shown = m_editor.pane(m_pane);
    const auto isLost = [&](const QString &name) {
        return !name.isEmpty() && !m_editor.OggettoDtb(m_pane).ExistTable(name);
    };
    if (!isLost(shown.TabellaMostrata()) && !isLost(shown.UltimaTabella()))
        return;
    shown.tableRemoved();
    m_differences.becomeDue();
}

} // namespace qir
