#pragma once

#include "cli/tables/Portions.h"
#include "db/tables/TableReader.h"

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
/// An array of the values and a line end for each of these records of a portion, numbers as numbers and texts as
/// strings.
void appendJsonRecords(QByteArray &out, const Portion &portion, int from, int to);

} // namespace qir
