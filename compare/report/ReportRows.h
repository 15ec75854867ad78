#pragma once

#include "compare/report/DatabaseDifference.h"
#include "compare/report/KeyedRecords.h"

#include <functional>
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
