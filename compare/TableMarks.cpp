#include "compare/TableMarks.h"

#include "app/shared/utility.h"
#include "base/Collation.h"
#include "compare/EqualTables.h"
#include "compare/engine/TableComparison.h"

#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

const QString placeholderMarker = u" ?"_s;
const QString differenceMarker = u" !"_s;

void clearDifference(ListBox &list, int line) {
    const QString shown = list.List(line);
    QString text = shown;
    SostituisciTesto(text, differenceMarker, QString());
    if (text != shown)
        list.setList(line, text);
}

} // namespace

void TableMarks::IndividuaTabelleDiverse(const QStringList &elencoUnico) {
    Q_UNUSED(elencoUnico)
    const ListBox &list = m_editor.ListaTabelle(0);
    m_equal.beginRun();
    YieldTimer timer;
    for (int i = 0; i < list.ListCount(); ++i) {
        if (compareLine(i, timer) == false)
            m_equal.add(list.List(i));
    }
}

std::optional<bool> TableMarks::compareLine(int line, YieldTimer &timer) {
    const QirDatabase &left = m_editor.OggettoDtb(0);
    const QirDatabase &right = m_editor.OggettoDtb(1);
    const ListBox &list = m_editor.ListaTabelle(0);
    const QString name = TogliMarcatori(list.List(line).trimmed());
    const bool inLeft = left.ExistTable(name);
    const bool inRight = right.ExistTable(name);
    // A component with twins knows the name of a placeholder too.
    if (!inLeft || !inRight || list.ItemData(line) == 0 || m_editor.ListaTabelle(1).ItemData(line) == 0)
        return std::nullopt;
    m_editor.pane(0).makeTableCurrent(name);
    m_editor.pane(1).makeTableCurrent(name);
    const bool different = currentTablesDiffer(left, right, [&](int) { timer.yieldIfDue(); });
    SettaTabelleUgualiDiverse(different, line);
    return different;
}

void TableMarks::markTable(const QString &name) {
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1))
        return;
    const ListBox &left = m_editor.ListaTabelle(0);
    const ListBox &right = m_editor.ListaTabelle(1);
    YieldTimer timer;
    for (int line = 0; line < std::min(left.ListCount(), right.ListCount()); ++line) {
        if (collationKey(left.List(line)) == collationKey(name) && collationKey(right.List(line)) == collationKey(name))
            compareLine(line, timer);
    }
}

void TableMarks::SettaTabelleUgualiDiverse(bool different, int index) {
    ListBox &left = m_editor.ListaTabelle(0);
    ListBox &right = m_editor.ListaTabelle(1);
    if (index < 0 || left.ListCount() != right.ListCount())
        return;
    if (!different) {
        clearDifference(left, index);
        clearDifference(right, index);
        return;
    }
    const QString leftText = left.List(index);
    const QString rightText = right.List(index);
    if (leftText.contains(placeholderMarker))
        return; // for the right list too: it goes by the left line
    if (!leftText.contains(differenceMarker))
        left.setList(index, leftText + differenceMarker);
    if (!rightText.contains(differenceMarker))
        right.setList(index, rightText + differenceMarker);
}

void TableMarks::MostraTabellaDiversaInLista() {
    const bool bothOpen = m_editor.DtbAperto(0) && m_editor.DtbAperto(1);
    if (bothOpen && !m_editor.panesShowSameTable())
        return; // what the grids show says nothing about either line
    bool different = false;
    if (bothOpen && m_editor.Tabella(0).Visible() && m_editor.Tabella(1).Visible())
        different = m_editor.CelleDiverse().count() > 0;
    SettaTabelleUgualiDiverse(different, m_editor.ListaTabelle(0).ListIndex());
}

} // namespace qir
