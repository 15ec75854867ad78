#include "find/PasteAll.h"

#include "base/UndoOnError.h"
#include "pane/OnlyDifferencesShown.h"
#include "pane/StoredMarks.h"
#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "platform/loop/MessageLoop.h"
#include "view/AreaClipboard.h"
#include "view/GridSave.h"
#include "view/TableLoader.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace qir {

using namespace Qt::StringLiterals;

void PasteAll::addCommands() {
    m_editor.commands().add(Command::PasteAllMenu, tr("Paste A&ll"), [this] { PasteAllMenu_Click(); },
                            {.needs = Needs::Database});
}

void PasteAll::PasteAllMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    const std::optional<ClipboardBlock> block = ClipboardBlock::taken();
    if (!block || block->records() == 0 || !hasFields(m_editor, pane))
        return;
    if (refusedOnlyDifferences(m_editor, pane))
        return;
    m_editor.pane(pane).requireWhole();
    const int last = recordCells(m_editor.Tabella(pane)).firstRow + block->records() - 1;
    int missing = std::max(last - (m_editor.Tabella(pane).Rows() - 1), 0);
    if (missing > 0) {
        const Answer answer =
            askYesNoCancel(m_editor.controls().window,
                           missing == 1 ? tr("The block needs 1 record more. Add it?")
                                        : tr("The block needs %1 records more. Add them?").arg(missing),
                           u"?"_s);
        if (answer == Answer::Cancel)
            return;
        if (answer != Answer::Yes)
            missing = 0;
    }
    if (m_editor.Tabella(pane).Rows() == 1 && missing == 0) { // still without records
        tellOutcome(m_editor.Tabella(pane), {}, *block);
        return;
    }
    const BusyPointer busy;
    m_editor.endEdit(); // of a cell that the paste may change
    undoneOnError([&] { paste(pane, *block, missing); }, [&] { m_tables.reloadAfterFailure(pane); });
}

void PasteAll::addRecords(int pane, int count) {
    if (count < 1)
        return;
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    if (database.hasColumns()) {
        database.AppendRecords(count);
    } else {
        YieldTimer timer;
        for (int record = 0; record < count; ++record) {
            database.AddRecord();
            timer.yieldIfDue();
        }
    }
    m_tables.CaricaTabellaAVideo(pane);
}

/// What the table has no cell for, and what it stores otherwise.
void PasteAll::tellOutcome(const Grid &grid, const GridRange &cells, const ClipboardBlock &block) const {
    std::int64_t outside = 0;
    QString first;
    block.forEachValue([&](int row, int column, QStringView) {
        if (!cells.contains(cells.firstRow + row, cells.firstColumn + column) && outside++ == 0)
            first = blockPlaceWords(row, column);
    });
    const QString otherwise = storedOtherwise(grid, cells);
    if (outside == 0 && otherwise.isEmpty())
        return;
    const QString dropped = outside == 1
                                ? tr("1 pasted value had no place in the table (%1)").arg(first)
                                : tr("%1 pasted values had no place in the table (first: %2)").arg(outside).arg(first);
    if (outside == 0)
        m_editor.status().showMessage(tr("Of the pasted values %1").arg(otherwise));
    else
        m_editor.status().showMessage(otherwise.isEmpty() ? dropped : dropped + u"; "_s + otherwise);
}

void PasteAll::paste(int pane, const ClipboardBlock &block, int newRecords) {
    m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const ChangeStep step(database, tr("Paste All"));
    ChangeGroup changes(database);
    addRecords(pane, newRecords);
    Grid &grid = m_editor.Tabella(pane);
    const GridRange from = recordCells(grid);
    grid.setSelection({from.firstRow, from.firstColumn, std::min(from.firstRow + block.records(), grid.Rows()) - 1,
                       std::min(from.firstColumn + block.fields(), grid.Cols()) - 1});
    block.layInto(grid);
    m_save.SalvaGridInDatabase(pane, grid.selection().range());
    changes.commit();
    m_stored.lookAtWritten(pane, grid.selection().range());
    tellOutcome(grid, grid.selection().range(), block);
}

} // namespace qir
