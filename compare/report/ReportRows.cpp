#include "compare/report/ReportRows.h"

#include <algorithm>

namespace qir {

namespace {

void addKeyedColumns(std::vector<ReportColumn> &columns, const KeyedFields &fields) {
    for (const FieldPair &field : fields.key)
        columns.push_back({field.left, field.right, {}, {}, true});
    for (const FieldPair &field : fields.compared)
        columns.push_back({field.left, field.right, {}, {}, false});
    for (const int field : fields.onlyLeft)
        columns.push_back({field, 0, {}, {}, false});
    std::ranges::sort(columns, {}, &ReportColumn::left);
    for (const int field : fields.onlyRight) {
        // Behind the field that it follows on its own side.
        auto place = columns.begin();
        int before = 0;
        for (auto column = columns.begin(); column != columns.end(); ++column) {
            if (column->right > before && column->right < field) {
                before = column->right;
                place = column + 1;
            }
        }
        columns.insert(place, {0, field, {}, {}, false});
    }
}

bool hasRecord(const TableDifference &table, int record) {
    return table.kind == AlignedRowKind::Both && record <= table.sizes.commonRecords();
}

void forEachPositionedRow(const TableDifference &table, const std::vector<ReportColumn> &columns,
                          const std::function<void(const ReportRow &)> &take) {
    ReportRow row;
    for (int record = 1; record <= table.sizes.mostRecords(); ++record) {
        row.differs.assign(columns.size(), false);
        if (!hasRecord(table, record)) {
            const bool removed = record <= table.sizes.leftRecords;
            row.change = removed ? RecordChange::Removed : RecordChange::Added;
            row.records = removed ? PairedRecords{record, 0} : PairedRecords{0, record};
            take(row);
            continue;
        }
        bool found = false;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            row.differs[i] = table.cells.at(static_cast<std::size_t>(record), i + 1);
            found = found || row.differs[i];
        }
        row.change = RecordChange::Changed;
        row.records = {record, record};
        if (found)
            take(row);
    }
}

void forEachMatchedRow(const TableDifference &table, const std::vector<ReportColumn> &columns,
                       const std::function<void(const ReportRow &)> &take) {
    const KeyedDifference &keyed = *table.keyed;
    auto changed = keyed.changed.begin();
    for (int left = 1; left <= keyed.leftRecords; ++left) {
        const int right = keyed.partners[static_cast<std::size_t>(left - 1)];
        ReportRow row{right == 0 ? RecordChange::Removed : RecordChange::Changed, {left, right}, {}};
        row.differs.assign(columns.size(), false);
        if (changed != keyed.changed.end() && changed->records.left == left) {
            for (const FieldPair &field : changedFields(keyed, changed->row)) {
                const auto column = std::ranges::find(columns, field.left, &ReportColumn::left);
                row.differs[static_cast<std::size_t>(column - columns.begin())] = true;
            }
            ++changed;
        }
        take(row);
    }
    for (const int record : keyed.added)
        take({RecordChange::Added, {0, record}, std::vector<bool>(columns.size())});
}

} // namespace

std::vector<ReportColumn> reportColumns(const TableDifference &table, const QirDatabase &left,
                                        const QirDatabase &right) {
    std::vector<ReportColumn> columns;
    if (table.keyed)
        addKeyedColumns(columns, table.keyed->fields);
    else
        for (int field = 1; field <= table.sizes.mostFields(); ++field)
            columns.push_back({field <= table.sizes.leftFields ? field : 0,
                               field <= table.sizes.rightFields ? field : 0,
                               {},
                               {},
                               false});
    for (ReportColumn &column : columns) {
        if (column.left != 0)
            column.leftName = left.QIRTableFieldName(column.left);
        if (column.right != 0)
            column.rightName = right.QIRTableFieldName(column.right);
    }
    return columns;
}

void forEachReportRow(const TableDifference &table, const std::vector<ReportColumn> &columns, ReportedRecords which,
                      const std::function<void(const ReportRow &)> &take) {
    if (!table.keyed) {
        forEachPositionedRow(table, columns, take);
        return;
    }
    const bool all = which == ReportedRecords::WithNewValues && !table.keyed->fields.onlyRight.empty();
    forEachMatchedRow(table, columns, [&](const ReportRow &row) {
        if (all || row.change != RecordChange::Changed || std::ranges::find(row.differs, true) != row.differs.end())
            take(row);
    });
}

ReportedTable::ReportedTable(const TableDifference &table, const QirDatabase &left, const QirDatabase &right)
    : m_columns(reportColumns(table, left, right)) {
    if (table.kind != AlignedRowKind::RightOnly)
        m_left.emplace(left);
    if (table.kind != AlignedRowKind::LeftOnly)
        m_right.emplace(right);
}

std::optional<CellView> ReportedTable::left(const ReportRow &row, const ReportColumn &column) {
    if (column.left == 0 || row.records.left == 0)
        return std::nullopt;
    return m_left->cell(row.records.left, column.left);
}

std::optional<CellView> ReportedTable::right(const ReportRow &row, const ReportColumn &column) {
    if (column.right == 0 || row.records.right == 0)
        return std::nullopt;
    return m_right->cell(row.records.right, column.right);
}

} // namespace qir
