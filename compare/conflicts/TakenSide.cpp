#include "compare/conflicts/TakenSide.h"

#include "base/Collation.h"

#include <QHash>

#include <algorithm>
#include <map>

namespace qir {

namespace {

/// The current record takes the values of a side, as far as their fields are there.
void writeRecord(const QirDatabase &database, const TakenSide &taken) {
    QHash<QString, int> fields;
    for (int field = database.QirTableFieldsCount(); field >= 1; --field)
        fields.insert(collationKey(database.QIRTableFieldName(field)), field);
    const QVariantList &values = valuesOf(*taken.conflict, taken.side);
    const QStringList names = fieldNamesOf(*taken.conflict, taken.side);
    for (qsizetype i = 0; i < values.size(); ++i)
        if (const int field = fields.value(collationKey(names[i])); field > 0)
            database.setQIRTableRecordSetByIndex(field, values[i]);
}

/// What is taken in the current table.
void writeTable(const QirDatabase &database, const std::vector<const TakenSide *> &table, const KeyedStep &step) {
    std::vector<int> removed;
    std::vector<const TakenSide *> added;
    for (const TakenSide *taken : table) {
        if (step)
            step();
        const QVariantList &values = valuesOf(*taken->conflict, taken->side);
        if (taken->conflict->what == Conflict::What::Cell) {
            database.setQIRTableRecordsPointerOut(taken->standing.record);
            database.setQIRTableRecordSetByIndex(taken->standing.field, values.front());
        } else if (values.isEmpty()) {
            removed.push_back(taken->standing.record);
        } else if (taken->standing.record > 0) {
            database.setQIRTableRecordsPointerOut(taken->standing.record);
            writeRecord(database, *taken);
        } else {
            added.push_back(taken);
        }
    }
    std::ranges::sort(removed, std::ranges::greater());
    for (const int record : removed)
        database.RemoveRecord(record);
    for (const TakenSide *taken : added) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(database.QirTableRecordsCount());
        writeRecord(database, *taken);
    }
}

} // namespace

void writeSides(const QirDatabase &database, const std::vector<TakenSide> &taken, const KeyedStep &step) {
    std::map<QString, std::vector<const TakenSide *>> tables;
    for (const TakenSide &one : taken)
        tables[collationKey(one.conflict->table)].push_back(&one);
    for (const auto &[key, table] : tables) {
        database.QIRTableRecordSource(table.front()->conflict->table);
        writeTable(database, table, step);
    }
}

} // namespace qir
