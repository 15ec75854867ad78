#include "compare/DifferingTables.h"

#include "app/shared/utility.h"
#include "base/Collation.h"
#include "pane/PaneTable.h"
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

void DifferingTables::IndividuaTabelleDiverse(const QStringList &elencoUnico) {
    Q_UNUSED(elencoUnico)
    const ListBox &list = m_editor.ListaTabelle(0);
    m_equalTables.clear();
    m_equalAt = revisions();
    YieldTimer timer;
    for (int i = 0; i < list.ListCount(); ++i) {
        if (compareLine(i, timer) == false)
            m_equalTables.insert(collationKey(list.List(i)));
    }
}

std::optional<bool> DifferingTables::compareLine(int line, YieldTimer &timer) {
    const QirDatabase &left = m_editor.OggettoDtb(0);
    const QirDatabase &right = m_editor.OggettoDtb(1);
    const ListBox &list = m_editor.ListaTabelle(0);
    const QString name = TogliMarcatori(list.List(line).trimmed());
    const bool inLeft = left.ExistTable(name);
    const bool inRight = right.ExistTable(name);
    // A component with twins knows the name of a placeholder too.
    if (!inLeft || !inRight || list.ItemData(line) == 0 || m_editor.ListaTabelle(1).ItemData(line) == 0)
        return std::nullopt;
    makeTableCurrent(m_editor, 0, name);
    makeTableCurrent(m_editor, 1, name);
    const bool different = currentTablesDiffer(left, right, [&](int) { timer.yieldIfDue(); });
    SettaTabelleUgualiDiverse(different, line);
    return different;
}

void DifferingTables::markTable(const QString &name) {
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

std::array<std::uint64_t, 2> DifferingTables::revisions() const {
    return {m_editor.OggettoDtb(0).revision(), m_editor.OggettoDtb(1).revision()};
}

bool DifferingTables::currentTablesKnownEqual() const {
    const QString &left = m_editor.TabellaCorrente(0);
    return m_equalAt == revisions() && collationKey(left) == collationKey(m_editor.TabellaCorrente(1)) &&
           m_equalTables.contains(collationKey(left));
}

void DifferingTables::TabelleDiverseBool(int R, int F, BitMatrix &matrix, const ComparisonStep &step) {
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1))
        return;
    YieldTimer timer;
    const ComparisonStep stepAndYield = [&](int record) {
        if (step)
            step(record);
        timer.yieldIfDue();
    };
    if (currentTablesKnownEqual())
        markEqualTables(R, F, matrix, stepAndYield);
    else
        compareCurrentTables(m_editor.OggettoDtb(0), m_editor.OggettoDtb(1), R, F, matrix, stepAndYield);
}

void DifferingTables::SettaTabelleUgualiDiverse(bool different, int index) {
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

void DifferingTables::MostraTabellaDiversaInLista() {
    const bool bothOpen = m_editor.DtbAperto(0) && m_editor.DtbAperto(1);
    if (bothOpen && !panesShowSameTable(m_editor))
        return; // what the grids show says nothing about either line
    bool different = false;
    if (bothOpen && m_editor.Tabella(0).Visible() && m_editor.Tabella(1).Visible())
        different = m_editor.state.CelleDiverse.count() > 0;
    SettaTabelleUgualiDiverse(different, m_editor.ListaTabelle(0).ListIndex());
}

void DifferingTables::SetEqualColor(int pane, int row, int column) {
    Grid &grid = m_editor.Tabella(pane);
    if (row < 0 || column < 0 || row >= grid.Rows() || column >= grid.Cols())
        return;
    const bool different =
        m_editor.state.CelleDiverse.at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
    const CellColour wanted = different ? CellColour::Red : CellColour::White;
    if (m_editor.ColoriCelle(pane).at(row, column) != wanted)
        grid.setCellBackColor(row, column, wanted);
}

} // namespace qir
