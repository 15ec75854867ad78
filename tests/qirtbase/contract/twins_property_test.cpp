#include "base/columns/ColumnBuilder.h"
#include "tests/qirtbase/contract/ContractTest.h"

#include <rapidcheck/gtest.h>

#include <array>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// The component and the fake do the same calls, and whatever can be seen from outside stays the same.

const std::array names{u"A"_s, u"a "_s, u"B ?"_s, u"b"_s, u"Ünit"_s, u"ÜNIT !"_s, u" "_s, u""_s};
const std::array<QVariant, 14> values{
    u""_s, u"12.7x"_s, u"-1e400"_s, u"longer than a field"_s, u"\U0001F600\U0001F600a"_s, 0, 1, -3, true, 2.5,
    -0.5,  1e10,       -0.0,        u"20240229.1"_s};
constexpr std::array types{1, 2, 3, 4, 5, 7, 8, 10, 10};
constexpr std::array sizes{-1.0, 0.0, 2.0, 3.5, 4.5, 50.0, 70000.0};

struct Call {
    unsigned member;
    unsigned first;
    unsigned second;
};

std::ostream &operator<<(std::ostream &out, const Call &call) {
    return out << "{" << call.member << ", " << call.first << ", " << call.second << "}";
}

template<class List>
auto pick(const List &list, unsigned number) {
    return list[number % list.size()];
}

// Numbers around those that there are.
int around(unsigned number) {
    return static_cast<int>(number % 6) - 1;
}

/// Up to three values of a type, now and then one that does not fit a field.
ColumnBlock blockOf(ColumnType type, unsigned number) {
    ColumnBuilder builder(type);
    for (unsigned i = 0; i < number % 4; ++i) {
        const QVariant value = pick(values, number + i);
        if (type == ColumnType::Text)
            builder.add(QStringView(value.toString()));
        else
            builder.add(value.toDouble());
    }
    return builder.take();
}

void writeColumn(const QirDatabase &database, const Call &call) {
    const int field = around(call.first);
    const ColumnType typeOfAll = pick(std::array{ColumnType::Long, ColumnType::Text}, call.second);
    const bool isThere = field >= 1 && field <= database.QirTableFieldsCount();
    const auto type = isThere ? columnType(database.QIRTableFieldType(field).toInt()) : std::nullopt;
    database.WriteColumn(field, around(call.second), blockOf(type.value_or(typeOfAll), call.first + call.second));
}

void make(const QirDatabase &database, const Call &call) {
    const QString name = pick(names, call.first);
    switch (call.member % 24) {
    case 0:
    case 1:
        return database.AddTable(name);
    case 2:
        return database.RenameTable(around(call.second), name);
    case 3:
        return database.RemoveTable(around(call.first));
    case 4:
    case 5:
        return database.QIRTableRecordSource(name);
    case 6:
    case 7:
        return database.AddField(name, pick(types, call.second), pick(sizes, call.first + call.second));
    case 8:
        return database.AddField(name, pick(types, call.second));
    case 9:
        return database.RenameField(around(call.second), name);
    case 10:
        return database.RemoveField(around(call.first));
    case 11:
        return database.ResizeField(around(call.first), pick(sizes, call.second));
    case 12:
        return database.AddRecord();
    case 13:
        return database.RemoveRecord(around(call.first));
    case 14:
        return database.setQIRTableRecordsPointerOut(around(call.first));
    case 15:
    case 16:
        return database.setQIRTableRecordSetByIndex(around(call.first), pick(values, call.second));
    case 17:
        return database.BeginChanges();
    case 18:
        return database.EndChanges();
    case 19:
    case 20:
        return writeColumn(database, call);
    case 21:
        return database.AppendRecords(around(call.first));
    case 22:
        return (void)database.ReadColumn(around(call.first), around(call.second), 2);
    default:
        return database.CancelChanges();
    }
}

// What a caller sees of a call: whether it was refused, and where the database stands then.
std::vector<int> outcome(const QirDatabase &database, const Call &call) {
    bool refused = false;
    try {
        make(database, call);
    } catch (const std::exception &) {
        refused = true;
    }
    return {refused,
            database.DtbHasChanged(),
            database.QIRTablesCount(),
            database.QirTableFieldsCount(),
            database.QirTableRecordsCount(),
            database.QIRTableRecordsPointerOut()};
}

QirDatabase made(const char *folder, const QString &file) {
    const ComponentPath path({QString::fromUtf8(folder)});
    QirDatabase database = QirDatabase::create();
    RC_ASSERT(database.SetDatabaseFileName(file));
    database.setDtbHasChanged(false);
    return database;
}

Content savedContent(QirDatabase &database, const char *folder, const QString &file) {
    try {
        while (true)
            database.CancelChanges();
    } catch (const std::exception &) { // no group is open any more
    }
    database.setDtbHasChanged(true);
    database.release();
    const ComponentPath path({QString::fromUtf8(folder)});
    const QirDatabase again = QirDatabase::create();
    RC_ASSERT(again.LoadDtb(file, QString()));
    return Content::of(again);
}

RC_GTEST_PROP(TwinsProperty, TheComponentAndTheFakeCannotBeToldApart, ()) {
    std::vector<ContractComponent> components = contractComponents();
    std::erase_if(components, [](const ContractComponent &component) { return !component.columns; });
    ASSERT_EQ(components.size(), 2U);
    const UseFakeColumns columns(true);
    const QTemporaryDir folder;
    const QString files[] = {folder.filePath(u"FIRST.DDB"_s), folder.filePath(u"SECOND.DDB"_s)};
    QirDatabase first = made(components[0].folder, files[0]);
    QirDatabase second = made(components[1].folder, files[1]);
    const auto calls = *rc::gen::container<std::vector<Call>>(
        rc::gen::construct<Call>(rc::gen::inRange(0U, 24U), rc::gen::inRange(0U, 60U), rc::gen::inRange(0U, 60U)));
    for (const QirDatabase *database : {&first, &second}) { // something to work on
        database->AddTable(u"A"_s);
        database->QIRTableRecordSource(u"A"_s);
        for (const int type : {1, 2, 4, 7})
            database->AddField(u"F%1"_s.arg(type), type);
        database->AddRecord();
        database->setQIRTableRecordsPointerOut(1);
    }
    for (const Call &call : calls) {
        // A refused member may have failed a group: the two must agree on that as well.
        RC_ASSERT(outcome(first, call) == outcome(second, call));
    }
    RC_ASSERT(savedContent(first, components[0].folder, files[0]) ==
              savedContent(second, components[1].folder, files[1]));
}

} // namespace

} // namespace qir
