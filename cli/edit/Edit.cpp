#include "cli/edit/Edit.h"

#include "cli/FileError.h"
#include "cli/NearestName.h"
#include "cli/edit/CellPlace.h"
#include "cli/edit/TableEdits.h"
#include "cli/tables/JsonText.h"
#include "db/tables/FieldHeader.h"
#include "db/tables/TableWriter.h"

#include <array>
#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr int many = std::numeric_limits<int>::max();

int requiredTable(const QirDatabase &database, const QString &name) {
    const int table = tableNumber(database, name);
    if (table == 0)
        refuse(u"there is no table \"%1\""_s.arg(name));
    return table;
}

TableInfo requiredInfo(const QirDatabase &database, const QString &name) {
    return chooseTable(database, database.QIRTableName(requiredTable(database, name)));
}

const FieldInfo &fieldOf(const TableInfo &table, int field) {
    return table.fields[static_cast<std::size_t>(field) - 1];
}

void getCell(const EditSurroundings &all, const QStringList &words) {
    const TableInfo table = requiredInfo(all.database, words[0]);
    const int field = namedField(table, words[2]);
    const int record = namedRecord(all.database, table, words[1]);
    QStringList values;
    all.database.GetQirRecord(record, values);
    if (all.json)
        appendJsonCell(all.out, fieldOf(table, field).type, values.at(field));
    else
        all.out += values.at(field).toUtf8();
    all.out += '\n';
}

void setCell(const EditSurroundings &all, const QStringList &words) {
    const TableInfo table = requiredInfo(all.database, words[0]);
    const int field = namedField(table, words[2]);
    const QVariant value = checkedValue(fieldOf(table, field), words[3]);
    all.database.setQIRTableRecordsPointerOut(namedRecord(all.database, table, words[1]));
    all.database.setQIRTableRecordSetByIndex(field, value);
}

void addTable(const EditSurroundings &all, const QStringList &words) {
    all.database.AddTable(words[0]);
}

void addField(const EditSurroundings &all, const QStringList &words) {
    requiredInfo(all.database, words[0]);
    const Result<FieldInfo> field = newField(words[1]);
    if (!field)
        refuse(field.error().text);
    addFields(all.database, {*field});
}

void addRecord(const EditSurroundings &all, const QStringList &words) {
    const TableInfo table = requiredInfo(all.database, words[0]);
    all.database.AddRecord();
    all.database.setQIRTableRecordsPointerOut(table.records + 1);
    for (const QString &word : words.sliced(1)) {
        const FieldValue given = FieldValue::of(table, word);
        all.database.setQIRTableRecordSetByIndex(given.field, checkedValue(fieldOf(table, given.field), given.value));
    }
}

void removeTable(const EditSurroundings &all, const QStringList &words) {
    all.database.RemoveTable(requiredTable(all.database, words[0]));
}

void removeField(const EditSurroundings &all, const QStringList &words) {
    all.database.RemoveField(namedField(requiredInfo(all.database, words[0]), words[1]));
}

void removeRecord(const EditSurroundings &all, const QStringList &words) {
    const TableInfo table = requiredInfo(all.database, words[0]);
    all.database.RemoveRecord(namedRecord(all.database, table, words[1]));
}

void renameTable(const EditSurroundings &all, const QStringList &words) {
    all.database.RenameTable(requiredTable(all.database, words[0]), words[1]);
}

void renameField(const EditSurroundings &all, const QStringList &words) {
    all.database.RenameField(namedField(requiredInfo(all.database, words[0]), words[1]), words[2]);
}

void resizeField(const EditSurroundings &all, const QStringList &words) {
    constexpr int largest = 65535;
    const TableInfo table = requiredInfo(all.database, words[0]);
    const int field = namedField(table, words[1]);
    bool isNumber = false;
    const int size = words[2].toInt(&isNumber);
    if (fieldOf(table, field).type != FieldType::Text)
        refuse(u"field \"%1\": only text has a size"_s.arg(fieldOf(table, field).name));
    if (!isNumber || size < 0 || size > largest)
        refuse(u"field \"%1\": its size must be 0 to %2"_s.arg(fieldOf(table, field).name).arg(largest));
    all.database.ResizeField(field, size);
}

void sortRecords(const EditSurroundings &all, const QStringList &words) {
    requiredTable(all.database, words[0]);
    sortTable(all.database, words[0], words[1]);
}

void copyFrom(const EditSurroundings &all, const QStringList &words) {
    const QirDatabase &source = all.open(words[0]);
    const QString name = source.QIRTableName(requiredTable(source, words[1]));
    copyTable(source, name, all.database, words.size() > 2 ? words[2] : name);
}

struct Verb {
    const char *name;
    const char *what; ///< The second word, or null.
    const char *usage;
    int least;
    int most;
    void (*apply)(const EditSurroundings &all, const QStringList &words);
};

constexpr std::array<Verb, 13> verbs{{
    {"get", nullptr, "get TABLE RECORD FIELD", 3, 3, getCell},
    {"set", nullptr, "set TABLE RECORD FIELD VALUE", 4, 4, setCell},
    {"add", "table", "add table NAME", 1, 1, addTable},
    {"add", "field", "add field TABLE NAME[type:size]", 2, 2, addField},
    {"add", "record", "add record TABLE [FIELD=VALUE ..]", 1, many, addRecord},
    {"remove", "table", "remove table NAME", 1, 1, removeTable},
    {"remove", "field", "remove field TABLE FIELD", 2, 2, removeField},
    {"remove", "record", "remove record TABLE RECORD", 2, 2, removeRecord},
    {"rename", "table", "rename table OLD NEW", 2, 2, renameTable},
    {"rename", "field", "rename field TABLE OLD NEW", 3, 3, renameField},
    {"resize", nullptr, "resize TABLE FIELD SIZE", 3, 3, resizeField},
    {"sort", nullptr, "sort TABLE FIELD", 2, 2, sortRecords},
    {"copy", nullptr, "copy SOURCE TABLE [NAME]", 2, 3, copyFrom},
}};

[[noreturn]] void refuseWords(const QStringList &words) {
    QStringList names;
    QStringList whats;
    for (const Verb &verb : verbs) {
        names += QLatin1StringView(verb.name);
        if (words[0] == QLatin1StringView(verb.name) && verb.what != nullptr)
            whats += QLatin1StringView(verb.what);
    }
    if (!names.contains(words[0]))
        refuse(u"there is no command \"%1\"%2"_s.arg(words[0], nearestWords(words[0], names)));
    refuse(u"%1 is followed by one of: %2"_s.arg(words[0], whats.join(u", "_s)));
}

} // namespace

void applyEdit(const EditSurroundings &surroundings, const QStringList &words) {
    for (const Verb &verb : verbs) {
        const bool hasWhat = verb.what != nullptr;
        if (words[0] != QLatin1StringView(verb.name) || (hasWhat && words.value(1) != QLatin1StringView(verb.what)))
            continue;
        const QStringList rest = words.sliced(hasWhat ? 2 : 1);
        if (rest.size() < verb.least || rest.size() > verb.most)
            refuse(u"the form is: %1"_s.arg(QLatin1StringView(verb.usage)));
        verb.apply(surroundings, rest);
        return;
    }
    refuseWords(words);
}

} // namespace qir
