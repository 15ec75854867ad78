#pragma once

#include "base/BitMatrix.h"
#include "db/QirDatabase.h"

#include <algorithm>
#include <functional>

namespace qir {

/// How many records and fields the current tables of two components have.
struct TableSizes {
    int leftRecords = 0;
    int rightRecords = 0;
    int leftFields = 0;
    int rightFields = 0;

    bool sameSize() const { return leftRecords == rightRecords && leftFields == rightFields; }
    int commonRecords() const { return std::min(leftRecords, rightRecords); }
    int commonFields() const { return std::min(leftFields, rightFields); }
    int mostRecords() const { return std::max(leftRecords, rightRecords); }
    int mostFields() const { return std::max(leftFields, rightFields); }
};

/// Called with the number of the last record compared, after each one, or after many where both components hand out
/// columns: to stay responsive and to show progress. What it throws ends the comparison. It must leave the current
/// tables alone. May be empty.
using ComparisonStep = std::function<void(int record)>;

/// All of these compare the current tables of two components and may move the current record of either. Values are
/// compared by valuesEqual(); names, types and sizes of fields are not compared. A component's error goes on to the
/// caller.

TableSizes currentTableSizes(const QirDatabase &left, const QirDatabase &right);

/// True when the tables differ in the number of records or fields or in any value. Reads no further than the first
/// difference.
bool currentTablesDiffer(const QirDatabase &left, const QirDatabase &right, const ComparisonStep &step = {});

/// Sets (record, field) of `matrix` to whether the values differ, for records 1..`records` and fields 1..`fields` as
/// far as both tables and the matrix have them. Elements beyond both `records` and `fields` are set, all others stay.
void compareCurrentTables(const QirDatabase &left, const QirDatabase &right, int records, int fields, BitMatrix &matrix,
                          const ComparisonStep &step = {});

/// Records and fields, from the first to the last one of each.
struct CellBounds {
    int firstRecord = 1;
    int firstField = 1;
    int lastRecord = 0;
    int lastField = 0;
};

/// Sets (record, field) of `matrix` to whether the values differ, for these cells as far as both tables and the matrix
/// have them, value by value: for few of them.
void compareCurrentCells(const QirDatabase &left, const QirDatabase &right, const CellBounds &cells, BitMatrix &matrix);

/// compareCurrentTables() for two tables that are known to be equal; reads neither.
void markEqualTables(int records, int fields, BitMatrix &matrix, const ComparisonStep &step = {});

/// Sets every element of `matrix` that only one table has: from row 1 on those beyond the common records, from column
/// 1 on those beyond the common fields.
void markOneSided(BitMatrix &matrix, int commonRecords, int commonFields);

/// The whole truth: element (record, field) is set where the tables differ, records and fields of only one of them
/// included. Row and column 0 are never set; count() is the number of differing cells.
BitMatrix differingCells(const QirDatabase &left, const QirDatabase &right, const ComparisonStep &step = {});

/// How many flags of such a matrix stand for a cell of a table: where one side has more records and the other more
/// fields, the corner beyond both may be set as well.
std::size_t cellsOfEither(const BitMatrix &different, const TableSizes &sizes);

} // namespace qir
