#pragma once

#include "compare/conflicts/ConflictStanding.h"

#include <cstddef>
#include <vector>

namespace qir {

class ConflictTable;
class DecidedFields;

/// Tells of the standings of some conflicts, all of one table, whether the records that they name by number alone are
/// those that the merge meant.
void takeIdentities(ConflictTable &table, const std::vector<Conflict> &conflicts,
                    const std::vector<std::size_t> &indices, const DecidedFields &decided,
                    std::vector<ConflictStanding> &standings, const KeyedStep &step);

/// Two of them that are about one place contradict each other, or would be carried out twice.
void takeTwice(const std::vector<Conflict> &conflicts, const std::vector<std::size_t> &indices,
               std::vector<ConflictStanding> &standings);

} // namespace qir
