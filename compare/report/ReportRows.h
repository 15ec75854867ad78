#pragma once

#include "compare/report/DatabaseDifference.h"
#include "compare/report/KeyedRecords.h"

#include <functional>
#include <optional>
#include <vector>

namespace qir {

/// A column of a report: a field of either side or of both.
struct ReportColumn {
    int left = 0; ///< 0 on a side without it.
    int right = 0;
    QString leftName;
    QString rightName;
    bool inKey = false;
};

/// The columns in which the differences of a table are told: the left fields in their order, between them those that
/// only the right table has. The table is current on the sides that have it.
std::vector<ReportColumn> reportColumns(const TableDifference &table, const QirDatabase &left,
                                        const QirDatabase &right);

/// A record that is told.
struct ReportRow {
    RecordChange change = RecordChange::Changed;
    PairedRecords records;     ///< 0 on a side without it.
    std::vector<bool> differs; ///< Of a changed one, for each column: whether the values differ.
};

/// A table while its differences are told: its columns, and what stands in them. It must be current on the sides that
/// have it.
class ReportedTable {
public:
    ReportedTable(const TableDifference &table, const QirDatabase &left, const QirDatabase &right);

    const std::vector<ReportColumn> &columns() const { return m_columns; }
    /// What a record has in a column; nothing on a side that lacks one of them.
    std::optional<CellView> left(const ReportRow &row, const ReportColumn &column);
    std::optional<CellView> right(const ReportRow &row, const ReportColumn &column);
    /// A side that has the table.
    CurrentTable &side(TableSide side) { return side == TableSide::Left ? *m_left : *m_right; }

private:
    std::vector<ReportColumn> m_columns;
    std::optional<CurrentTable> m_left;
    std::optional<CurrentTable> m_right;
};

/// Which records are told.
enum class ReportedRecords {
    Differing,
    /// Where only the right table has a field, each record of both sides too: its value in that field is new.
    WithNewValues,
};

/// The records of a table that differ, in the left order, then those that are added.
void forEachReportRow(const TableDifference &table, const std::vector<ReportColumn> &columns, ReportedRecords which,
                      const std::function<void(const ReportRow &)> &take);

} // namespace qir
