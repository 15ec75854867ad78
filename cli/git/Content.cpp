#include "cli/git/Content.h"

#include "base/Collation.h"
#include "cli/tables/TableWriter.h"

#include <algorithm>

namespace qir {

namespace {

TableContent readTable(const QirDatabase &database, const QString &name) {
    const TableInfo table = chooseTable(database, name);
    TableContent content{name, table.fields, {}};
    content.records.resize(static_cast<std::size_t>(table.records));
    int record = 0;
    for (RecordValues &values : content.records) {
        database.setQIRTableRecordsPointerOut(++record);
        for (std::size_t field = 0; field < table.fields.size(); ++field) {
            QVariant value = database.QIRTableRecordSetByIndex(static_cast<int>(field) + 1);
            values.push_back(table.fields[field].type == FieldType::Text ? QVariant(value.toString())
                                                                         : QVariant(value.toDouble()));
        }
    }
    return content;
}

void writeRecords(const QirDatabase &database, const TableContent &table) {
    int record = 0;
    for (const RecordValues &values : table.records) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(++record);
        int field = 0;
        for (const QVariant &value : values)
            database.setQIRTableRecordSetByIndex(++field, value);
    }
}

void writeTable(const QirDatabase &database, const TableContent &table) {
    const int there = tableNumber(database, table.name);
    if (there == 0) {
        addEmptyTable(database, table.name, table.fields);
        writeRecords(database, table);
        return;
    }
    if (database.QIRTableName(there) != table.name)
        database.RenameTable(there, table.name);
    if (sameContent(readTable(database, table.name), table))
        return;
    emptyTable(database);
    addFields(database, table.fields);
    writeRecords(database, table);
}

} // namespace

const TableContent *DatabaseContent::find(const QString &name) const {
    const QString key = collationKey(name);
    const auto found =
        std::ranges::find(tables, key, [](const TableContent &table) { return collationKey(table.name); });
    return found == tables.end() ? nullptr : &*found;
}

bool isEmptyValue(const QVariant &value) {
    return value.typeId() == QMetaType::QString ? value.toString().isEmpty() : value.toDouble() == 0;
}

bool sameField(const FieldInfo &left, const FieldInfo &right) {
    return left.name == right.name && left.type == right.type && left.size == right.size;
}

bool sameValue(const QVariant &left, const QVariant &right) {
    if (left.typeId() != right.typeId())
        return false;
    return left.typeId() == QMetaType::QString ? left.toString() == right.toString()
                                               : left.toDouble() == right.toDouble();
}

bool sameContent(const TableContent &left, const TableContent &right) {
    const auto sameRecord = [](const RecordValues &one, const RecordValues &other) {
        return std::ranges::equal(one, other, sameValue);
    };
    return left.name == right.name && std::ranges::equal(left.fields, right.fields, sameField) &&
           std::ranges::equal(left.records, right.records, sameRecord);
}

DatabaseContent readContent(const QirDatabase &database) {
    DatabaseContent content;
    for (const QString &name : tableNames(database))
        content.tables.push_back(readTable(database, name));
    return content;
}

void writeContent(const QirDatabase &database, const DatabaseContent &content) {
    for (int table = database.QIRTablesCount(); table >= 1; --table)
        if (content.find(database.QIRTableName(table)) == nullptr)
            database.RemoveTable(table);
    for (const TableContent &table : content.tables)
        writeTable(database, table);
}

} // namespace qir
