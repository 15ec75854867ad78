#include "view/GridSave.h"

#include "compare/CellDifferences.h"
#include "db/AssegnaARecordset.h"
#include "platform/cells/CellTexts.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"
#include "view/StoredValues.h"

#include <algorithm>
#include <vector>

namespace qir {

namespace {

constexpr int fewRecords = 64;

struct StoredColumn {
    int column;
    int field;
    int type;
};

void storeRecords(const QirDatabase &database, const Grid &grid, const GridRange &cells,
                  const std::vector<StoredColumn> &columns) {
    YieldTimer timer;
    TextWriter writer(database);
    for (int r = cells.firstRow; r <= cells.lastRow; ++r) {
        database.setQIRTableRecordsPointerOut(grid.RowData(r));
        for (const StoredColumn &column : columns) {
            grid.texts().read(column.column, r, writer.text());
            writer.assign(column.field, column.type);
        }
        timer.yieldIfDue();
    }
}

void storeColumns(const QirDatabase &database, const CellTexts &texts, const GridRange &cells,
                  const std::vector<StoredColumn> &columns) {
    YieldTimer timer;
    for (const StoredColumn &column : columns) {
        const auto first = static_cast<std::size_t>(cells.firstRow - 1);
        const auto end = static_cast<std::size_t>(cells.lastRow);
        std::size_t begin = 0; // of the stretch
        for (const CellStretch &stretch : texts.column(column.column).stretches()) {
            const std::size_t to = std::min(begin + stretch.size(), end);
            for (std::size_t from = std::max(begin, first); from < to;) {
                const ColumnBlock values = storedValues(stretch, from - begin, to - from, column.type);
                database.WriteColumn(column.field, static_cast<int>(from) + 1, values);
                from += static_cast<std::size_t>(values.count());
                timer.yieldIfDue();
            }
            begin += stretch.size();
        }
    }
}

} // namespace

void GridSave::SalvaGridInDatabase(int pane) {
    const Grid &grid = m_editor.Tabella(pane);
    SalvaGridInDatabase(pane, {1, 1, grid.Rows() - 1, grid.Cols() - 1});
    m_editor.pane(pane).textsStored();
}

void GridSave::SalvaGridInDatabase(int pane, const GridRange &cells) {
    m_editor.pane(pane).makeShownTableCurrent();
    const Grid &grid = m_editor.Tabella(pane);
    ChangeGroup changes(m_editor.OggettoDtb(pane));
    store(pane, {std::max(cells.firstRow, 1), std::max(cells.firstColumn, 1), std::min(cells.lastRow, grid.Rows() - 1),
                 std::min(cells.lastColumn, grid.Cols() - 1)});
    changes.commit();
    m_differences.EvidenziaDifferenzeTabella();
}

void GridSave::store(int pane, const GridRange &cells) {
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const Grid &grid = m_editor.Tabella(pane);
    std::vector<StoredColumn> columns;
    for (int f = cells.firstColumn; f <= cells.lastColumn; ++f) {
        // A table without fields shows one empty column, which stands for none.
        if (const int field = grid.ColData(f); field >= 1)
            columns.push_back({f, field, database.QIRTableFieldType(field).toInt()});
    }
    if (cells.isEmpty() || columns.empty())
        return;
    // A few cells are quicker one by one, and what stands for another record, or for none, can go no other way.
    const bool many = cells.lastRow - cells.firstRow >= fewRecords;
    const bool inGrid = cells.firstRow >= 1 && cells.lastRow < grid.Rows() && cells.lastColumn < grid.Cols();
    if (many && inGrid && grid.rowsAreRecords() && database.hasColumns())
        storeColumns(database, m_editor.TestiCelle(pane), cells, columns);
    else
        storeRecords(database, grid, cells, columns);
}

} // namespace qir
