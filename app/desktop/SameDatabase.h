#pragma once

#include "db/QirDatabase.h"

namespace qir {

/// Whether a file holds the very tables of an open database: names, fields and values, in their order. The name
/// stands for the file at `place`. False where that cannot be told: the file is protected or cannot be loaded. Leaves
/// any table current in the database. Yields.
bool holdsSameDatabase(const QirDatabase &database, const QString &fileName, const QString &place);

} // namespace qir
