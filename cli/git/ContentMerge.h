#pragma once

#include "cli/git/Content.h"
#include "cli/git/KeyChoice.h"
#include "compare/conflicts/Conflict.h"

namespace qir {

/// What a merge came to: everything that one side alone has changed, and OURS where both did.
struct MergedContent {
    DatabaseContent content;
    std::vector<Conflict> conflicts;
    QStringList byPosition; ///< Tables that both sides have changed and that have no key.
};

/// Brings together what OURS and THEIRS have made of BASE, table by table, field by field, record by record and cell by
/// cell. Records belong together by the key of their table where it has one, else by their position. Nothing that a
/// side has changed is missing in the result unless a conflict tells of it. The order of tables is that of OURS.
MergedContent mergeContents(const DatabaseContent &base, const DatabaseContent &ours, const DatabaseContent &theirs,
                            const KeyChoice &keys);

} // namespace qir
