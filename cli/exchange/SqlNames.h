#pragma once

#include "cli/tables/Portions.h"
#include "db/tables/TableReader.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <optional>

namespace qir {

/// A name in SQL, as it is.
QByteArray sqlName(QStringView name);
/// A text in SQL. No line end of two characters stands in it as such: readers of lines would make it one. Nor does a
/// single backslash, which may or may not stand for itself.
QByteArray sqlText(QByteArrayView utf8);
/// The type of a field's column that PostgreSQL and SQLite know.
QByteArray sqlType(const FieldInfo &field);

/// The field that a column's comment tells, as an export writes it; nothing for other comments.
std::optional<FieldInfo> toldField(const QString &name, const QString &comment);

enum class Engine { Sqlite, Postgres, Both };

/// Throws std::runtime_error where the engine has no such table or column.
void requireSqlNames(const TableInfo &table, Engine engine);
/// Throws std::runtime_error where a text has a character that no text of SQL holds.
void requireNoNul(const TableInfo &table, const Portion &portion);

} // namespace qir
