#pragma once

#include "tests/model/PlainDatabase.h"

#include <rapidcheck.h>

#include <iosfwd>
#include <string>

namespace qir::test {

std::ostream &operator<<(std::ostream &stream, const PlainTable &table);

/// Small tables, often alike.
rc::Gen<PlainTable> plainTables(std::string name);
/// `table` with a few of its values, records or fields changed, or none.
rc::Gen<PlainTable> changedTables(PlainTable table);

} // namespace qir::test
