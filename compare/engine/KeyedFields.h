#pragma once

#include "base/Result.h"
#include "compare/engine/CellRules.h"
#include "compare/engine/TableSource.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace qir {

/// How two tables are compared by key. Names of fields are looked up by collationKey().
struct KeyedRules {
    QStringList key;    ///< The fields that tell which records belong together.
    QStringList ignore; ///< Fields that are not compared; none of the key.
    CellTolerance tolerance;
};

/// A field of both tables.
struct FieldPair {
    int left = 0;
    int right = 0;
};

/// Which fields of two tables belong together: by name, wherever they stand.
struct KeyedFields {
    std::vector<FieldPair> key;      ///< In the order of the rules.
    std::vector<FieldPair> compared; ///< All others that both have, without the ignored ones, in the left order.
    std::vector<int> onlyLeft;       ///< Without the ignored ones, as the next.
    std::vector<int> onlyRight;
};

/// Called every now and then: to stay responsive. What it throws ends the work. May be empty.
using KeyedStep = std::function<void()>;

/// The fields that both have, in the left order. Where a table has several of one name they pair up in their order.
std::vector<FieldPair> commonFields(const TableSource &left, const TableSource &right);
/// Fails where a field of the key is not in both tables, or none is given.
Result<KeyedFields> matchFields(const TableSource &left, const TableSource &right, const KeyedRules &rules);

/// The field to propose as the key: the first of the left table, none of the ignored ones, that both have with values
/// that can be compared and are unique on either side. Nothing where there is none.
std::optional<QString> proposedKey(TableSource &left, TableSource &right, const KeyedRules &rules,
                                   const KeyedStep &step = {});

} // namespace qir
