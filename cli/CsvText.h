#pragma once

#include "cli/TableReader.h"

#include <QByteArray>
#include <QStringList>
#include <QStringView>

namespace qir {

/// Appends one value of a CSV record (UTF-8), quoted where its reader would take it for something else: separators,
/// quotes, line ends, surrounding blanks, a byte order mark in front, and nothing at all.
void appendCsvValue(QByteArray &out, QStringView value);
/// Appends the header line of a table, each field with its type.
void appendCsvHeader(QByteArray &out, const TableInfo &table);
/// Appends a record; values[0] is unused.
void appendCsvRecord(QByteArray &out, const TableInfo &table, const QStringList &values);

} // namespace qir
