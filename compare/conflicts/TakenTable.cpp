#include "compare/conflicts/TakenTable.h"

#include "compare/conflicts/TakenField.h"
#include "db/tables/FieldChanges.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableWriter.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace qir {

namespace {

std::vector<FieldInfo> fieldsOf(const QVariantList &headers) {
    std::vector<FieldInfo> fields;
    for (const QVariant &header : headers) {
        const QString text = header.toString();
        if (headers.size() == 1 && text.isEmpty())
            break; // a table without fields
        const Result<FieldInfo> field = newField(text);
        if (!field)
            throw std::runtime_error(field.error().text.toStdString());
        fields.push_back(*field);
    }
    return fields;
}

/// The fields that a side has too come first, in its order.
void orderFields(const QirDatabase &database, const QString &table, const QVariantList &headers) {
    const TableInfo info = chooseTable(database, table);
    std::vector<int> sources;
    for (const QVariant &header : headers)
        if (const int field = fieldNumber(info.fields, nameInHeader(header.toString())); field > 0)
            sources.push_back(field);
    for (int field = 1; field <= static_cast<int>(info.fields.size()); ++field)
        if (std::ranges::find(sources, field) == sources.end())
            sources.push_back(field);
    std::vector<FieldInfo> target;
    for (const int source : sources)
        target.push_back(info.fields[static_cast<std::size_t>(source) - 1]);
    changeFields(database, info.fields, target, sources);
}

void writeContent(const QirDatabase &database, const TakenSide &taken, int number, const KeyedStep &step) {
    const Conflict &conflict = *taken.conflict;
    const std::vector<FieldInfo> fields = fieldsOf(valuesOf(conflict, taken.side));
    if (number == 0) {
        addEmptyTable(database, conflict.table, fields);
    } else {
        database.QIRTableRecordSource(database.QIRTableName(number));
        emptyTable(database);
        addFields(database, fields);
    }
    int record = 0;
    for (const QVariantList &values : *recordsOf(conflict, taken.side)) {
        if (step)
            step();
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(++record);
        int field = 0;
        for (const QVariant &value : values)
            database.setQIRTableRecordSetByIndex(++field, value);
    }
}

} // namespace

void writeWholeTable(const QirDatabase &database, const TakenSide &taken, const KeyedStep &step) {
    const Conflict &conflict = *taken.conflict;
    const QVariantList &values = valuesOf(conflict, taken.side);
    const int number = tableNumber(database, conflict.table);
    switch (conflict.about) {
    case Conflict::About::Name:
        database.RenameTable(number, values.front().toString());
        break;
    case Conflict::About::Order:
        orderFields(database, conflict.table, values);
        break;
    case Conflict::About::Content:
        if (values.isEmpty())
            database.RemoveTable(number);
        else
            writeContent(database, taken, number, step);
        break;
    }
}

} // namespace qir
