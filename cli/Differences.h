#pragma once

#include "compare/engine/NameAlignment.h"
#include "compare/engine/TableComparison.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace qir {

/// A table of either of two databases, and how the two compare there.
struct TableDifference {
    QString name; ///< As the left database spells it where it has it.
    AlignedRowKind kind = AlignedRowKind::Both;
    bool different = false; ///< Of a table that both have: in size or in any value.
    TableSizes sizes;       ///< Of a table that both have.
    BitMatrix cells;        ///< (record, field) from 1: where they differ. Empty for equal tables.

    /// How many cells of either side differ from the other; what neither side has is none.
    std::size_t cellCount() const;
};

/// Everything that differs between two databases.
struct DatabaseDifference {
    std::vector<TableDifference> tables; ///< In the order of names.
    bool different = false;
};

/// Compares two databases as the editor's table lists and grids do. Leaves their last common table current.
DatabaseDifference compareDatabases(const QirDatabase &left, const QirDatabase &right);

/// One differing cell: its place, and its value on each side that has such a cell.
struct DifferingCell {
    QString table;
    int record = 0;
    int field = 0;
    QString fieldName; ///< The left one where there is one: names are not compared.
    bool inLeft = false;
    bool inRight = false;
    QVariant left; ///< Invalid on a side without the cell.
    QVariant right;
};

/// Reads the differing cells of a table, record by record. Makes the table current on both sides.
void forEachDifferingCell(const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                          const std::function<void(const DifferingCell &cell)> &take);

} // namespace qir
