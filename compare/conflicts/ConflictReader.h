#pragma once

#include "base/Result.h"
#include "compare/conflicts/Conflict.h"

#include <QByteArray>

#include <vector>

namespace qir {

/// Reads what a merge has left beside its result, one conflict a line. Fails with the number of the first line that
/// tells of none and the reason; also for what has no line at all, which no merge leaves.
Result<std::vector<Conflict>> readConflicts(const QByteArray &lines);

} // namespace qir
