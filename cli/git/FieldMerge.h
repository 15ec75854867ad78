#pragma once

#include "cli/git/RecordMerge.h"
#include "compare/conflicts/Conflict.h"

namespace qir {

/// The fields that a merged table has, by their names, and what both sides have made of them.
struct MergedFields {
    std::vector<FieldPlaces> fields;
    std::vector<FieldPlaces> leftOut; ///< Those in conflict that THEIRS has: its values in them are not taken.
    std::vector<Conflict> conflicts;
};

MergedFields mergeFields(const TableContent &base, const TableContent &ours, const TableContent &theirs);

} // namespace qir
