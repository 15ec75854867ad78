#include "db/tables/TableWriter.h"

#include "base/Collation.h"

#include <algorithm>

namespace qir {

void addFields(const QirDatabase &database, const std::vector<FieldInfo> &fields) {
    for (const FieldInfo &field : fields) {
        if (field.type == FieldType::Text)
            database.AddField(field.name, static_cast<int>(field.type), field.size);
        else
            database.AddField(field.name, static_cast<int>(field.type));
    }
}

void addEmptyTable(const QirDatabase &database, const QString &name, const std::vector<FieldInfo> &fields) {
    database.AddTable(name);
    database.QIRTableRecordSource(name);
    emptyTable(database); // a new table comes with a record and a field of its own
    addFields(database, fields);
}

void emptyTable(const QirDatabase &database) {
    for (int record = database.QirTableRecordsCount(); record >= 1; --record)
        database.RemoveRecord(record);
    for (int field = database.QirTableFieldsCount(); field >= 1; --field)
        database.RemoveField(field);
}

int tableNumber(const QirDatabase &database, const QString &name) {
    const QString key = collationKey(name);
    const QStringList names = tableNames(database);
    const auto found = std::ranges::find(names, key, [](const QString &other) { return collationKey(other); });
    return found == names.end() ? 0 : static_cast<int>(found - names.begin()) + 1;
}

int fieldNumber(const std::vector<FieldInfo> &fields, const QString &name) {
    const QString key = collationKey(name);
    const auto found = std::ranges::find(fields, key, [](const FieldInfo &field) { return collationKey(field.name); });
    return found == fields.end() ? 0 : static_cast<int>(found - fields.begin()) + 1;
}

} // namespace qir
