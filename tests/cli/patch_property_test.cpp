#include "cli/diff/Patch.h"
#include "compare/report/DatabaseDifference.h"
#include "tests/support/DrawnBytes.h"
#include "tests/tools/fake/FakeControl.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace qir;
using test::DrawnBytes;

namespace {

struct Field {
    QString name;
    FieldType type;
    int size;
};
struct Table {
    QString name;
    std::vector<Field> fields;
    std::vector<QVariantList> rows;
};

QVariant anyValue(DrawnBytes &bytes, FieldType type) {
    static const QStringList texts{u""_s, u"a"_s, u"longer text"_s, u"\"\\\n\t"_s, u"\u00e9\u20ac"_s, u"->"_s, u"1"_s};
    static const std::vector<double> numbers{0, 1, 2, 255, 0.1, -1e300, 20240229.235959};
    if (type == FieldType::Text)
        return texts[bytes.below(static_cast<int>(texts.size()))];
    return numbers[static_cast<std::size_t>(bytes.below(static_cast<int>(numbers.size())))];
}

Field anyField(DrawnBytes &bytes, const std::vector<Field> &others) {
    static const QStringList names{u"K"_s, u"A"_s, u"B"_s, u"k"_s, u"C c"_s, u"D"_s};
    static const std::vector<FieldType> types{FieldType::Text, FieldType::Long, FieldType::Double, FieldType::Byte};
    QString name = names[bytes.below(static_cast<int>(names.size()))];
    while (std::ranges::any_of(others, [&](const Field &other) { return other.name.toUpper() == name.toUpper(); }))
        name += u'+';
    const FieldType type = types[static_cast<std::size_t>(bytes.below(4))];
    return {name, type, type == FieldType::Text ? 1 + bytes.below(20) : 0};
}

void addRow(DrawnBytes &bytes, Table &table) {
    QVariantList row;
    for (const Field &field : table.fields)
        row.append(anyValue(bytes, field.type));
    table.rows.insert(table.rows.begin() + bytes.below(static_cast<int>(table.rows.size()) + 1), row);
}

Table anyTable(DrawnBytes &bytes, const QString &name) {
    Table table{name, {{u"K"_s, FieldType::Text, 20}}, {}};
    for (int fields = bytes.below(4); fields > 0; --fields)
        table.fields.push_back(anyField(bytes, table.fields));
    for (int rows = bytes.below(6); rows > 0; --rows)
        addRow(bytes, table);
    return table;
}

void changeTable(DrawnBytes &bytes, Table &table) {
    const auto fields = static_cast<int>(table.fields.size());
    switch (bytes.below(6)) {
    case 0:
        addRow(bytes, table);
        break;
    case 1:
        if (!table.rows.empty())
            table.rows.erase(table.rows.begin() + bytes.below(static_cast<int>(table.rows.size())));
        break;
    case 2: {
        const auto place = 1 + bytes.below(fields);
        const Field field = anyField(bytes, table.fields);
        table.fields.insert(table.fields.begin() + place, field);
        for (QVariantList &row : table.rows)
            row.insert(place, anyValue(bytes, field.type));
        break;
    }
    case 3:
        if (fields > 1) {
            const auto place = 1 + bytes.below(fields - 1);
            table.fields.erase(table.fields.begin() + place);
            for (QVariantList &row : table.rows)
                row.removeAt(place);
        }
        break;
    case 4:
        table.name = bytes.below(2) == 0 ? table.name.toLower() : table.name.toUpper();
        break;
    default:
        if (!table.rows.empty()) {
            const auto place = bytes.below(fields);
            table.rows[static_cast<std::size_t>(bytes.below(static_cast<int>(table.rows.size())))][place] =
                anyValue(bytes, table.fields[static_cast<std::size_t>(place)].type);
        }
    }
}

std::vector<Table> anyTables(DrawnBytes &bytes) {
    std::vector<Table> tables;
    for (const QString &name : {u"Pumps"_s, u"Tanks"_s}) {
        if (bytes.below(4) != 3)
            tables.push_back(anyTable(bytes, name));
    }
    return tables;
}

QirDatabase databaseOf(const std::vector<Table> &tables) {
    QirDatabase database = QirDatabase::create();
    for (const Table &table : tables) {
        database.AddTable(table.name);
        database.QIRTableRecordSource(table.name);
        database.RemoveRecord(1);
        database.RemoveField(1);
        for (const Field &field : table.fields)
            database.AddField(field.name, static_cast<int>(field.type), field.size);
        for (std::size_t row = 0; row < table.rows.size(); ++row) {
            database.AddRecord();
            database.setQIRTableRecordsPointerOut(static_cast<int>(row) + 1);
            for (qsizetype field = 0; field < table.rows[row].size(); ++field)
                database.setQIRTableRecordSetByIndex(static_cast<int>(field) + 1, table.rows[row][field]);
        }
    }
    return database;
}

/// All that a database holds, table by table in the order of their names; `sorted`: the records in any order.
QStringList contentOf(const QirDatabase &database, bool sorted) {
    QStringList names = tableNames(database);
    sortNames(names);
    QStringList content;
    for (const QString &name : names) {
        const TableInfo table = chooseTable(database, name);
        content += u"# "_s + name;
        for (const FieldInfo &field : table.fields)
            content += u"%1 %2 %3"_s.arg(field.name).arg(static_cast<int>(field.type)).arg(field.size);
        QStringList records;
        forEachRecord(database, table, [&](const QStringList &values) { records += values.join(u'\x1f'); });
        if (sorted)
            records.sort();
        content += records;
    }
    return content;
}

class PatchProperty : public testing::Test {
protected:
    static void goesThereAndBack(const std::vector<std::uint8_t> &drawn, bool byKey) {
        DrawnBytes bytes(drawn);
        const std::vector<Table> leftTables = anyTables(bytes);
        std::vector<Table> rightTables = bytes.below(4) == 3 ? anyTables(bytes) : leftTables;
        for (int changes = bytes.below(6); changes > 0 && !rightTables.empty(); --changes)
            changeTable(bytes,
                        rightTables[static_cast<std::size_t>(bytes.below(static_cast<int>(rightTables.size())))]);
        const QirDatabase left = databaseOf(leftTables);
        const QirDatabase right = databaseOf(rightTables);
        ComparisonChoice choice;
        const auto haveTable = [](const std::vector<Table> &tables, const QString &name) {
            return std::ranges::any_of(tables, [&](const Table &table) { return table.name.toUpper() == name; });
        };
        for (const QString &name : {u"PUMPS"_s, u"TANKS"_s}) {
            if (byKey && haveTable(leftTables, name) && haveTable(rightTables, name))
                choice.keys.push_back({name, {u"k"_s}});
        }
        QByteArray lines;
        appendPatch(lines, compareDatabases(left, right, choice), left, right, [](QByteArray &) {});
        const auto patch = readPatch(lines);
        RC_ASSERT(patch.has_value());
        const QStringList before = contentOf(left, byKey);
        RC_ASSERT(applyPatch(left, *patch).misfits.isEmpty());
        RC_ASSERT(contentOf(left, byKey) == contentOf(right, byKey));
        RC_ASSERT(applyPatch(left, reversed(*patch)).misfits.isEmpty());
        RC_ASSERT(contentOf(left, byKey) == before);
    }

    UseFake fake;
};

RC_GTEST_FIXTURE_PROP(PatchProperty, ByPositionMakesTheRightDatabaseAndGoesBack,
                      (const std::vector<std::uint8_t> &bytes)) {
    goesThereAndBack(bytes, false);
}

RC_GTEST_FIXTURE_PROP(PatchProperty, ByKeyMakesTheRightDatabaseButForTheOrderAndGoesBack,
                      (const std::vector<std::uint8_t> &bytes)) {
    goesThereAndBack(bytes, true);
}

} // namespace
