#pragma once

#include "db/QirDatabase.h"

#include <QString>

namespace qir {

/// Puts the records of a table into the order in which the texts of a field ascend, as the editor sorts.
void sortTable(const QirDatabase &database, const QString &table, const QString &field);

/// Adds a table to `target` that is like one of `source`, which may be the same database.
void copyTable(const QirDatabase &source, const QString &table, const QirDatabase &target, const QString &name);

} // namespace qir
