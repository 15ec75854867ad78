#pragma once

#include "db/QirDatabase.h"

#include <cstdint>
#include <optional>

namespace qir {

/// The tables of a database, told apart by a few bytes: names, fields and values, in their order.
struct TablesDigest {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    friend bool operator==(const TablesDigest &, const TablesDigest &) = default;
};

/// That of a database without unsaved changes; none where its component does not hand out columns, or where it has so
/// many values that reading them would be noticed. Leaves any table current.
std::optional<TablesDigest> digestOfSaved(const QirDatabase &database);

/// Whether a file holds the very tables that an open database was read from or saved as, by their digest, or those that
/// it has now. The name stands for the file at `place`. False where that cannot be told: the file is protected or
/// cannot be loaded. Leaves any table current in the database. Yields.
bool holdsSameDatabase(const QirDatabase &database, const std::optional<TablesDigest> &saved, const QString &fileName,
                       const QString &place);

} // namespace qir
