#pragma once

#include "cli/diff/ValueOutput.h"
#include "compare/report/DatabaseDifference.h"

#include <QByteArray>

namespace qir {

/// What differs in a table as a tabular diff: a line "## NAME", then CSV whose first column says what a line is: "!"
/// what became of the columns, "@@" their names, "+++" an added record, "---" a removed one, "->" a changed one, "+"
/// one with a value in a new column alone. Changed values stand as OLD->NEW, with more dashes in front where a value of
/// the record has an arrow itself; a "NULL" there, behind any "_", has one "_" more. Nothing for a table without a
/// difference. Makes the table current on both sides.
void appendTabular(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                   const OutputSink &sink);

} // namespace qir
