#pragma once

#include "db/tables/TableReader.h"

#include <QString>

#include <vector>

namespace qir {

/// Appends fields to the current table.
void addFields(const QirDatabase &database, const std::vector<FieldInfo> &fields);

/// Adds a table of these fields without records, and makes it current.
void addEmptyTable(const QirDatabase &database, const QString &name, const std::vector<FieldInfo> &fields);

/// Takes all records and fields from the current table.
void emptyTable(const QirDatabase &database);

/// The number of a table, looked up as the component does; 0 where there is none.
int tableNumber(const QirDatabase &database, const QString &name);

/// The number of a field, by its name; 0 where there is none.
int fieldNumber(const std::vector<FieldInfo> &fields, const QString &name);

} // namespace qir
