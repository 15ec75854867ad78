#pragma once

#include "base/columns/ColumnType.h"

namespace qir {

/// The nearest value to `number` that a field of the (non-text) type holds: bool 0 for 0 and 1 for all else, whole
/// numbers with halves rounded to even, finite doubles. What is no number at all becomes 0.
double fittingNumber(ColumnType type, double number);

} // namespace qir
