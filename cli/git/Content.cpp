#include "cli/git/Content.h"

#include "base/Collation.h"
#include "compare/engine/TableSource.h"
#include "db/tables/TableWriter.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace qir {

namespace {

TableContent readTable(const QirDatabase &database, const QString &name) {
    const TableInfo table = chooseTable(database, name);
    TableContent content{name, table.fields, {}};
    content.records.resize(static_cast<std::size_t>(table.records));
    CurrentTable source(database);
    int record = 0;
    for (RecordValues &values : content.records) {
        ++record;
        values.reserve(table.fields.size()); // a large table of growing records takes half as much again
        for (int field = 1; field <= static_cast<int>(table.fields.size()); ++field)
            values.push_back(valueOf(source.cell(record, field)));
    }
    return content;
}

/// Adds the records of a table from this one on.
void addRecords(const QirDatabase &database, const TableContent &table, std::size_t first) {
    for (std::size_t i = first; i < table.records.size(); ++i) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(static_cast<int>(i) + 1);
        int field = 0;
        for (const QVariant &value : table.records[i])
            database.setQIRTableRecordSetByIndex(++field, value);
    }
}

using Cell = std::pair<int, int>; // record and field

/// Where the current table, which has the same fields and no more records, has other values.
std::vector<Cell> differingCells(const QirDatabase &database, const TableContent &table) {
    std::vector<Cell> cells;
    CurrentTable now(database);
    for (int record = 1; record <= now.records(); ++record) {
        int field = 0;
        for (const QVariant &value : table.records[static_cast<std::size_t>(record) - 1])
            if (++field; !sameValue(valueOf(now.cell(record, field)), value))
                cells.emplace_back(record, field);
    }
    return cells;
}

/// `there` is how the database spells the table's name; nothing where it has no such table.
void writeTable(const QirDatabase &database, const TableContent &table, const std::optional<QString> &there) {
    if (!there) {
        addEmptyTable(database, table.name, table.fields);
        addRecords(database, table, 0);
        return;
    }
    if (*there != table.name)
        database.RenameTable(tableNumber(database, table.name), table.name);
    const TableInfo now = chooseTable(database, table.name);
    const auto records = static_cast<std::size_t>(now.records);
    if (records > table.records.size() || !std::ranges::equal(now.fields, table.fields, sameField)) {
        emptyTable(database);
        addFields(database, table.fields);
        addRecords(database, table, 0);
        return;
    }
    for (const auto &[record, field] : differingCells(database, table)) {
        database.setQIRTableRecordsPointerOut(record);
        database.setQIRTableRecordSetByIndex(
            field, table.records[static_cast<std::size_t>(record) - 1][static_cast<std::size_t>(field) - 1]);
    }
    addRecords(database, table, records);
}

} // namespace

TablesByName::TablesByName(const DatabaseContent &content) {
    m_tables.reserve(std::ssize(content.tables));
    for (const TableContent &table : content.tables)
        m_tables.insert(collationKey(table.name), &table);
}

const TableContent *TablesByName::find(const QString &name) const {
    return m_tables.value(collationKey(name), nullptr);
}

bool sameField(const FieldInfo &left, const FieldInfo &right) {
    return left.name == right.name && left.type == right.type && left.size == right.size;
}

bool sameValue(const QVariant &left, const QVariant &right) {
    return left.typeId() == right.typeId() && left == right;
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
    const TablesByName wanted(content);
    QHash<QString, QString> there;
    for (int table = database.QIRTablesCount(); table >= 1; --table) {
        const QString name = database.QIRTableName(table);
        if (wanted.find(name) == nullptr)
            database.RemoveTable(table);
        else
            there.insert(collationKey(name), name);
    }
    for (const TableContent &table : content.tables) {
        const auto found = there.constFind(collationKey(table.name));
        writeTable(database, table, found == there.cend() ? std::nullopt : std::optional(*found));
    }
}

} // namespace qir
