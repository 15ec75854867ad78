#pragma once

#include "platform/cells/CellColumn.h"

#include <cstddef>

namespace qir {

/// The values that a field of a type (a code of FieldType) is given when the shown texts of a stretch are stored in it:
/// as AssegnaARecordset() gives them, a text as it is and for any other type its leading number. Shares the memory of a
/// stretch that shows nothing else than such values.
ColumnBlock storedValues(const CellStretch &stretch, std::size_t first, std::size_t count, int typeCode);

} // namespace qir
