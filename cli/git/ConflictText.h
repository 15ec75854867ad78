#pragma once

#include "compare/conflicts/Conflict.h"
#include "db/tables/TableReader.h"

#include <QByteArray>

#include <vector>

namespace qir {

/// A conflict as a line of the file of conflicts, which readConflicts() reads.
void appendConflict(QByteArray &out, const Conflict &conflict);
/// As a person reads it.
QString conflictText(const Conflict &conflict);

/// The names and types of fields, as values of a conflict.
QVariantList headersOf(const std::vector<FieldInfo> &fields);

} // namespace qir
