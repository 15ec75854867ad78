#include "view/TableLoader.h"

#include "base/UndoOnError.h"
#include "base/words/StorageWords.h"
#include "compare/CellDifferences.h"
#include "db/FieldTypes.h"
#include "pane/ActivePane.h"
#include "pane/GridCommands.h"
#include "platform/grid/Grid.h"
#include "platform/grid/GridFill.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "view/ColumnFit.h"
#include "view/GridAlignment.h"

#include <QAction>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace qir {

using namespace Qt::StringLiterals;

void TableLoader::connectPane(int pane) {
    ListBox &list = m_editor.ListaTabelle(pane);
    QObject::connect(&list, &ListBox::Click, &list, [this, pane] { runCommand([&] { ListaTabelle_Click(pane); }); });
}

void TableLoader::ListaTabelle_Click(int pane) {
    if (!m_editor.listClicks().handled())
        return;
    activatePane(m_editor, pane);
    const ActivePaneScope active(m_editor); // the other list's click makes the other pane active; an error may follow
    ListBox &list = m_editor.ListaTabelle(pane);
    if (list.ListIndex() == m_editor.UltimoListIndex(pane))
        return;
    RichiamaTabella(pane, u"ListaTabelle"_s);

    const int other = 1 - pane;
    ListBox &otherList = m_editor.ListaTabelle(other);
    if (!m_editor.DtbAperto(other) || otherList.ListIndex() == list.ListIndex())
        return;
    otherList.setListIndex(list.ListIndex()); // raises the other list's click, which loads the same line there
    otherList.setTopIndex(list.TopIndex());
    m_differences.EvidenziaDifferenzeTabella();
}

void TableLoader::RichiamaTabella(int pane, const QString &Caller) {
    Q_UNUSED(Caller)
    const ListBox &list = m_editor.ListaTabelle(pane);
    if (list.ListIndex() < 0)
        return;
    Pane &shown = m_editor.pane(pane);
    shown.lineTaken();
    if (!m_editor.pane(pane).realTableSelected()) {
        hideTable(pane);
        return;
    }
    const QString name = m_editor.pane(pane).selectedTableName();
    try {
        m_editor.pane(pane).showGrid(true);
        m_editor.pane(pane).makeTableCurrent(name);
        loadCurrentTable(pane);
    } catch (const std::exception &error) {
        // Silent: what was filled so far stays, but a grid that still holds another table must not show under this
        // line.
        shown.loadBrokeOff(spokenWords(error));
        if (m_editor.pane(pane).TabellaMostrata() != name)
            hideTable(pane);
    }
    yieldToMessages();
}

void TableLoader::hideTable(int pane) {
    m_editor.pane(pane).showGrid(false);
    if (m_editor.pane(pane).tableHidden())
        m_differences.becomeDue(); // the other grid is left alone
}

void TableLoader::CaricaTabellaDaLista(int pane) {
    ListBox &list = m_editor.ListaTabelle(pane);
    QAction &removeTable = m_editor.controls().action(Command::RemoveTableMenu);
    if (list.ListCount() == 0) {
        removeTable.setEnabled(false);
        return;
    }
    if (list.ListIndex() < 0) {
        list.setListIndex(0); // its click loads the table
    } else {
        if (m_editor.pane(pane).realTableSelected()) {
            reloaded(pane, [&] {
                m_editor.pane(pane).makeTableCurrent(m_editor.pane(pane).selectedTableName());
                loadCurrentTable(pane);
            });
        } else {
            hideTable(pane);
        }
        m_editor.pane(pane).lineSettled();
        m_differences.EvidenziaDifferenzeTabella();
    }
    removeTable.setEnabled(true);
}

void TableLoader::CaricaTabellaAVideo(int pane) {
    reloaded(pane, [&] { loadCurrentTable(pane); });
}

void TableLoader::reloaded(int pane, const std::function<void()> &load) {
    undoneOnError(load, [&] { m_editor.pane(pane).tableHidden(); });
}

void TableLoader::loadCurrentTable(int pane) {
    m_editor.endEdit();
    m_commands.gridFilled();
    RiempiGrigliaDaTabella(pane);
    m_editor.pane(pane).loadSucceeded();
    const Grid &grid = m_editor.Tabella(pane);
    m_editor.controls().action(Command::RemoveFieldMenu).setEnabled(grid.Cols() >= 3);
    m_editor.controls().action(Command::RemoveRecordMenu).setEnabled(grid.Rows() >= 2);
    m_sortColumn = 1;
}

namespace {

/// What no grid has: another table was shown before.
constexpr GridSelection noSelection{-1, -1, -1, -1};

void fillFromRecords(GridFill &fill, const QirDatabase &database, int records) {
    QStringList values;
    YieldTimer timer;
    for (int r = 1; r <= records; ++r) {
        database.GetQirRecord(r, values);
        fill.appendRecord(values);
        timer.yieldIfDue();
    }
}

/// Some ten thousand records at a time, as they stand in the component: no value is looked at.
void fillFromColumns(GridFill &fill, const QirDatabase &database, int records) {
    std::vector<ColumnBlock> blocks(static_cast<std::size_t>(database.QirTableFieldsCount()));
    YieldTimer timer;
    for (int first = 1; first <= records;) {
        qsizetype count = records - first + 1;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            blocks[i] = database.ReadColumn(static_cast<int>(i) + 1, first, static_cast<int>(count));
            count = std::min(count, blocks[i].count());
        }
        for (ColumnBlock &block : blocks) {
            if (block.count() > count)
                block = block.sliced(0, count);
        }
        fill.appendRecords(blocks);
        first += static_cast<int>(count);
        timer.yieldIfDue();
    }
}

} // namespace

QString headerText(const QirDatabase &database, int field) {
    return database.QIRTableFieldName(field) + " ["_L1 + DBTypeName(database.QIRTableFieldType(field)) + "]"_L1;
}

void TableLoader::RiempiGrigliaDaTabella(int pane) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    Grid &grid = m_editor.Tabella(pane);
    const bool reload = m_editor.pane(pane).TabellaMostrata() == m_editor.pane(pane).TabellaCorrente();

    QStringList headers;
    for (int k = 1; k <= database.QirTableFieldsCount(); ++k)
        headers.append(headerText(database, k));
    // A table without fields shows one empty column, which stands for no field.
    const bool hasFields = !headers.isEmpty();
    if (!hasFields)
        headers.append(QString());
    const int records = database.QirTableRecordsCount();
    if (std::optional<GridSelection> &before = m_selectionBefore[static_cast<std::size_t>(pane)]; !reload) {
        before = noSelection;
    } else if (!before) {
        before = grid.selection();
        m_stoodApart = m_stoodApart || gridsStandApart(m_editor);
    }

    // From here on the grid shows this table; until here an error leaves it with the one before.
    if (m_editor.pane(pane).tableLoaded())
        m_differences.becomeDue();
    {
        GridFill fill(grid, headers, records, reload ? GridFill::SameTable : GridFill::NewTable);
        if (hasFields && database.hasColumns())
            fillFromColumns(fill, database, records);
        else
            fillFromRecords(fill, database, records);
    }
    if (!hasFields)
        grid.setColData(1, 0);
    if (m_editor.gridsShowSameTable())
        grid.followRowHeights(m_editor.Tabella(1 - pane));
    if (reload && m_editor.panesShowSameTable())
        grid.paintDifferences(m_editor.CelleDiverse());
    SizeAdjust(m_editor, grid);
    m_editor.pane(pane).showGrid(grid.Rows() > 1);
}

void TableLoader::reloadAfterFailure(int pane) {
    RichiamaTabella(pane, u"ListaTabelle"_s);
    if (m_editor.pane(pane).LoadFailed())
        hideTable(pane); // its texts are not what the records hold
    try {
        m_differences.EvidenziaDifferenzeTabella();
    } catch (const std::exception &) { // the error that made the reload necessary is the one to tell
    }
}

void TableLoader::settlePanes() {
    for (const int pane : {0, 1})
        m_editor.ListaTabelle(pane).endLostClick();
    for (const int pane : {0, 1}) {
        // A line that a press has selected is loaded by the click, in both panes.
        if (!m_editor.DtbAperto(pane) || m_editor.ListaTabelle(pane).clickPending())
            continue;
        const bool real = m_editor.pane(pane).realTableSelected();
        if (real && m_editor.pane(pane).TabellaMostrata() != m_editor.pane(pane).selectedTableName()) {
            RichiamaTabella(pane, u"ListaTabelle"_s);
        } else if (!real) {
            hideTable(pane);
        } else if (!m_editor.pane(pane).LoadFailed()) {
            m_editor.pane(pane).lineSettled();
        }
    }
    mirrorFilled();
    compareIfDue();
    const int active = m_editor.IndexAttivo();
    m_editor.controls()
        .action(Command::RemoveTableMenu)
        .setEnabled(active >= 0 && m_editor.DtbAperto(active) && m_editor.ListaTabelle(active).ListCount() > 0);
    m_commands.follow(m_editor);
}

/// A load raises nothing, though it may have moved or cut its grid's selection, which is the other grid's too then; or
/// it has made its grid large enough for the other's.
void TableLoader::mirrorFilled() {
    const std::array<std::optional<GridSelection>, 2> before = std::exchange(m_selectionBefore, {});
    // Where they were brought to two records they stay until a person moves.
    if (std::exchange(m_stoodApart, false) && before[0] != noSelection && before[1] != noSelection)
        return;
    const Grid &left = m_editor.Tabella(0);
    const Grid &right = m_editor.Tabella(1);
    if ((!before[0] && !before[1]) || !left.Visible() || !right.Visible())
        return;
    const bool leftMoved = before[0] && *before[0] != left.selection();
    const bool rightMoved = before[1] && *before[1] != right.selection();
    int leader = m_editor.IndexAttivo() == 1 ? 1 : 0;
    if (leftMoved != rightMoved)
        leader = rightMoved ? 1 : 0;
    else if (!leftMoved && before[0].has_value() != before[1].has_value())
        leader = before[0] ? 1 : 0;
    mirrorSelection(m_editor, leader);
}

void TableLoader::compareIfDue() {
    if (!m_differences.due())
        return;
    // A line that the other list had selected already was loaded without a comparison. With different lines there is
    // none to make, but what a grid was compared with may be gone.
    const auto hasRed = [](const Grid &grid) { return grid.Visible() && grid.colours().redCount() > 0; };
    const bool red = hasRed(m_editor.Tabella(0)) || hasRed(m_editor.Tabella(1));
    m_differences.EvidenziaDifferenzeTabella(red ? SelectionRule::Ignore : SelectionRule::SameLine);
}

} // namespace qir
