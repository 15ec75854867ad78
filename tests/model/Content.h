#pragma once

#include "db/QirDatabase.h"
#include "tests/model/PlainDatabase.h"

namespace qir::test {

/// All that a component holds. Leaves another table current.
PlainDatabase readAll(const QirDatabase &database);
/// Fills an empty component.
void writeAll(const QirDatabase &database, const PlainDatabase &content);
/// A component that holds these tables; it has no file.
QirDatabase makeDatabase(const PlainDatabase &content);
/// Writes a database file through the component. Throws what the component throws.
void writeFile(const QString &path, const PlainDatabase &content);

} // namespace qir::test
