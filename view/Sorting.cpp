#include "view/Sorting.h"

#include "base/UndoOnError.h"
#include "pane/OnlyDifferencesShown.h"
#include "pane/StoredMarks.h"
#include "platform/cells/RecordOrder.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "view/GridSave.h"
#include "view/StepNames.h"
#include "view/TableLoader.h"

namespace qir {

void Sorting::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::SortFPOP, tr("&Sort by This Field"), [this] { SortFPOP_Click(); });
}

void Sorting::SortFPOP_Click() {
    const int pane = m_editor.IndexOrigine();
    if (!m_editor.DtbAperto(pane) || !m_editor.pane(pane).realTableSelected())
        return;
    if (refusedOnlyDifferences(m_editor, pane))
        return;
    m_editor.pane(pane).requireWhole();
    m_editor.endEdit();
    Grid &grid = m_editor.Tabella(pane);
    m_tables.sortedBy(grid.Col());
    undoneOnError(
        [&] {
            const std::vector<std::uint32_t> order = OrdinaPerColonna(grid, m_tables.ColonnaOrdinamento());
            grid.renumberRows(); // row r stands for record r from now on, whatever it showed
            const ChangeStep step(m_editor.OggettoDtb(pane),
                                  tr("Sort by %1").arg(fieldNameOf(grid, m_tables.ColonnaOrdinamento())));
            const bool wasUnstored = m_editor.pane(pane).TextsUnstored();
            m_save.SalvaGridInDatabase(pane);
            if (wasUnstored)
                StoredMarks(m_editor).lookAtWritten(pane, {1, 1, grid.Rows() - 1, grid.Cols() - 1});
            if (order.empty())
                return;
            m_editor.pane(pane).makeShownTableCurrent();
            m_editor.OggettoDtb(pane).RecordsReordered(order);
        },
        [&] { m_tables.reloadAfterFailure(pane); });
}

std::vector<std::uint32_t> Sorting::OrdinaPerColonna(Grid &grid, int Column) {
    std::vector<std::uint32_t> order;
    if (m_tables.ColonnaOrdinamento() < 0)
        return order;
    const BusyPointer busy;
    if (grid.Rows() > 1 && Column >= 1 && Column < grid.Cols()) {
        grid.setSelection({1, Column, grid.Rows() - 1, Column});
        order = ascendingOrder(grid.texts().column(Column));
        grid.reorderRecords(order);
    }
    m_tables.sortedBy(Column);
    return order;
}

} // namespace qir
