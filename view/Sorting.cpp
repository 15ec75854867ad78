#include "view/Sorting.h"

#include "compare/CellDifferences.h"
#include "pane/PaneTable.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "view/RecordOrder.h"
#include "view/TableView.h"

namespace qir {

void Sorting::SortFPOP_Click() {
    const int pane = m_editor.state.IndexOrigine;
    if (!m_editor.DtbAperto(pane) || !realTableSelected(m_editor, pane))
        return;
    m_tables.requireWhole(pane);
    endEdit(m_editor);
    Grid &grid = m_editor.Tabella(pane);
    m_editor.state.ColonnaOrdinamento = grid.Col();
    try {
        OrdinaPerColonna(grid, m_editor.state.ColonnaOrdinamento);
        grid.renumberRows(); // row r stands for record r from now on, whatever it showed
        m_differences.SalvaGridInDatabase(pane);
    } catch (const std::exception &) {
        m_tables.reloadAfterFailure(pane);
        throw;
    }
}

void Sorting::OrdinaPerColonna(Grid &grid, int Column) {
    EditorState &state = m_editor.state;
    if (state.ColonnaOrdinamento < 0)
        return;
    const BusyPointer busy;
    if (grid.Rows() > 1 && Column >= 1 && Column < grid.Cols()) {
        grid.setSelection({1, Column, grid.Rows() - 1, Column});
        grid.reorderRecords(ascendingOrder(grid.texts().column(Column)));
    }
    state.ColonnaOrdinamento = Column;
}

} // namespace qir
