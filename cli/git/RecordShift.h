#pragma once

#include "cli/git/Content.h"

namespace qir {

/// Whether a side has removed, inserted or moved records, rather than changed their cells and added some at the end, or
/// may have done so: it can be read so with no more values changed than where each record stays at its place. Where it
/// is too large for telling, it counts as shifted.
bool isShifted(const TableContent &base, const TableContent &side);

/// A text that values have in common only where they are the same ones.
QString textOf(const RecordValues &values, const std::vector<int> &places);

} // namespace qir
