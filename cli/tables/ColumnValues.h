#pragma once

#include "base/Result.h"
#include "base/columns/ColumnBlock.h"
#include "base/columns/ColumnBuilder.h"
#include "cli/tables/CsvTable.h"
#include "db/tables/TableReader.h"

#include <QString>
#include <QVariant>

#include <cstddef>
#include <optional>
#include <vector>

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

/// The number of such a value's UTF-8 where it is written as programs write them; nothing for anything else, which may
/// be right all the same: importedValue() knows. `type` is not text.
std::optional<double> plainImportedNumber(FieldType type, QByteArrayView text);

/// The first value that does not fit its field.
struct UnfitValue {
    std::size_t record; ///< Within the portion, from 0.
    std::size_t column;
    QString text;
    QString reason;
};

/// Adds a value as importedValue() takes it; gives why it cannot, or nothing. `text` keeps its memory.
std::optional<QString> addImported(ColumnBuilder &builder, const FieldInfo &field, QByteArrayView value, QString &text);

/// columnField() of all columns, which the cores share.
std::vector<Result<FieldInfo>> columnFields(const CsvTable &table);
/// The columns of a portion as importedValue() takes each value; the cores share them.
tl::expected<std::vector<ColumnBlock>, UnfitValue> importedColumns(const std::vector<FieldInfo> &fields,
                                                                   const CsvPortion &portion);

} // namespace qir
