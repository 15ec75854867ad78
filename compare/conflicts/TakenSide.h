#pragma once

#include "compare/conflicts/ConflictStanding.h"

#include <functional>
#include <vector>

namespace qir {

/// A conflict, where it is now, and the side that is taken.
struct TakenSide {
    const Conflict *conflict;
    ConflictStanding standing;
    ConflictSide side;
};

/// Writes into a database what these sides have; takingOf() must be Write for each. Records are removed and added
/// behind all values, so that the standings' places hold. Leaves any table current.
void writeSides(const QirDatabase &database, const std::vector<TakenSide> &taken, const KeyedStep &step = {});

} // namespace qir
