#pragma once

#include "base/Result.h"
#include "cli/tables/CsvTable.h"
#include "cli/tables/TableReader.h"

#include <QString>
#include <QVariant>

#include <cstddef>

namespace qir {

/// The field that a column of a CSV file becomes: as its header line says, or by its values where that says nothing.
///
/// Guessed is only what brings every value back: "true" and "false" are bool, ISO dates are date, whole numbers are
/// long, other numbers double. One value that is empty, or written in a way that would be lost ("007", more digits
/// than a double holds), makes the column text, wide enough for the longest (50 at least).
Result<FieldInfo> columnField(const CsvTable &table, std::size_t column);

/// A value as it is written into a field: a QString for text, else a double. Fails, with what is wrong about the value,
/// rather than change it: no number, a fraction or a number out of range for the type, a text longer than the field. An
/// empty value is zero. Dates are numbers (20240229, 20240229.235959) or ISO texts (2024-02-29, 2024-02-29T23:59:59).
Result<QVariant> importedValue(const FieldInfo &field, const QString &text);

} // namespace qir
