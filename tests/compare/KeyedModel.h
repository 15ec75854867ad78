#pragma once

#include "compare/engine/KeyedComparison.h"
#include "tests/compare/PlainSource.h"

#include <utility>
#include <vector>

namespace qir::test {

/// What a comparison by key has to find out, by the plainest means: everything is looked at with everything.
struct KeyedModel {
    std::vector<std::pair<int, int>> keyFields; ///< From 1, as all the others.
    std::vector<std::pair<int, int>> comparedFields;
    std::vector<int> onlyLeft;
    std::vector<int> onlyRight;
    std::vector<std::pair<int, int>> matched;
    std::vector<int> added;
    std::vector<int> removed;
    std::vector<std::pair<std::pair<int, int>, int>> changedCells; ///< ((left, right record), left field)
    std::size_t moved = 0;                                         ///< How many at least.
    std::vector<DuplicateKey> duplicates;
};

KeyedModel compareSlowly(const SourceTable &left, const SourceTable &right, const KeyedRules &rules);
/// -1 where no field can be proposed.
int proposedSlowly(const SourceTable &left, const SourceTable &right, const KeyedRules &rules);

} // namespace qir::test
