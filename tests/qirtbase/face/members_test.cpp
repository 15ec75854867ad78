#include "qirtbase/clsQirDatabase.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

constexpr int boolCode = 1;
constexpr int byteCode = 2;
constexpr int intCode = 3;
constexpr int longCode = 4;
constexpr int doubleCode = 7;
constexpr int dateCode = 8;
constexpr int textCode = 10;

/// What the user is shown when `call` fails; "" when it does not.
template<class Call>
std::string errorOf(Call call) {
    try {
        call();
    } catch (const std::exception &error) {
        return error.what();
    }
    return {};
}

/// Tables A, B and C; B is current and has the fields Name (text) and Count (long) and three records.
class Members : public testing::Test {
protected:
    Members() {
        for (const QString &name : {u"A"_s, u"B"_s, u"C"_s})
            database.AddTable(name);
        database.QIRTableRecordSource(u"B"_s);
        database.RenameField(1, u"Name"_s);
        database.AddField(u"Count"_s, longCode);
        database.AddRecord();
        database.AddRecord();
        for (int record = 1; record <= 3; ++record) {
            write(record, 1, u"n%1"_s.arg(record));
            write(record, 2, record * 10);
        }
        database.setQIRTableRecordsPointerOut(0);
        database.setDtbHasChanged(false);
    }
    void write(int record, int field, const QVariant &value) {
        database.setQIRTableRecordsPointerOut(record);
        database.QIRTableRecordSetByIndex(field, value);
    }
    QStringList record(int number) {
        QStringList values;
        database.GetQirRecord(number, values);
        return values;
    }
    QStringList tableNames() {
        QStringList names;
        for (int table = 1; table <= database.QIRTablesCount(); ++table)
            names.append(database.QIRTableName(table));
        return names;
    }
    /// Says that `call` is an error that leaves everything as it is.
    template<class Call>
    void expectError(Call call) {
        const QStringList names = tableNames();
        const int pointer = database.QIRTableRecordsPointerOut();
        const QList<QStringList> records = {record(1), record(2), record(3)};
        const bool changed = database.DtbHasChanged();
        EXPECT_NE(errorOf(call), "");
        EXPECT_EQ(tableNames(), names);
        EXPECT_EQ(database.QIRTableRecordsPointerOut(), pointer);
        EXPECT_EQ(database.QirTableRecordsCount(), 3);
        EXPECT_EQ(database.QirTableFieldsCount(), 2);
        EXPECT_EQ((QList<QStringList>{record(1), record(2), record(3)}), records);
        EXPECT_EQ(database.DtbHasChanged(), changed);
    }

    clsQirDatabase database;
};

TEST_F(Members, TablesStandInTheirOrder) {
    EXPECT_EQ(database.QIRTablesCount(), 3);
    EXPECT_EQ(tableNames(), (QStringList{u"A"_s, u"B"_s, u"C"_s}));
    database.RemoveTable(1);
    EXPECT_EQ(tableNames(), (QStringList{u"B"_s, u"C"_s}));
}

TEST_F(Members, ExistTableLooksUpByKey) {
    EXPECT_TRUE(database.ExistTable(u" b ?"_s));
    EXPECT_FALSE(database.ExistTable(u"D"_s));
    EXPECT_FALSE(database.ExistTable(u""_s));
}

TEST_F(Members, ANewTableHasOneFieldAndOneRecord) {
    database.AddTable(u"D"_s);
    database.QIRTableRecordSource(u"D"_s);
    EXPECT_EQ(database.QirTableFieldsCount(), 1);
    EXPECT_EQ(database.QirTableRecordsCount(), 1);
    database.RemoveRecord(1);
    database.RemoveField(1);
    EXPECT_EQ(database.QirTableFieldsCount(), 0);
    EXPECT_EQ(database.QirTableRecordsCount(), 0);
}

TEST_F(Members, AddingMovesNeitherTableNorRecord) {
    database.setQIRTableRecordsPointerOut(2);
    database.AddTable(u"D"_s);
    database.AddRecord();
    database.AddField(u"F"_s, boolCode);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 2);
    EXPECT_EQ(database.QirTableFieldsCount(), 3);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"n2"_s));
}

TEST_F(Members, RemovingTheCurrentTableLeavesNone) {
    database.setQIRTableRecordsPointerOut(2);
    database.RemoveTable(2);
    EXPECT_EQ(database.QirTableFieldsCount(), 0);
    EXPECT_EQ(database.QirTableRecordsCount(), 0);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 0);
    EXPECT_NE(errorOf([&] { database.AddRecord(); }), "");
    EXPECT_NE(errorOf([&] { database.setQIRTableRecordsPointerOut(0); }), "");
}

TEST_F(Members, RemovingOrRenamingAnotherTableLeavesTheCurrentOne) {
    database.setQIRTableRecordsPointerOut(2);
    database.RemoveTable(1);
    database.RenameTable(1, u"Renamed"_s);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"n2"_s));
    EXPECT_EQ(database.QIRTableName(1), u"Renamed"_s);
}

TEST_F(Members, ChoosingATableSetsTheRecordToZero) {
    database.setQIRTableRecordsPointerOut(2);
    database.QIRTableRecordSource(u"b !"_s);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 0);
    EXPECT_EQ(database.QirTableRecordsCount(), 3);
}

TEST_F(Members, AnUnknownTableIsAnErrorThatKeepsTheCurrentOne) {
    expectError([&] { database.QIRTableRecordSource(u"D"_s); });
    expectError([&] { database.QIRTableRecordSource(u""_s); });
}

TEST_F(Members, NumbersOutOfRangeAreErrors) {
    for (const int number : {0, -1, 4, INT_MAX, INT_MIN}) {
        expectError([&] { database.QIRTableName(number); });
        expectError([&] { database.RenameTable(number, u"X"_s); });
        expectError([&] { database.RemoveTable(number); });
        expectError([&] { database.RemoveRecord(number); });
        expectError([&] { record(number); });
    }
    for (const int number : {0, -1, 3, INT_MAX, INT_MIN}) {
        database.setQIRTableRecordsPointerOut(1);
        expectError([&] { database.QIRTableFieldName(number); });
        expectError([&] { database.QIRTableFieldType(number); });
        expectError([&] { database.QIRTableFieldSize(number); });
        expectError([&] { database.RenameField(number, u"X"_s); });
        expectError([&] { database.RemoveField(number); });
        expectError([&] { database.ResizeField(number, 5); });
        expectError([&] { database.QIRTableRecordSetByIndex(number); });
        expectError([&] { database.QIRTableRecordSetByIndex(number, 1); });
    }
    for (const int number : {-1, 4, INT_MAX, INT_MIN})
        expectError([&] { database.setQIRTableRecordsPointerOut(number); });
}

TEST_F(Members, AnErrorNamesTheNumberAndTheCount) {
    EXPECT_EQ(errorOf([&] { database.QIRTableName(9); }), "There is no table number 9: the database has 3.");
    EXPECT_EQ(errorOf([&] { record(9); }), "There is no record number 9: the table has 3.");
    EXPECT_EQ(errorOf([&] { database.QIRTableFieldName(9); }), "There is no field number 9: the table has 2.");
    EXPECT_EQ(errorOf([&] { database.QIRTableRecordSource(u"Pümps"_s); }), "There is no table \"Pümps\".");
}

TEST_F(Members, TakenNamesAndUnknownTypesAreErrors) {
    expectError([&] { database.AddTable(u"a"_s); });
    expectError([&] { database.AddTable(u" "_s); });
    expectError([&] { database.RenameTable(1, u"b"_s); });
    expectError([&] { database.AddField(u"NAME"_s, longCode); });
    expectError([&] { database.AddField(u"New"_s, 5); });
    expectError([&] { database.RenameField(1, u"count "_s); });
}

TEST_F(Members, AFieldTellsNameTypeAndSize) {
    EXPECT_EQ(database.QIRTableFieldName(2), u"Count"_s);
    EXPECT_EQ(database.QIRTableFieldType(1), textCode);
    EXPECT_EQ(database.QIRTableFieldType(2), longCode);
    EXPECT_EQ(database.QIRTableFieldSize(2), 0);
}

TEST_F(Members, ATextFieldAddedWithoutASizeHolds50Characters) {
    database.AddField(u"Text"_s, textCode);
    EXPECT_EQ(database.QIRTableFieldSize(3), 50);
    database.AddField(u"Sized"_s, textCode, 7.5);
    EXPECT_EQ(database.QIRTableFieldSize(4), 8);
    database.AddField(u"Number"_s, longCode, 7);
    EXPECT_EQ(database.QIRTableFieldSize(5), 0);
}

TEST_F(Members, TheCurrentRecordFollowsARemovalBeforeIt) {
    database.setQIRTableRecordsPointerOut(3);
    database.RemoveRecord(1);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 2);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"n3"_s));
    database.RemoveRecord(2);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 0);
    EXPECT_EQ(record(1), (QStringList{u""_s, u"n2"_s, u"20"_s}));
}

TEST_F(Members, AFieldOfNoRecordIsAnError) {
    expectError([&] { database.QIRTableRecordSetByIndex(1); });
    expectError([&] { database.QIRTableRecordSetByIndex(1, u"x"_s); });
}

TEST_F(Members, ARecordsTextsFillTheListFromOne) {
    QStringList values = {u"left"_s, u"over"_s, u"from"_s, u"before"_s};
    database.setQIRTableRecordsPointerOut(1);
    database.GetQirRecord(2, values);
    EXPECT_EQ(values, (QStringList{u""_s, u"n2"_s, u"20"_s}));
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
}

TEST_F(Members, FillingAListDoesNotReachCopiesOfIt) {
    QStringList values;
    database.GetQirRecord(1, values);
    const QStringList copy = values;
    const QString text = values.at(1);
    database.GetQirRecord(2, values);
    EXPECT_EQ(copy, (QStringList{u""_s, u"n1"_s, u"10"_s}));
    EXPECT_EQ(text, u"n1"_s);
}

TEST_F(Members, AListKeepsItsMemoryFromRecordToRecord) {
    QStringList values;
    write(1, 1, u"a longer text than the others"_s);
    database.GetQirRecord(1, values);
    const QString *strings = values.constData();
    const QChar *characters = values.at(1).constData();
    database.GetQirRecord(2, values);
    database.GetQirRecord(1, values);
    EXPECT_EQ(values.constData(), strings);
    EXPECT_EQ(values.at(1).constData(), characters);
}

TEST_F(Members, ValuesComeAsIntDoubleOrText) {
    database.AddField(u"Bool"_s, boolCode);
    database.AddField(u"Byte"_s, byteCode);
    database.AddField(u"Int"_s, intCode);
    database.AddField(u"Double"_s, doubleCode);
    database.AddField(u"Date"_s, dateCode);
    for (int field = 3; field <= 7; ++field)
        write(1, field, 1);
    const auto typeOf = [&](int field) { return database.QIRTableRecordSetByIndex(field).typeId(); };
    EXPECT_EQ(typeOf(1), QMetaType::QString);
    for (const int field : {2, 3, 4, 5})
        EXPECT_EQ(typeOf(field), QMetaType::Int) << field;
    for (const int field : {6, 7})
        EXPECT_EQ(typeOf(field), QMetaType::Double) << field;
    EXPECT_EQ(record(1), (QStringList{u""_s, u"n1"_s, u"10"_s, u"1"_s, u"1"_s, u"1"_s, u"1"_s, u"1"_s}));
}

TEST_F(Members, AnyKindOfNumberIsTaken) {
    for (const QVariant &value : {QVariant(7), QVariant(7.0), QVariant(7U), QVariant(7LL), QVariant(7ULL),
                                  QVariant::fromValue<short>(7), QVariant(7.0F), QVariant(u"7"_s)}) {
        write(1, 2, 0);
        write(1, 2, value);
        EXPECT_EQ(database.QIRTableRecordSetByIndex(2), QVariant(7)) << value.typeName();
    }
    write(1, 2, true);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(2), QVariant(1));
    write(1, 1, 2.5);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"2.5"_s));
    write(1, 1, true);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"1"_s));
}

TEST_F(Members, WhatIsNeitherNumberNorTextIsAnError) {
    database.setQIRTableRecordsPointerOut(1);
    expectError([&] { database.QIRTableRecordSetByIndex(2, QVariant()); });
    expectError([&] { database.QIRTableRecordSetByIndex(2, QVariant(QStringList{u"1"_s})); });
    expectError([&] { database.QIRTableRecordSetByIndex(1, QVariant(QByteArray("1"))); });
}

TEST_F(Members, EveryModificationSetsTheChangedFlag) {
    const auto changes = [&](auto call) {
        database.setDtbHasChanged(false);
        call();
        return database.DtbHasChanged();
    };
    database.setQIRTableRecordsPointerOut(1);
    EXPECT_TRUE(changes([&] { database.AddTable(u"D"_s); }));
    EXPECT_TRUE(changes([&] { database.RenameTable(4, u"E"_s); }));
    EXPECT_TRUE(changes([&] { database.RemoveTable(4); }));
    EXPECT_TRUE(changes([&] { database.AddField(u"F"_s, textCode, 5); }));
    EXPECT_TRUE(changes([&] { database.RenameField(3, u"G"_s); }));
    EXPECT_TRUE(changes([&] { database.ResizeField(3, 4); }));
    EXPECT_TRUE(changes([&] { database.RemoveField(3); }));
    EXPECT_TRUE(changes([&] { database.AddRecord(); }));
    EXPECT_TRUE(changes([&] { database.RemoveRecord(4); }));
    EXPECT_TRUE(changes([&] { database.QIRTableRecordSetByIndex(1, u"new"_s); }));
    EXPECT_TRUE(changes([&] { database.QIRTableRecordSetByIndex(2, 99); }));
}

TEST_F(Members, WritingWhatIsAlreadyThereLeavesTheFlagAlone) {
    database.setQIRTableRecordsPointerOut(1);
    database.QIRTableRecordSetByIndex(1, u"n1"_s);
    database.QIRTableRecordSetByIndex(2, 10);
    database.QIRTableRecordSetByIndex(2, 10.4);
    database.QIRTableRecordSetByIndex(2, u"10"_s);
    database.RenameTable(1, u"A"_s);
    database.RenameField(1, u"Name"_s);
    database.ResizeField(1, 50);
    database.ResizeField(2, 9);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_F(Members, ReadingAndChoosingLeaveTheFlagAlone) {
    database.QIRTableRecordSource(u"A"_s);
    database.setQIRTableRecordsPointerOut(1);
    QStringList values;
    database.GetQirRecord(1, values);
    database.ExistTable(u"A"_s);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_F(Members, WithoutATableTheCountsAreZeroAndTheRestFails) {
    clsQirDatabase fresh;
    EXPECT_EQ(fresh.QIRTablesCount(), 0);
    EXPECT_EQ(fresh.QirTableFieldsCount(), 0);
    EXPECT_EQ(fresh.QirTableRecordsCount(), 0);
    EXPECT_EQ(fresh.QIRTableRecordsPointerOut(), 0);
    QStringList values;
    EXPECT_EQ(errorOf([&] { fresh.GetQirRecord(1, values); }), "No table is selected.");
    EXPECT_NE(errorOf([&] { fresh.AddField(u"F"_s, longCode); }), "");
    EXPECT_NE(errorOf([&] { fresh.AddRecord(); }), "");
    EXPECT_NE(errorOf([&] { fresh.RemoveRecord(1); }), "");
    EXPECT_NE(errorOf([&] { fresh.QIRTableRecordSetByIndex(1); }), "");
}

TEST_F(Members, TheFlagIsPlain) {
    write(1, 1, u"kept"_s);
    database.setDtbHasChanged(false);
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(record(1).at(1), u"kept"_s);
    database.setDtbHasChanged(true);
    EXPECT_TRUE(database.DtbHasChanged());
}

} // namespace
