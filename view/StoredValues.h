#pragma once

#include "platform/cells/CellColumn.h"

#include <cstddef>

namespace qir {

/// The values that a field of a type (a code of FieldType) is given when the shown texts of a stretch are stored in it:
/// as AssegnaARecordset() gives them, a text as it is and for any other type its leading number. Those of `count` texts
/// from `first` on or, where these are more than the usual block has, of the first of them. Shares the memory of a
/// stretch that shows nothing else than such values.
ColumnBlock storedValues(const CellStretch &stretch, std::size_t first, std::size_t count, int typeCode);

} // namespace qir
