#include "structure/CloneCommands.h"

#include "app/shared/utility.h"
#include "base/Collation.h"
#include "compare/CellDifferences.h"
#include "compare/TableListAlignment.h"
#include "db/AssegnaARecordset.h"
#include "pane/ActivePane.h"
#include "pane/OnlyDifferencesShown.h"

#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"
#include "structure/TableCopy.h"
#include "view/GridSave.h"
#include "view/TableLoader.h"

#include <exception>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// What went wrong in `procedure`, null when nothing did.
template<typename Procedure>
std::exception_ptr failureOf(Procedure procedure) {
    try {
        procedure();
    } catch (const std::exception &) {
        return std::current_exception();
    }
    return nullptr;
}

/// Lets lists and grids show again what the target holds, however the copy ended; then the first error goes on.
template<typename Copy, typename Show>
void copyAndShow(Copy copy, Show show) {
    const std::exception_ptr failure = failureOf(copy);
    const std::exception_ptr failureToShow = failureOf(show);
    if (failure || failureToShow)
        std::rethrow_exception(failure ? failure : failureToShow);
}

/// The name of the table that a line stands for whose table the other database lacks: it has no marker of ours, and
/// what looks like one may be all that there is of a name.
QString tableOfUnmarkedLine(const QString &line) {
    const QString name = TogliMarcatori(line);
    return collationKey(name) == collationKey(line) ? name : line;
}

} // namespace

void CloneCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::ClonePOP, tr("&Copy to Other Database"), [this] { CloneSecco(); });
    commands.add(Command::CloneTableSizePOP, tr("Make Other Table as &Long"), [this] { CloneTableSizeSecco(); });
    commands.add(Command::CloneSelectedAreaPOP, tr("&Copy Selection to Other Table"),
                 [this] { CloneSelectedAreaSecco(); });
    commands.add(Command::CloneTableSizeFPOP, tr("Make Other Table as &Long"), [this] { CloneTableSizeSecco(); });
    commands.add(Command::CloneSelectedAreaFPOP, tr("&Copy Selection to Other Table"),
                 [this] { CloneSelectedAreaSecco(); });
}

void CloneCommands::CloneSecco() {
    ListBox &sourceList = m_editor.ListaTabelle(m_editor.IndexOrigine());
    ListBox &targetList = m_editor.ListaTabelle(m_editor.IndexDestinazione());
    const ActivePaneScope active(m_editor);
    const int position = sourceList.ListIndex();
    copyAndShow([&] { copyTable(tableOfUnmarkedLine(sourceList.List(position))); },
                [&] {
                    m_alignment.MostraTabelleDiverseInLista();
                    sourceList.setListIndex(position);
                    targetList.setListIndex(position);
                });
}

void CloneCommands::copyTable(const QString &name) {
    m_editor.pane(m_editor.IndexOrigine()).makeTableCurrent(name);
    // Not remembered as current: an error on the way takes the table away again.
    m_editor.pane(m_editor.IndexDestinazione()).currentTableLost();
    const ChangeStep step(target(), tr("Copy of table %1").arg(name));
    ChangeGroup changes(target());
    target().AddTable(name);
    target().QIRTableRecordSource(name);
    target().RemoveRecord(1);
    target().RemoveField(1);
    copyFields(source(), target());
    appendCopies(source().QirTableRecordsCount(), true);
    changes.commit();
}

void CloneCommands::requireWholeTables() {
    m_editor.pane(m_editor.IndexOrigine()).requireWhole();
    m_editor.pane(m_editor.IndexDestinazione()).requireWhole();
}

void CloneCommands::CloneTableSizeSecco() {
    requireWholeTables();
    const Answer answer = askYesNoCancel(m_editor.controls().window, tr("Copy Cell content?"), u"?"_s);
    if (answer == Answer::Cancel)
        return;
    const ActivePaneScope active(m_editor);
    m_editor.pane(m_editor.IndexOrigine()).makeShownTableCurrent();
    m_editor.pane(m_editor.IndexDestinazione()).makeShownTableCurrent();
    copyAndShow([&] { appendRecords(answer == Answer::Yes); },
                [&] { m_tables.CaricaTabellaDaLista(m_editor.IndexDestinazione()); });
}

void CloneCommands::appendRecords(bool withContent) {
    const ChangeStep step(target(),
                          tr("Records for %1").arg(m_editor.pane(m_editor.IndexDestinazione()).TabellaMostrata()));
    ChangeGroup changes(target());
    appendCopies(source().QirTableRecordsCount() - m_editor.Tabella(m_editor.IndexDestinazione()).Rows() + 1,
                 withContent);
    changes.commit();
}

void CloneCommands::appendCopies(int count, bool withContent) {
    if (count < 1)
        return;
    const int before = target().QirTableRecordsCount();
    if (canCopyColumns(source(), target())) {
        target().AppendRecords(count);
        if (withContent)
            copyColumns(source(), target(), before + 1, count);
        return;
    }
    RecordCopy copy(source(), target());
    YieldTimer timer;
    for (int record = before + 1; record <= before + count; ++record) {
        target().AddRecord();
        if (withContent) {
            target().setQIRTableRecordsPointerOut(record);
            source().setQIRTableRecordsPointerOut(record);
            copy.copyCurrentRecord();
        }
        timer.yieldIfDue();
    }
}

void CloneCommands::CloneSelectedAreaSecco() {
    if (refusedOnlyDifferences(m_editor, m_editor.IndexOrigine()))
        return;
    requireWholeTables();
    const Grid &grid = m_editor.Tabella(m_editor.IndexOrigine());
    const int firstRow = Minimo(grid.Row(), grid.RowSel()).toInt();
    const int lastRow = Massimo(grid.Row(), grid.RowSel()).toInt();
    const int firstColumn = Minimo(grid.Col(), grid.ColSel()).toInt();
    const int lastColumn = Massimo(grid.Col(), grid.ColSel()).toInt();
    copyArea({firstRow, firstColumn, lastRow, lastColumn});
    const ActivePaneScope active(m_editor);
    // The bounds are the wrong way round: only a block of one cell is painted anew.
    m_differences.EvidenziaDifferenzeTabella(
        SelectionRule::SameLine,
        {.firstRow = lastRow, .lastRow = firstRow, .firstColumn = lastColumn, .lastColumn = firstColumn});
}

void CloneCommands::copyArea(const GridRange &block, const TakesCell &takes) {
    requireWholeTables();
    const int target = m_editor.IndexDestinazione();
    const ActivePaneScope active(m_editor);
    m_editor.endEdit();
    m_editor.pane(target).makeShownTableCurrent();
    if (const std::exception_ptr failure = failureOf([&] { copyBlock(block, takes); })) {
        // The grid has texts that the database refused or has lost again.
        m_tables.reloadAfterFailure(target);
        std::rethrow_exception(failure);
    }
}

void CloneCommands::copyBlock(const GridRange &block, const TakesCell &takes) {
    const Grid &from = m_editor.Tabella(m_editor.IndexOrigine());
    Grid &to = m_editor.Tabella(m_editor.IndexDestinazione());
    const ChangeStep step(target(),
                          tr("Copy of cells to %1").arg(m_editor.pane(m_editor.IndexDestinazione()).TabellaMostrata()));
    ChangeGroup changes(target());
    if (!takes) {
        to.copyTexts(from.texts(), block);
        m_save.store(m_editor.IndexDestinazione(), block);
    } else {
        copyTakenCells(from, to, block, takes);
    }
    changes.commit();
}

void CloneCommands::copyTakenCells(const Grid &from, Grid &to, const GridRange &block, const TakesCell &takes) {
    YieldTimer timer;
    for (int r = block.firstRow; r <= block.lastRow; ++r) {
        target().setQIRTableRecordsPointerOut(to.RowData(r));
        for (int j = block.firstColumn; j <= block.lastColumn; ++j) {
            timer.yieldIfDue();
            if (!takes(r, j))
                continue;
            const QString text = from.TextMatrix(r, j);
            to.setTextMatrix(r, j, text);
            AssegnaARecordset(target(), to.ColData(j), text);
        }
    }
}

} // namespace qir
