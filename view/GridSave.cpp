#include "view/GridSave.h"

#include "compare/CellDifferences.h"
#include "db/AssegnaARecordset.h"
#include "platform/grid/CellTexts.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

#include <algorithm>
#include <vector>

namespace qir {

void GridSave::SalvaGridInDatabase(int pane) {
    const Grid &grid = m_editor.Tabella(pane);
    SalvaGridInDatabase(pane, {1, 1, grid.Rows() - 1, grid.Cols() - 1});
    m_editor.pane(pane).setTextsUnstored(false);
}

void GridSave::SalvaGridInDatabase(int pane, const GridRange &cells) {
    m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const Grid &grid = m_editor.Tabella(pane);
    const CellTexts &texts = m_editor.TestiCelle(pane);
    struct Column {
        int column;
        int field;
        int type;
    };
    std::vector<Column> columns;
    for (int f = std::max(cells.firstColumn, 1); f <= std::min(cells.lastColumn, grid.Cols() - 1); ++f) {
        // A table without fields shows one empty column, which stands for none.
        if (const int field = grid.ColData(f); field >= 1)
            columns.push_back({f, field, database.QIRTableFieldType(field).toInt()});
    }

    ChangeGroup changes(database);
    YieldTimer timer;
    TextWriter writer(database);
    for (int r = std::max(cells.firstRow, 1); r <= std::min(cells.lastRow, grid.Rows() - 1); ++r) {
        database.setQIRTableRecordsPointerOut(grid.RowData(r));
        for (const Column &column : columns) {
            texts.read(column.column, r, writer.text());
            writer.assign(column.field, column.type);
        }
        timer.yieldIfDue();
    }
    changes.commit();
    m_differences.EvidenziaDifferenzeTabella();
}

} // namespace qir
