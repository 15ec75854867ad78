#pragma once

#include "base/BitMatrix.h"
#include "db/QirDatabase.h"

#include <rapidcheck.h>

#include <iosfwd>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace qir::test {

using PlainValue = std::variant<double, std::string>;

/// A table as plain values, for comparing with what the program finds out. Texts are UTF-8.
struct PlainTable {
    std::string name;
    /// The kind of each field: true for text, else double.
    std::vector<bool> textFields;
    /// Each as long as textFields, its values of the fields' kinds.
    std::vector<std::vector<PlainValue>> records;
};

using PlainDatabase = std::vector<PlainTable>;

std::ostream &operator<<(std::ostream &stream, const PlainTable &table);

/// A loaded component that holds these tables; it has no file.
QirDatabase makeDatabase(const PlainDatabase &tables);

/// The cells (record, field), from 1, in which two tables differ, those that only one of them has included.
std::set<std::pair<int, int>> naiveDifferences(const PlainTable &left, const PlainTable &right);
bool naivelyDiffer(const PlainTable &left, const PlainTable &right);
/// The elements of a matrix that are set.
std::set<std::pair<int, int>> setElements(const BitMatrix &matrix);

/// Small tables, often alike.
rc::Gen<PlainTable> plainTables(std::string name);
/// `table` with a few of its values, records or fields changed, or none.
rc::Gen<PlainTable> changedTables(PlainTable table);

} // namespace qir::test
