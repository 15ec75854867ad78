#include "compare/conflicts/TakenField.h"

#include "compare/conflicts/ConflictTable.h"
#include "db/StoredText.h"
#include "db/tables/FieldChanges.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableWriter.h"

#include <numeric>
#include <optional>

namespace qir {

namespace {

/// For each record of a table the value that a side has in the field, null for one that it does not have; nothing where
/// that is not known.
std::optional<std::vector<const QVariant *>> valuesOfRecords(ConflictTable &table, const Conflict &conflict,
                                                             ConflictSide side, const KeyedStep &step) {
    const auto &told = recordsOf(conflict, side);
    if (!told)
        return std::nullopt;
    std::vector<const QVariant *> values(static_cast<std::size_t>(table.records()), nullptr);
    if (conflict.keyFields.isEmpty()) {
        if (told->size() != values.size())
            return std::nullopt;
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = (*told)[i].isEmpty() ? nullptr : &(*told)[i].back();
        return values;
    }
    const auto keyOf = [&](const QVariantList &record) { return keyText(record.first(record.size() - 1)); };
    RecordsOfKeys records;
    for (const QVariantList &record : *told)
        records.insert(keyOf(record), {});
    if (!table.find(conflict.keyFields, records, step))
        return std::nullopt;
    QHash<QString, std::size_t> taken;
    for (const QVariantList &record : *told) {
        const QString key = keyOf(record);
        const std::vector<int> &places = records[key];
        if (const std::size_t occurrence = taken[key]++; occurrence < places.size())
            values[static_cast<std::size_t>(places[occurrence]) - 1] = &record.back();
    }
    return values;
}

} // namespace

QString nameInHeader(const QString &header) {
    const Result<FieldHeader> read = parseFieldHeader(header);
    return read ? read->name : header;
}

FieldFit fieldFit(ConflictTable &table, const Conflict &conflict, ConflictSide side, const KeyedStep &step) {
    if (valuesOf(conflict, side).isEmpty() || !recordsOf(conflict, side))
        return FieldFit::Fits; // it goes, or cannot be taken at all
    const auto values = valuesOfRecords(table, conflict, side, step);
    const Result<FieldInfo> wanted = newField(valuesOf(conflict, side).front().toString());
    if (!values || !wanted)
        return FieldFit::NotPlaced;
    const int field = table.fieldOf(conflict.field);
    if (field == 0)
        return FieldFit::Fits;
    for (int record = 1; record <= table.records(); ++record) {
        if ((*values)[static_cast<std::size_t>(record) - 1] != nullptr)
            continue;
        const QVariant now = table.value(record, field);
        const QString text = valueText(now);
        // What is empty is so as another type too.
        if (!isEmptyValue(now) && storedText(static_cast<int>(wanted->type), wanted->size, text) != text)
            return FieldFit::Cut;
    }
    return FieldFit::Fits;
}

void writeField(const QirDatabase &database, const TakenSide &taken, const KeyedStep &step) {
    const Conflict &conflict = *taken.conflict;
    const TableInfo info = chooseTable(database, conflict.table);
    const int field = fieldNumber(info.fields, conflict.field);
    const QVariantList &header = valuesOf(conflict, taken.side);
    if (header.isEmpty()) {
        if (field > 0)
            database.RemoveField(field);
        return;
    }
    std::optional<std::vector<const QVariant *>> values;
    {
        ConflictTable table(database);
        values = valuesOfRecords(table, conflict, taken.side, step);
    }
    const Result<FieldInfo> wanted = newField(header.front().toString());
    if (!values || !wanted)
        return; // takingOf() has told
    std::vector<FieldInfo> target = info.fields;
    std::vector<int> sources(target.size());
    std::iota(sources.begin(), sources.end(), 1);
    if (field > 0) {
        target[static_cast<std::size_t>(field) - 1] = *wanted;
    } else {
        target.push_back(*wanted);
        sources.push_back(0);
    }
    changeFields(database, info.fields, target, sources);
    const int place = field > 0 ? field : static_cast<int>(target.size());
    int record = 0;
    for (const QVariant *value : *values) {
        ++record;
        if (value == nullptr)
            continue;
        database.setQIRTableRecordsPointerOut(record);
        database.setQIRTableRecordSetByIndex(place, *value);
    }
}

} // namespace qir
