#pragma once

#include "cli/git/Content.h"
#include "cli/git/KeyChoice.h"
#include "compare/conflicts/Conflict.h"

#include <optional>

namespace qir {

struct MergedTable {
    TableContent table;
    std::vector<Conflict> conflicts;
};

/// The fields that all of these tables have; null for none of them.
QStringList commonFields(const TableContent *base, const TableContent *ours, const TableContent *theirs);

/// Merges a table that all three have. Nothing where that cannot be done by position: a side has removed, inserted or
/// moved records, and both sides have changed the table.
std::optional<MergedTable> mergeTables(const TableContent &base, const TableContent &ours, const TableContent &theirs,
                                       const KeyChoice &keys);

} // namespace qir
