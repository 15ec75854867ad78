#pragma once

#include "db/QirDatabase.h"

namespace qir {

/// Stores a text into a field of the component's current record, the single path by which a text gets there: a text
/// field takes it as it is, a field of any other type its leading number as a double. Throws what the component
/// throws. No range is checked here.
void AssegnaARecordset(const QirDatabase &Db, int FieldIndex, const QString &Text);

/// The same for a field whose type code is known already, for loops over many records.
void assignText(const QirDatabase &database, int field, int typeCode, const QString &text);

} // namespace qir
