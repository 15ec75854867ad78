#include "compare/conflicts/TakenSide.h"

#include "base/Collation.h"
#include "compare/conflicts/TakenField.h"
#include "compare/conflicts/TakenTable.h"

#include <QHash>

#include <algorithm>
#include <map>

namespace qir {

namespace {

using What = Conflict::What;
using Parts = std::vector<const TakenSide *>;

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

/// The cells and records that are taken in the current table.
void writeRecords(const QirDatabase &database, const Parts &parts, const KeyedStep &step) {
    std::vector<int> removed;
    Parts added;
    for (const TakenSide *taken : parts) {
        if (step)
            step();
        const QVariantList &values = valuesOf(*taken->conflict, taken->side);
        if (taken->conflict->what == What::Cell) {
            database.setQIRTableRecordsPointerOut(taken->standing.record);
            database.setQIRTableRecordSetByIndex(taken->standing.field, values.front());
        } else if (values.isEmpty()) {
            if (taken->standing.record > 0)
                removed.push_back(taken->standing.record);
        } else if (taken->standing.record > 0) {
            database.setQIRTableRecordsPointerOut(taken->standing.record);
            writeRecord(database, *taken);
        } else {
            added.push_back(taken);
        }
    }
    std::ranges::sort(removed, std::ranges::greater());
    removed.erase(std::unique(removed.begin(), removed.end()), removed.end()); // two lines may be about one record
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
    Parts wholes;
    for (const TakenSide &one : taken) {
        if (one.conflict->what == What::Table)
            wholes.push_back(&one);
        else
            tables[collationKey(one.conflict->table)].push_back(&one);
    }
    for (const auto &[key, parts] : tables) {
        database.QIRTableRecordSource(parts.front()->conflict->table);
        // Fields last: the standings tell places as they were.
        Parts fields;
        Parts records;
        for (const TakenSide *part : parts)
            (part->conflict->what == What::Field ? fields : records).push_back(part);
        writeRecords(database, records, step);
        for (const TakenSide *field : fields)
            writeField(database, *field, step);
    }
    for (const TakenSide *whole : wholes)
        writeWholeTable(database, *whole, step);
}

} // namespace qir
