#pragma once

#include "compare/engine/KeyedComparison.h"

#include <vector>

namespace qir {

/// One difference by key that is to be carried to a side.
struct CarriedChange {
    PairedRecords records; ///< 0 on the side that lacks the record: it is added there, or removed here.
    FieldPair field;       ///< Of a value that both records have; else 0.

    bool isValue() const { return records.left > 0 && records.right > 0; }
};

/// What is to be carried, and what it needs.
struct CarriedChanges {
    int to = 1; ///< 0 left, 1 right.
    std::vector<CarriedChange> changes;
    std::vector<FieldPair> fields; ///< Those that both tables have: the values of a record that is added.
    QStringList words;             ///< The first changes as a person reads them.
};

} // namespace qir
