#pragma once

#include "db/tables/TableReader.h"

#include <QString>
#include <QVariant>

namespace qir {

/// The number of the field that a text names: one of that name, or else of that number. Throws where there is none.
int namedField(const TableInfo &table, const QString &field);

/// The number of the record of the current table that a text names: its number, or "FIELD=VALUE" that one record has.
/// Throws NoAnswer where no record has it, or more than one.
int namedRecord(const QirDatabase &database, const TableInfo &table, const QString &record);

/// A field and a value as "FIELD=VALUE" names them; throws where there is no such field.
struct FieldValue {
    int field;
    QString value;

    static FieldValue of(const TableInfo &table, const QString &text);
};

/// The value that a text stands for in a field. Throws where the field cannot hold it as it is.
QVariant checkedValue(const FieldInfo &field, const QString &text);

} // namespace qir
