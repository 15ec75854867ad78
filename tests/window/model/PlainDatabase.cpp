#include "tests/window/model/PlainDatabase.h"

#include "db/FieldTypes.h"
#include "tests/window/model/PlainValues.h"

#include <algorithm>
#include <cmath>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

QVariant emptyValue(const PlainField &field) {
    return field.type == static_cast<int>(FieldType::Text) ? QVariant(QString()) : QVariant(0.0);
}

double nearestWhole(double number, double least, double most) {
    return std::nearbyint(std::clamp(number, least, most)) + 0.0; // no negative zero
}

} // namespace

QVariant PlainField::fromText(const QString &text) const {
    return from(type == static_cast<int>(FieldType::Text) ? QVariant(text) : QVariant(numberAtStart(text)));
}

QVariant PlainField::from(const QVariant &value) const {
    // No text of these tests has characters beyond the first plane.
    if (type == static_cast<int>(FieldType::Text))
        return (isText(value) ? value.toString() : textOf(value)).left(size);
    const double number = isText(value) ? numberAtStart(value.toString()) : value.toDouble();
    switch (static_cast<FieldType>(type)) {
    case FieldType::Bool:
        return number == 0.0 ? 0.0 : 1.0;
    case FieldType::Byte:
        return nearestWhole(number, 0, 255);
    case FieldType::Int:
        return nearestWhole(number, -32768, 32767);
    case FieldType::Long:
        return nearestWhole(number, -2147483648.0, 2147483647.0);
    default:
        return number;
    }
}

bool PlainTable::store(int record, int field, const QVariant &value) {
    QVariant &held = this->value(record, field);
    const bool changes = !identical(held, value);
    held = value;
    return changes;
}

bool PlainTable::hasField(const QString &fieldName, int except) const {
    for (int k = 0; k < fieldCount(); ++k)
        if (k != except && nameKey(field(k).name) == nameKey(fieldName))
            return true;
    return false;
}

void PlainTable::addRecord() {
    QVariantList record;
    for (const PlainField &field : fields)
        record.append(emptyValue(field));
    records.push_back(record);
}

void PlainTable::addField(const PlainField &field) {
    fields.push_back(field);
    for (QVariantList &record : records)
        record.append(emptyValue(field));
}

void PlainTable::removeField(int index) {
    fields.erase(fields.begin() + index);
    for (QVariantList &record : records)
        record.removeAt(index);
}

bool PlainTable::resizeField(int index, double size) {
    PlainField &resized = field(index);
    const bool changes = resized.size != keptSize(size);
    resized.size = keptSize(size);
    for (int r = 0; r < recordCount(); ++r)
        value(r, index) = resized.from(value(r, index));
    return changes;
}

std::vector<QStringList> PlainTable::texts() const {
    std::vector<QStringList> all;
    for (const QVariantList &record : records) {
        QStringList row;
        for (const QVariant &value : record)
            row.append(textOf(value));
        all.push_back(row);
    }
    return all;
}

const PlainTable *PlainDatabase::find(const QString &name) const {
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const PlainTable &table) { return nameKey(table.name) == nameKey(name); });
    return found == tables.end() ? nullptr : &*found;
}

const PlainTable *PlainDatabase::byId(int id) const {
    const auto found =
        std::find_if(tables.begin(), tables.end(), [id](const PlainTable &table) { return table.id == id; });
    return found == tables.end() ? nullptr : &*found;
}

int keptSize(double size) {
    return static_cast<int>(nearestWhole(size, 0, 65535));
}

bool differ(const PlainTable &left, const PlainTable &right) {
    if (left.recordCount() != right.recordCount() || left.fieldCount() != right.fieldCount())
        return true;
    for (int r = 0; r < left.recordCount(); ++r)
        for (int k = 0; k < left.fieldCount(); ++k)
            if (!equalValues(left.value(r, k), right.value(r, k)))
                return true;
    return false;
}

namespace {

QString tableDifference(const PlainTable &left, const PlainTable &right) {
    if (left.name != right.name)
        return u"table '%1' against '%2'; "_s.arg(left.name, right.name);
    if (left.fields != right.fields)
        return u"the fields of '%1'; "_s.arg(left.name);
    if (left.recordCount() != right.recordCount())
        return u"'%1' has %2 records against %3; "_s.arg(left.name).arg(left.recordCount()).arg(right.recordCount());
    for (int r = 0; r < left.recordCount(); ++r)
        for (int k = 0; k < left.fieldCount(); ++k)
            if (!identical(left.value(r, k), right.value(r, k)))
                return u"'%1' (%2, %3) holds '%4' against '%5'; "_s.arg(left.name).arg(r + 1).arg(k + 1).arg(
                    left.value(r, k).toString(), right.value(r, k).toString());
    return {};
}

} // namespace

QString difference(const PlainDatabase &left, const PlainDatabase &right) {
    if (left.tableCount() != right.tableCount())
        return u"%1 tables against %2; "_s.arg(left.tableCount()).arg(right.tableCount());
    QString text;
    for (int t = 0; t < left.tableCount(); ++t)
        text += tableDifference(left.table(t), right.table(t));
    return text;
}

PlainDatabase readAll(const QirDatabase &database) {
    PlainDatabase content;
    for (int t = 1; t <= database.QIRTablesCount(); ++t) {
        PlainTable table;
        table.name = database.QIRTableName(t);
        database.QIRTableRecordSource(table.name);
        for (int k = 1; k <= database.QirTableFieldsCount(); ++k)
            table.fields.push_back({database.QIRTableFieldName(k), database.QIRTableFieldType(k).toInt(),
                                    database.QIRTableFieldSize(k).toInt()});
        for (int r = 1; r <= database.QirTableRecordsCount(); ++r) {
            database.setQIRTableRecordsPointerOut(r);
            QVariantList record;
            for (int k = 1; k <= table.fieldCount(); ++k) {
                const QVariant value = database.QIRTableRecordSetByIndex(k);
                record.append(isText(value) ? value : QVariant(value.toDouble()));
            }
            table.records.push_back(record);
        }
        content.tables.push_back(table);
    }
    return content;
}

void writeAll(const QirDatabase &database, const PlainDatabase &content) {
    for (const PlainTable &table : content.tables) {
        database.AddTable(table.name);
        database.QIRTableRecordSource(table.name);
        database.RemoveRecord(1);
        database.RemoveField(1);
        for (const PlainField &field : table.fields)
            database.AddField(field.name, field.type, field.size);
        for (int r = 0; r < table.recordCount(); ++r) {
            database.AddRecord();
            database.setQIRTableRecordsPointerOut(r + 1);
            for (int k = 0; k < table.fieldCount(); ++k)
                database.setQIRTableRecordSetByIndex(k + 1, table.value(r, k));
        }
    }
}

} // namespace qir::test
