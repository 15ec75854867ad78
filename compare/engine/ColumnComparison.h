#pragma once

#include "base/BitMatrix.h"
#include "compare/engine/TableComparison.h"

namespace qir {

/// The comparisons of TableComparison.h for two components that both hand out columns (QirDatabase::hasColumns()): a
/// few calls for each field and each some ten thousand records. Values whose memory both share are not looked at. The
/// current records stay.

/// True when a value of these records and fields, which both tables have, differs.
bool currentColumnsDiffer(const QirDatabase &left, const QirDatabase &right, int records, int fields,
                          const ComparisonStep &step);

/// Sets (record, field) of `matrix` to whether the values differ, for records and fields that both tables and the
/// matrix have. All other elements stay.
void compareCurrentColumns(const QirDatabase &left, const QirDatabase &right, int lastRecord, int lastField,
                           BitMatrix &matrix, const ComparisonStep &step);

} // namespace qir
