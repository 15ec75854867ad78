#include "db/tables/FieldChanges.h"

#include "base/Collation.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// How many of the first fields stay where they are, under whatever name.
std::size_t keptFields(const std::vector<FieldInfo> &current, const std::vector<FieldInfo> &target,
                       const std::vector<int> &sources) {
    std::size_t kept = 0;
    while (kept < current.size() && kept < target.size() && sources[kept] == static_cast<int>(kept) + 1 &&
           current[kept].type == target[kept].type)
        ++kept;
    return kept;
}

std::vector<QVariant> readColumn(const QirDatabase &database, int field) {
    const int records = database.QirTableRecordsCount();
    std::vector<QVariant> values(static_cast<std::size_t>(records));
    for (int record = 1; record <= records; ++record) {
        database.setQIRTableRecordsPointerOut(record);
        database.readQIRTableRecordSetByIndex(field, values[static_cast<std::size_t>(record - 1)]);
    }
    return values;
}

void writeColumn(const QirDatabase &database, int field, const std::vector<QVariant> &values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        database.setQIRTableRecordsPointerOut(static_cast<int>(i) + 1);
        database.setQIRTableRecordSetByIndex(field, values[i]);
    }
}

/// Names may go round in a circle: those that change get names first that nobody has.
void renameKept(const QirDatabase &database, const std::vector<FieldInfo> &current,
                const std::vector<FieldInfo> &target, std::size_t kept) {
    QSet<QString> taken;
    for (const auto *fields : {&current, &target}) {
        for (const FieldInfo &field : *fields)
            taken.insert(collationKey(field.name));
    }
    int number = 0;
    for (std::size_t i = 0; i < kept; ++i) {
        if (current[i].name == target[i].name)
            continue;
        QString name;
        do {
            name = u"field %1"_s.arg(++number);
        } while (taken.contains(collationKey(name)));
        database.RenameField(static_cast<int>(i) + 1, name);
    }
    for (std::size_t i = 0; i < kept; ++i) {
        if (current[i].name != target[i].name)
            database.RenameField(static_cast<int>(i) + 1, target[i].name);
    }
}

} // namespace

void addField(const QirDatabase &database, const FieldInfo &field) {
    if (field.type == FieldType::Text)
        database.AddField(field.name, static_cast<int>(field.type), field.size);
    else
        database.AddField(field.name, static_cast<int>(field.type));
}

void changeFields(const QirDatabase &database, const std::vector<FieldInfo> &current,
                  const std::vector<FieldInfo> &target, const std::vector<int> &sources) {
    const std::size_t kept = keptFields(current, target, sources);
    std::vector<std::vector<QVariant>> columns(target.size());
    for (std::size_t i = kept; i < target.size(); ++i) {
        if (sources[i] != 0)
            columns[i] = readColumn(database, sources[i]);
    }
    for (std::size_t field = current.size(); field > kept; --field)
        database.RemoveField(static_cast<int>(field));
    renameKept(database, current, target, kept);
    for (std::size_t i = 0; i < kept; ++i) {
        if (current[i].size != target[i].size)
            database.ResizeField(static_cast<int>(i) + 1, target[i].size);
    }
    for (std::size_t i = kept; i < target.size(); ++i) {
        addField(database, target[i]);
        writeColumn(database, static_cast<int>(i) + 1, columns[i]);
    }
}

} // namespace qir
