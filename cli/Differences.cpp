#include "cli/Differences.h"

#include <algorithm>
#include <cstdlib>

namespace qir {

namespace {

TableDifference compareTable(const AlignedRow &row, const QirDatabase &left, const QirDatabase &right) {
    TableDifference table;
    table.name = row.name;
    table.kind = row.kind;
    if (row.kind != AlignedRowKind::Both)
        return table;
    left.QIRTableRecordSource(row.name);
    right.QIRTableRecordSource(row.name);
    table.sizes = currentTableSizes(left, right);
    BitMatrix cells = differingCells(left, right);
    table.different = !table.sizes.sameSize() || cells.count() > 0;
    if (cells.count() > 0)
        table.cells = std::move(cells);
    return table;
}

/// The names of the fields 1..most of the current tables; element 0 is unused.
QStringList fieldNames(const TableSizes &sizes, const QirDatabase &left, const QirDatabase &right) {
    QStringList names{QString()};
    for (int field = 1; field <= sizes.mostFields(); ++field)
        names.append((field <= sizes.leftFields ? left : right).QIRTableFieldName(field));
    return names;
}

QVariant valueOf(const QirDatabase &database, int record, int field) {
    database.setQIRTableRecordsPointerOut(record);
    return database.QIRTableRecordSetByIndex(field);
}

} // namespace

std::size_t TableDifference::cellCount() const {
    // Where one side has more records and the other more fields, the corner beyond both is set as well.
    const int records = sizes.leftRecords - sizes.rightRecords;
    const int fields = sizes.leftFields - sizes.rightFields;
    const bool hasCorner = (records > 0 && fields < 0) || (records < 0 && fields > 0);
    const auto corner =
        hasCorner ? static_cast<std::size_t>(std::abs(records)) * static_cast<std::size_t>(std::abs(fields)) : 0;
    return cells.count() - corner;
}

DatabaseDifference compareDatabases(const QirDatabase &left, const QirDatabase &right) {
    QStringList leftNames = tableNames(left, left.QIRTablesCount());
    QStringList rightNames = tableNames(right, right.QIRTablesCount());
    QStringList merged = leftNames + rightNames;
    for (QStringList *names : {&leftNames, &rightNames, &merged})
        sortNames(*names);
    DatabaseDifference difference;
    for (const AlignedRow &row : alignNames(withoutRepeatedNames(merged), leftNames, rightNames)) {
        difference.tables.push_back(compareTable(row, left, right));
        const TableDifference &table = difference.tables.back();
        difference.different = difference.different || table.different || table.kind != AlignedRowKind::Both;
    }
    return difference;
}

void forEachDifferingCell(const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                          const std::function<void(const DifferingCell &cell)> &take) {
    if (table.cells.count() == 0)
        return;
    left.QIRTableRecordSource(table.name);
    right.QIRTableRecordSource(table.name);
    const TableSizes &sizes = table.sizes;
    const QStringList names = fieldNames(sizes, left, right);
    for (int record = 1; record <= sizes.mostRecords(); ++record) {
        const int fields = std::max(record <= sizes.leftRecords ? sizes.leftFields : 0,
                                    record <= sizes.rightRecords ? sizes.rightFields : 0);
        for (int field = 1; field <= fields; ++field) {
            if (!table.cells.at(static_cast<std::size_t>(record), static_cast<std::size_t>(field)))
                continue;
            DifferingCell cell;
            cell.table = table.name;
            cell.record = record;
            cell.field = field;
            cell.fieldName = names[field];
            cell.inLeft = record <= sizes.leftRecords && field <= sizes.leftFields;
            cell.inRight = record <= sizes.rightRecords && field <= sizes.rightFields;
            if (cell.inLeft)
                cell.left = valueOf(left, record, field);
            if (cell.inRight)
                cell.right = valueOf(right, record, field);
            take(cell);
        }
    }
}

} // namespace qir
