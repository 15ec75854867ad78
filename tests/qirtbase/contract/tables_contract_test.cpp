#include "tests/qirtbase/contract/ContractTest.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

TEST_P(ContractTest, ANewDatabaseHasNoTables) {
    const QirDatabase database = made();
    EXPECT_EQ(database.QIRTablesCount(), 0);
    EXPECT_FALSE(database.ExistTable(u"Pumps"_s));
}

TEST_P(ContractTest, TablesAreNumberedFromOneInTheOrderOfTheirAdding) {
    const QirDatabase database = made();
    database.AddTable(u"B"_s);
    database.AddTable(u"A"_s);
    database.AddTable(u"C"_s);
    ASSERT_EQ(database.QIRTablesCount(), 3);
    EXPECT_EQ(database.QIRTableName(1), u"B"_s);
    EXPECT_EQ(database.QIRTableName(2), u"A"_s);
    EXPECT_EQ(database.QIRTableName(3), u"C"_s);
}

TEST_P(ContractTest, ANewTableHoldsOneFieldAndOneRecord) {
    const QirDatabase database = made();
    database.AddTable(u"Pumps"_s);
    database.QIRTableRecordSource(u"Pumps"_s);
    EXPECT_EQ(database.QirTableFieldsCount(), 1);
    EXPECT_EQ(database.QirTableRecordsCount(), 1);
}

TEST_P(ContractTest, ATableMayBeLeftWithoutFieldsAndRecords) {
    const QirDatabase database = made();
    addBareTable(database, u"Pumps"_s);
    EXPECT_EQ(database.QirTableFieldsCount(), 0);
    EXPECT_EQ(database.QirTableRecordsCount(), 0);
    QStringList values{u"left over"_s};
    database.AddRecord();
    database.GetQirRecord(1, values);
    EXPECT_EQ(values, QStringList{QString()});
}

TEST_P(ContractTest, NamesAreKeptAsGiven) {
    const QirDatabase database = made();
    for (const QString &name : {u"  pumps "_s, u"Straße ?"_s, u"ventilo\u0301 \U0001F600"_s}) {
        database.AddTable(name);
        EXPECT_EQ(database.QIRTableName(database.QIRTablesCount()), name);
    }
}

TEST_P(ContractTest, TablesAreLookedUpWithoutCaseSurroundingBlanksAndMarkers) {
    const QirDatabase database = made();
    database.AddTable(u"Pumps"_s);
    for (const QString &name : {u"PUMPS"_s, u" pumps  "_s, u"Pumps ?"_s, u"Pumps !"_s, u"pumps ! ?"_s}) {
        EXPECT_TRUE(database.ExistTable(name)) << name.toStdString();
        EXPECT_NO_THROW(database.QIRTableRecordSource(name)) << name.toStdString();
        EXPECT_THROW(database.AddTable(name), std::exception) << name.toStdString();
    }
    EXPECT_FALSE(database.ExistTable(u"Pump"_s));
    EXPECT_FALSE(database.ExistTable(u""_s));
}

TEST_P(ContractTest, ATakenNameIsRefused) {
    const QirDatabase database = pumps();
    database.AddTable(u"Valves"_s);
    expectRefused(database, [&] { database.AddTable(u"PUMPS"_s); });
    expectRefused(database, [&] { database.RenameTable(2, u"pumps "_s); });
    expectRefused(database, [&] { database.AddField(u"NAME"_s, 4); });
    expectRefused(database, [&] { database.RenameField(2, u" name"_s); });
}

TEST_P(ContractTest, ANameWithoutAKeyIsRefused) {
    const QirDatabase database = pumps();
    for (const QString &name : {u""_s, u"   "_s, u"\t\n"_s}) {
        expectRefused(database, [&] { database.AddTable(name); });
        expectRefused(database, [&] { database.RenameTable(1, name); });
        expectRefused(database, [&] { database.AddField(name, 4); });
        expectRefused(database, [&] { database.RenameField(1, name); });
    }
}

TEST_P(ContractTest, ANameLongerThan255CharactersIsRefused) {
    const QirDatabase database = pumps();
    const QString longest(255, u'n');
    database.AddTable(longest);
    database.AddField(longest, 4);
    expectRefused(database, [&] { database.AddTable(longest + u'x'); });
    expectRefused(database, [&] { database.RenameTable(1, u'x' + longest); });
    expectRefused(database, [&] { database.AddField(longest + u'x', 4); });
    expectRefused(database, [&] { database.RenameField(1, u'x' + longest); });
}

TEST_P(ContractTest, ATableNumberOutOfRangeIsRefused) {
    const QirDatabase database = pumps();
    for (const int table : {-1, 0, 2, 2147483647}) {
        expectRefused(database, [&] { (void)database.QIRTableName(table); });
        expectRefused(database, [&] { database.RenameTable(table, u"Other"_s); });
        expectRefused(database, [&] { database.RemoveTable(table); });
    }
}

TEST_P(ContractTest, AnUnknownTableIsRefused) {
    const QirDatabase database = pumps();
    expectRefused(database, [&] { database.QIRTableRecordSource(u"Valves"_s); });
    expectRefused(database, [&] { database.QIRTableRecordSource(u""_s); });
}

TEST_P(ContractTest, AddingATableMovesNeitherCurrentTableNorRecord) {
    const QirDatabase database = pumps();
    database.setQIRTableRecordsPointerOut(2);
    database.AddTable(u"Valves"_s);
    EXPECT_EQ(database.QirTableFieldsCount(), 3);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 2);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, RenamingATableKeepsItsPlaceItsContentAndThatItIsCurrent) {
    const QirDatabase database = pumps();
    database.AddTable(u"Valves"_s);
    database.setDtbHasChanged(false);
    database.RenameTable(1, u"Machines"_s);
    EXPECT_EQ(database.QIRTableName(1), u"Machines"_s);
    EXPECT_FALSE(database.ExistTable(u"Pumps"_s));
    EXPECT_EQ(database.QirTableFieldsCount(), 3);
    EXPECT_EQ(value(database, 2, 1), QVariant(u"P-2"_s));
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, ATableMayGetItsOwnNameInAnotherCase) {
    const QirDatabase database = pumps();
    database.RenameTable(1, u"PUMPS"_s);
    EXPECT_EQ(database.QIRTableName(1), u"PUMPS"_s);
    EXPECT_TRUE(database.DtbHasChanged());
    database.setDtbHasChanged(false);
    database.RenameTable(1, u"PUMPS"_s);
    EXPECT_FALSE(database.DtbHasChanged()) << "that is the name it has";
}

TEST_P(ContractTest, RemovingTheCurrentTableLeavesNone) {
    const QirDatabase database = pumps();
    database.AddTable(u"Valves"_s);
    database.setDtbHasChanged(false);
    database.RemoveTable(1);
    EXPECT_TRUE(database.DtbHasChanged());
    EXPECT_EQ(database.QIRTablesCount(), 1);
    EXPECT_EQ(database.QIRTableName(1), u"Valves"_s);
    EXPECT_THROW((void)database.QIRTableFieldName(1), std::exception);
    EXPECT_THROW(database.AddRecord(), std::exception);
}

TEST_P(ContractTest, RemovingAnotherTableKeepsTheCurrentOne) {
    const QirDatabase database = pumps();
    database.AddTable(u"Valves"_s);
    database.AddTable(u"Tanks"_s);
    database.QIRTableRecordSource(u"Valves"_s);
    database.AddField(u"Second"_s, 4);
    database.RemoveTable(3);
    EXPECT_EQ(database.QirTableFieldsCount(), 2);
    database.RemoveTable(1);
    EXPECT_EQ(database.QirTableFieldsCount(), 2);
    EXPECT_EQ(database.QIRTableFieldName(2), u"Second"_s);
}

TEST_P(ContractTest, ARemovedNameIsFreeAgain) {
    const QirDatabase database = pumps();
    database.RemoveTable(1);
    EXPECT_FALSE(database.ExistTable(u"Pumps"_s));
    EXPECT_NO_THROW(database.AddTable(u"Pumps"_s));
}

TEST_P(ContractTest, TableNumber4097IsRefused) {
    const QirDatabase database = pumps();
    for (int table = 2; table <= 4096; ++table)
        database.AddTable(u"T%1"_s.arg(table));
    database.setDtbHasChanged(false);
    EXPECT_THROW(database.AddTable(u"One too many"_s), std::exception);
    EXPECT_EQ(database.QIRTablesCount(), 4096);
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_FALSE(database.ExistTable(u"One too many"_s));
}

} // namespace

} // namespace qir
