#pragma once

#include "cli/diff/ValueOutput.h"
#include "compare/report/DatabaseDifference.h"

#include <QByteArray>

namespace qir {

/// One line for a table: on which side it is, or whether it differs, then with what differs in numbers.
void appendTableText(QByteArray &out, const TableDifference &table);
/// By position, one line for a cell: place, left value, "|", right value, "nothing" on a side without the cell.
void appendCellText(QByteArray &out, const DifferingCell &cell);
/// What differs in a table, in lines of their own. Makes the table current on both sides.
void appendDetailsText(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                       const OutputSink &sink);

} // namespace qir
