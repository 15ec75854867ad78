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

namespace qir {

using namespace Qt::StringLiterals;

void PasteAll::addCommands() {
    m_editor.controls.commands.add(Command::PasteAllMenu, tr("Paste A&ll"), [this] { PasteAllMenu_Click(); },
                                   {.needs = Needs::Database});
}

void PasteAll::PasteAllMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    const std::optional<CellTexts> block = clipboardCells();
    if (!block || block->records() == 0 || !showsFields(m_editor, pane))
        return;
    if (refusedOnlyDifferences(m_editor, pane))
        return;
    m_editor.pane(pane).requireWhole();
    const int last = recordCells(m_editor.Tabella(pane)).firstRow + block->records() - 1;
    int missing = std::max(last - (m_editor.Tabella(pane).Rows() - 1), 0);
    if (missing > 0) {
        const Answer answer =
            askYesNoCancel(m_editor.controls.window,
                           missing == 1 ? tr("The block needs 1 record more. Add it?")
                                        : tr("The block needs %1 records more. Add them?").arg(missing),
                           u"?"_s);
        if (answer == Answer::Cancel)
            return;
        if (answer != Answer::Yes)
            missing = 0;
    }
    const BusyPointer busy;
    m_editor.endEdit(); // of a cell that the paste may change
    undoneOnError([&] { paste(pane, *block, missing); }, [&] { m_tables.reloadAfterFailure(pane); });
}

void PasteAll::paste(int pane, const CellTexts &block, int newRecords) {
    m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const ChangeStep step(database, tr("Paste All"));
    ChangeGroup changes(database);
    YieldTimer timer;
    for (int record = 0; record < newRecords; ++record) {
        database.AddRecord();
        timer.yieldIfDue();
    }
    if (newRecords > 0)
        m_tables.CaricaTabellaAVideo(pane);
    Grid &grid = m_editor.Tabella(pane);
    const GridRange from = recordCells(grid);
    grid.setSelection({from.firstRow, from.firstColumn, std::min(from.firstRow + block.records(), grid.Rows()) - 1,
                       std::min(from.firstColumn + block.fields(), grid.Cols()) - 1});
    layClipboard(grid);
    m_save.SalvaGridInDatabase(pane, grid.selection().range());
    changes.commit();
    m_stored.look(pane, grid.selection().range());
    if (const QString words = storedOtherwise(grid, grid.selection().range()); !words.isEmpty())
        m_editor.status().showMessage(tr("Of the pasted values %1").arg(words));
}

} // namespace qir
