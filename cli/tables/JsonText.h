#pragma once

#include "cli/tables/TableReader.h"

#include <QByteArray>
#include <QStringList>
#include <QStringView>

namespace qir {

/// A string in quotes, as JSON needs it.
void appendJsonString(QByteArray &out, QStringView text);
/// A value by its text: a number, or a string for a text.
void appendJsonCell(QByteArray &out, FieldType type, QStringView text);
/// {"table": NAME, "fields": [{"name": .., "type": "long", "size": 0}, ..], "records": N} and a line end.
void appendJsonTable(QByteArray &out, const TableInfo &table);
/// One array of a record's values, numbers as numbers and texts as strings, and a line end; values[0] is unused.
void appendJsonRecord(QByteArray &out, const TableInfo &table, const QStringList &values);

} // namespace qir
