#include "compare/TableListAlignment.h"

#include "app/shared/Funzioni.h"
#include "app/shared/utility.h"
#include "compare/TableMarks.h"
#include "compare/engine/NameAlignment.h"

#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

namespace qir {

using namespace Qt::StringLiterals;

namespace {

QStringList linesOf(const ListBox &list) {
    QStringList lines;
    lines.reserve(list.ListCount());
    for (int line = 0; line < list.ListCount(); ++line)
        lines.append(list.List(line));
    return lines;
}

} // namespace

bool NomiTabelleUguali(const QString &name1, const QString &name2) {
    return TogliMarcatori(name1) == TogliMarcatori(name2);
}

bool NomeTabella1_MaggioreDi_NomeTabella2(const QString &name1, const QString &name2) {
    return TogliMarcatori(name1) > TogliMarcatori(name2); // QString's own order is that of the code units
}

void TableListAlignment::MostraTabelleDiverseInLista() {
    const RefillScope refill(m_editor.listClicks());
    for (const int pane : {0, 1}) {
        if (!m_editor.DtbAperto(pane))
            continue;
        m_editor.pane(pane).refilled();
        CaricaListaTabelle(m_editor.OggettoDtb(pane), m_editor.ListaTabelle(pane));
    }
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1))
        return;
    QStringList elencoUnico;
    CreaListaUnicaTabella(elencoUnico);
    CreaSpaziInListeTabelle(elencoUnico);
    m_marks.IndividuaTabelleDiverse(elencoUnico);
}

void TableListAlignment::CreaListaUnicaTabella(QStringList &elencoUnico) {
    const QirDatabase &left = m_editor.OggettoDtb(0);
    const QirDatabase &right = m_editor.OggettoDtb(1);
    const int L = left.QIRTablesCount();
    const int R = right.QIRTablesCount();
    QStringList names = tableNames(left, L);
    names += tableNames(right, R);
    ListBox &sorter = *m_editor.controls().ProSort;
    sorter.clear();
    for (const QString &name : names)
        sorter.addItem(name);
    yieldToMessages();
    elencoUnico = withoutRepeatedNames(linesOf(sorter));
}

void TableListAlignment::CreaSpaziInListeTabelle(const QStringList &elencoUnico) {
    const std::vector<AlignedRow> rows =
        alignNames(elencoUnico, linesOf(m_editor.ListaTabelle(0)), linesOf(m_editor.ListaTabelle(1)));
    for (const int pane : {0, 1}) {
        ListBox &list = m_editor.ListaTabelle(pane);
        for (std::size_t row = 0; row < rows.size(); ++row) {
            if ((pane == 0 ? rows[row].left : rows[row].right) >= 0)
                continue;
            list.insertItem(static_cast<int>(row), rows[row].name + u" ?"_s);
            list.setItemData(list.NewIndex(), 0);
        }
    }
}

} // namespace qir
