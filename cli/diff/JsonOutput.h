#pragma once

#include "cli/diff/ValueOutput.h"
#include "compare/report/DatabaseDifference.h"

#include <QByteArray>

namespace qir {

// The JSON lines of two databases' differences, as docs/diff.md has them. Programs read them: what is there stays.

/// The line of a table, without its end, so that more may be put in: `closeJsonLine()` ends it.
void openJsonTable(QByteArray &out, const TableDifference &table);
void closeJsonLine(QByteArray &out);
/// The lines of what differs in a table. Makes the table current on both sides.
void appendDetailsJson(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                       const OutputSink &sink);

/// By position: {"table": NAME, "record": R, "field": F, "left": VALUE, "right": VALUE}; null on a side without it.
void appendCellJson(QByteArray &out, const DifferingCell &cell);
/// By key: {"table": NAME, "key": [VALUES], "change": CHANGE
void openJsonChange(QByteArray &out, const QString &table, const QVariantList &key, const char *change);
/// , "field": NAME, "left": VALUE, "right": VALUE, "records": [LEFT, RIGHT]
void appendJsonValueChange(QByteArray &out, const QString &field, const QVariant &left, const QVariant &right,
                           const PairedRecords &records);
/// , "record": N, "values": [VALUES]
void appendJsonRecord(QByteArray &out, TableSource &table, int record);
/// The lines of keys that occur more than once.
void appendDuplicatesJson(QByteArray &out, const TableDifference &table, TableSource &left, TableSource &right);

} // namespace qir
