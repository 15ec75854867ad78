#include "tests/model/Content.h"

#include <stdexcept>

namespace qir::test {

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
            for (int k = 1; k <= table.fieldCount(); ++k)
                record.append(database.QIRTableRecordSetByIndex(k));
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

QirDatabase makeDatabase(const PlainDatabase &content) {
    QirDatabase database = QirDatabase::create();
    writeAll(database, content);
    return database;
}

void writeFile(const QString &path, const PlainDatabase &content) {
    const QirDatabase database = QirDatabase::create();
    if (!database.SetDatabaseFileName(path))
        throw std::runtime_error("the test database cannot take its name");
    writeAll(database, content);
    database.setDtbHasChanged(true);
    database.SaveDtb();
    database.setDtbHasChanged(false);
}

} // namespace qir::test
