#pragma once

#include "platform/cells/CellTexts.h"
#include "platform/grid/Grid.h"

#include <QStringList>

#include <cstddef>
#include <vector>

namespace qir {

/// Fills a grid with a table, by records or by whole columns, without a string object or a signal for each cell.
///
/// From construction the grid is empty below its new headers; it shows the records once the fill is destroyed, those
/// appended so far when that happens early. Neither raises an event of the grid. Messages may be processed in between.
/// Rows and columns carry their own numbers and every cell is white afterwards; column widths stay.
///
///     GridFill fill(grid, headers, records, GridFill::NewTable);
///     for (...) fill.appendRecord(values);
class GridFill {
public:
    enum Kind {
        NewTable,  ///< Starts at cell (1, 1), scrolled to the top left.
        SameTable, ///< Keeps current cell, selection and scroll position, cut to the new size.
    };

    /// `headers` holds the text of column k at k - 1. `records` is what is expected, for making room. The grid must
    /// outlive the fill.
    GridFill(Grid &grid, const QStringList &headers, int records, Kind kind);
    ~GridFill();
    GridFill(const GridFill &) = delete;
    GridFill &operator=(const GridFill &) = delete;

    /// Adds a record whose field k is values[k]: element 0 is not used, missing elements are empty texts.
    void appendRecord(const QStringList &values);
    /// Adds as many records as the blocks have values; one block for each column.
    void appendRecords(const std::vector<ColumnBlock> &blocks) { m_texts.appendRecords(blocks); }

private:
    void makeRoom();

    Grid &m_grid;
    GridPlace m_place;
    QStringList m_headers;
    CellTexts m_texts;
    int m_expected;
};

} // namespace qir
