#pragma once

#include "db/tables/TableReader.h"

#include <vector>

namespace qir {

/// Gives the current table these fields. Element i of `sources` is the number of the field that target field i + 1 has
/// been so far, 0 for a new one; a field that is not among them goes. Values stay as far as the new type holds them.
/// Fields behind the first one that cannot be kept in its place are made anew.
void changeFields(const QirDatabase &database, const std::vector<FieldInfo> &current,
                  const std::vector<FieldInfo> &target, const std::vector<int> &sources);

/// Adds a field at the end.
void addField(const QirDatabase &database, const FieldInfo &field);

} // namespace qir
