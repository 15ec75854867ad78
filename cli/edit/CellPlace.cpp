#include "cli/edit/CellPlace.h"

#include "cli/FileError.h"
#include "cli/tables/ColumnValues.h"
#include "db/tables/TableWriter.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool isNumberText(QStringView text) {
    return !text.isEmpty() && std::ranges::all_of(text, [](QChar unit) { return unit >= u'0' && unit <= u'9'; });
}

/// A number past all records and fields counts as none of them.
int numberOf(const QString &text) {
    bool fits = false;
    const int number = text.toInt(&fits);
    return fits ? number : 0;
}

int recordOfNumber(const TableInfo &table, const QString &text) {
    const int number = numberOf(text);
    if (number < 1 || number > table.records)
        throw NoAnswer(u"the table \"%1\" has no record %2, it has %3"_s.arg(table.name, text).arg(table.records));
    return number;
}

bool holds(const QVariant &held, const QVariant &wanted) {
    return wanted.typeId() == QMetaType::QString ? held.toString() == wanted.toString()
                                                 : held.toDouble() == wanted.toDouble();
}

int recordOfKey(const QirDatabase &database, const TableInfo &table, const FieldValue &key) {
    const FieldInfo &field = table.fields[static_cast<std::size_t>(key.field) - 1];
    const Result<QVariant> wanted = importedValue(field, key.value);
    int found = 0;
    QVariant held;
    for (int record = 1; wanted && record <= table.records; ++record) {
        database.setQIRTableRecordsPointerOut(record);
        database.readQIRTableRecordSetByIndex(key.field, held);
        if (!holds(held, *wanted))
            continue;
        if (found != 0)
            throw NoAnswer(u"the records %1 and %2 of the table \"%3\" both have %4=%5"_s.arg(
                QString::number(found), QString::number(record), table.name, field.name, key.value));
        found = record;
    }
    if (found == 0)
        throw NoAnswer(u"no record of the table \"%1\" has %2=%3"_s.arg(table.name, field.name, key.value));
    return found;
}

} // namespace

int namedField(const TableInfo &table, const QString &field) {
    if (const int named = fieldNumber(table.fields, field); named != 0)
        return named;
    const int number = isNumberText(field) ? numberOf(field) : 0;
    if (number < 1 || number > static_cast<int>(table.fields.size()))
        throw std::runtime_error(u"the table \"%1\" has no field \"%2\""_s.arg(table.name, field).toStdString());
    return number;
}

FieldValue FieldValue::of(const TableInfo &table, const QString &text) {
    // A field's name may have the sign too: the first one that leaves a name counts.
    for (qsizetype sign = text.indexOf(u'='); sign >= 0; sign = text.indexOf(u'=', sign + 1)) {
        if (const int field = fieldNumber(table.fields, text.first(sign)); field != 0)
            return {field, text.sliced(sign + 1)};
    }
    const qsizetype sign = text.indexOf(u'=');
    if (sign < 0)
        throw std::runtime_error(u"\"%1\" is not of the form FIELD=VALUE"_s.arg(text).toStdString());
    return {namedField(table, text.first(sign)), text.sliced(sign + 1)};
}

int namedRecord(const QirDatabase &database, const TableInfo &table, const QString &record) {
    if (isNumberText(record))
        return recordOfNumber(table, record);
    if (!record.contains(u'='))
        throw std::runtime_error(
            u"\"%1\" names no record: it is neither a number nor of the form FIELD=VALUE"_s.arg(record).toStdString());
    return recordOfKey(database, table, FieldValue::of(table, record));
}

QVariant checkedValue(const FieldInfo &field, const QString &text) {
    Result<QVariant> value = importedValue(field, text);
    if (!value)
        throw std::runtime_error(u"field \"%1\": \"%2\" %3"_s.arg(field.name, text, value.error().text).toStdString());
    return std::move(*value);
}

} // namespace qir
