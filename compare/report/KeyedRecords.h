#pragma once

#include "compare/engine/KeyedComparison.h"

#include <functional>
#include <vector>

namespace qir {

enum class RecordChange { Removed, Changed, Added };

/// One record that differs between two tables that are compared by key.
struct KeyedRecord {
    RecordChange change = RecordChange::Changed;
    PairedRecords records; ///< 0 on a side without it.
    std::size_t row = 0;   ///< Of a changed one: its row of KeyedDifference::cells.
};

/// All of them: those that are removed and changed in the left order, then those that are added, in the right one.
void forEachKeyedRecord(const KeyedDifference &difference, const std::function<void(const KeyedRecord &)> &take);

/// The fields of a changed record whose values differ.
std::vector<FieldPair> changedFields(const KeyedDifference &difference, std::size_t row);

/// The values of the key in a record as a side has it.
QVariantList keyValues(TableSource &table, const KeyedDifference &difference, TableSide side, int record);

} // namespace qir
