#include "tests/qirtbase/model/DatabaseTestSupport.h"

#include "qirtbase/model/DatabaseError.h"

namespace qir::test {

namespace {

std::size_t below(std::size_t count) {
    return *rc::gen::inRange<std::size_t>(0, count);
}

void changeTables(Database &database, int operation) {
    if (operation == 0 || database.tableCount() == 0)
        database.addTable(randomName());
    else if (operation == 1)
        database.renameTable(below(database.tableCount()), randomName());
    else if (operation == 2)
        database.removeTable(below(database.tableCount()));
}

void changeFields(Database &database, Table &table, int operation) {
    const int type = *rc::gen::element(1, 2, 3, 4, 7, 8, 10, 10, 5);
    if (operation == 3 || table.fieldCount() == 0) {
        database.addField(table, randomName(), type, *rc::gen::inRange(0, 20));
        return;
    }
    const std::size_t field = below(table.fieldCount());
    if (operation == 4)
        database.renameField(table, field, randomName());
    else if (operation == 5)
        database.removeField(table, field);
    else if (operation == 6)
        database.resizeField(table, field, *rc::gen::inRange(0, 20));
}

void changeRecords(Database &database, Table &table, int operation) {
    if (operation == 7 || table.recordCount() == 0) {
        database.addRecord(table);
        return;
    }
    const std::size_t record = below(table.recordCount());
    if (operation == 8) {
        database.removeRecord(table, record);
    } else if (table.fieldCount() != 0) {
        const std::size_t field = below(table.fieldCount());
        if (*rc::gen::arbitrary<bool>())
            database.setNumber(table, field, record, randomNumber());
        else
            database.setText(table, field, record, randomText());
    }
}

} // namespace

PlainDatabase plain(const Database &database) {
    PlainDatabase content;
    for (std::size_t t = 0; t < database.tableCount(); ++t) {
        const Table &table = database.table(t);
        PlainTable copy;
        copy.name = table.name().text;
        copy.records.resize(table.recordCount());
        for (const Field &field : table.fields()) {
            copy.fields.push_back({field.name.text(), static_cast<int>(field.type()), field.size});
            for (std::size_t record = 0; record < field.column.size(); ++record)
                copy.records[record].append(field.column.variant(record));
        }
        content.tables.push_back(std::move(copy));
    }
    return content;
}

int PropertyChoices::inRange(int from, int to) {
    return *rc::gen::inRange(from, to);
}

std::uint64_t PropertyChoices::bits() {
    return *rc::gen::arbitrary<std::uint64_t>();
}

QString randomText() {
    PropertyChoices choices;
    return randomText(choices);
}

double randomNumber() {
    PropertyChoices choices;
    return randomNumber(choices);
}

QString randomName() {
    PropertyChoices choices;
    return randomName(choices);
}

void changeAtRandom(Database &database) {
    constexpr int operations = 24; // two thirds of them write cells
    const int operation = *rc::gen::inRange(0, operations);
    try {
        if (operation <= 2 || database.tableCount() == 0) {
            changeTables(database, operation);
            return;
        }
        Table &table = database.table(below(database.tableCount()));
        if (operation <= 6)
            changeFields(database, table, operation);
        else
            changeRecords(database, table, operation);
    } catch (const DatabaseError &) {
        // A taken name or an unknown type: refused, as it should be.
    }
}

Database randomDatabase() {
    Database database;
    const int changes = *rc::gen::inRange(0, 60);
    for (int i = 0; i < changes; ++i)
        changeAtRandom(database);
    return database;
}

} // namespace qir::test
