#include "tests/qirtbase/contract/ContractTest.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

TEST_P(ContractTest, FieldsHaveTheNameTypeAndSizeThatTheyWereAddedWith) {
    const QirDatabase database = made();
    addBareTable(database, u"All"_s);
    for (const int type : {1, 2, 3, 4, 7, 8})
        database.AddField(u"F%1"_s.arg(type), type);
    database.AddField(u"F10"_s, 10, 20);
    ASSERT_EQ(database.QirTableFieldsCount(), 7);
    const int types[] = {1, 2, 3, 4, 7, 8, 10};
    for (int field = 1; field <= 7; ++field) {
        EXPECT_EQ(database.QIRTableFieldName(field), u"F%1"_s.arg(types[field - 1]));
        EXPECT_EQ(database.QIRTableFieldType(field).toInt(), types[field - 1]);
    }
    EXPECT_EQ(database.QIRTableFieldSize(7).toInt(), 20);
}

TEST_P(ContractTest, ATextFieldAddedWithoutASizeHasFifty) {
    const QirDatabase database = pumps();
    database.AddField(u"Note"_s, 10);
    EXPECT_EQ(database.QIRTableFieldSize(4).toInt(), 50);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, ASizeGivenForAnotherTypeIsIgnored) {
    const QirDatabase database = pumps();
    database.AddField(u"Count"_s, 4, 20);
    EXPECT_EQ(database.QIRTableFieldSize(4).toInt(), database.QIRTableFieldSize(2).toInt());
    database.setDtbHasChanged(false);
    database.ResizeField(4, 30);
    EXPECT_EQ(database.QIRTableFieldSize(4).toInt(), database.QIRTableFieldSize(2).toInt());
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, SizesAreRoundedAndKeptWithinTheirBounds) {
    const QirDatabase database = pumps();
    const std::pair<double, int> sizes[] = {{20.4, 20}, {20.6, 21}, {0, 0}, {-3, 0}, {65535, 65535}, {1e9, 65535}};
    for (const auto &[given, kept] : sizes) {
        database.ResizeField(1, given);
        EXPECT_EQ(database.QIRTableFieldSize(1).toInt(), kept) << given;
    }
    database.AddField(u"Note"_s, 10, 1e9);
    EXPECT_EQ(database.QIRTableFieldSize(4).toInt(), 65535);
}

TEST_P(ContractTest, ResizingToLessCutsTheTexts) {
    const QirDatabase database = pumps();
    setValue(database, 1, 1, u"Booster"_s);
    database.setDtbHasChanged(false);
    database.ResizeField(1, 4);
    EXPECT_TRUE(database.DtbHasChanged());
    EXPECT_EQ(text(database, 1, 1), u"Boos"_s);
    EXPECT_EQ(text(database, 2, 1), u"P-2"_s);
    database.ResizeField(1, 20);
    EXPECT_EQ(text(database, 1, 1), u"Boos"_s);
}

TEST_P(ContractTest, ResizingToTheSameSizeChangesNothing) {
    const QirDatabase database = pumps();
    database.ResizeField(1, 20);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, AnUnknownTypeIsRefused) {
    const QirDatabase database = pumps();
    for (const int type : {-1, 0, 5, 6, 9, 11, 266})
        expectRefused(database, [&] { database.AddField(u"New"_s, type); });
}

TEST_P(ContractTest, AFieldNumberOutOfRangeIsRefused) {
    const QirDatabase database = pumps();
    for (const int field : {-1, 0, 4, 2147483647}) {
        expectRefused(database, [&] { (void)database.QIRTableFieldName(field); });
        expectRefused(database, [&] { (void)database.QIRTableFieldType(field); });
        expectRefused(database, [&] { (void)database.QIRTableFieldSize(field); });
        expectRefused(database, [&] { database.RenameField(field, u"Other"_s); });
        expectRefused(database, [&] { database.RemoveField(field); });
        expectRefused(database, [&] { database.ResizeField(field, 10); });
        expectRefused(database, [&] { (void)database.QIRTableRecordSetByIndex(field); });
        expectRefused(database, [&] { database.setQIRTableRecordSetByIndex(field, 1); });
    }
}

TEST_P(ContractTest, AFieldAddedToATableWithRecordsHoldsZerosOrEmptyTexts) {
    const QirDatabase database = pumps();
    database.AddField(u"Note"_s, 10, 10);
    database.AddField(u"On"_s, 1);
    for (const int record : {1, 2}) {
        EXPECT_EQ(text(database, record, 4), u""_s);
        EXPECT_EQ(text(database, record, 5), u"0"_s);
    }
}

TEST_P(ContractTest, AddingAFieldMovesNeitherCurrentTableNorRecord) {
    const QirDatabase database = pumps();
    database.setQIRTableRecordsPointerOut(2);
    database.AddField(u"Note"_s, 10, 10);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 2);
    EXPECT_EQ(database.QIRTableRecordSetByIndex(1), QVariant(u"P-2"_s));
}

TEST_P(ContractTest, RenamingAFieldKeepsItsValues) {
    const QirDatabase database = pumps();
    database.RenameField(1, u"Label"_s);
    EXPECT_EQ(database.QIRTableFieldName(1), u"Label"_s);
    EXPECT_EQ(text(database, 2, 1), u"P-2"_s);
    EXPECT_TRUE(database.DtbHasChanged());
    database.setDtbHasChanged(false);
    database.RenameField(1, u"Label"_s);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, RemovingAFieldClosesTheGap) {
    const QirDatabase database = pumps();
    database.RemoveField(2);
    ASSERT_EQ(database.QirTableFieldsCount(), 2);
    EXPECT_EQ(database.QIRTableFieldName(2), u"Head"_s);
    EXPECT_EQ(text(database, 2, 2), u"5"_s);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, RemovingEveryFieldKeepsTheRecords) {
    const QirDatabase database = pumps();
    for (int field = 3; field >= 1; --field)
        database.RemoveField(field);
    EXPECT_EQ(database.QirTableFieldsCount(), 0);
    EXPECT_EQ(database.QirTableRecordsCount(), 2);
    database.AddField(u"Name"_s, 10, 5);
    EXPECT_EQ(text(database, 2, 1), u""_s);
}

TEST_P(ContractTest, ATableWithoutFieldsIsSavedWithoutRecords) {
    const QirDatabase database = pumps();
    database.AddTable(u"Other"_s);
    database.setQIRTableRecordsPointerOut(2);
    for (int field = 3; field >= 1; --field)
        database.RemoveField(field);
    EXPECT_EQ(database.QirTableRecordsCount(), 2);
    save(database);
    EXPECT_EQ(database.QirTableRecordsCount(), 0) << "what is open is what was saved";
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 0);
    EXPECT_FALSE(database.DtbHasChanged());
    const QirDatabase again = loaded(u"TEST.DDB"_s);
    EXPECT_EQ(Content::of(again), Content::of(database));
    database.QIRTableRecordSource(u"Pumps"_s);
    database.AddField(u"Name"_s, 10, 5);
    EXPECT_EQ(database.QirTableRecordsCount(), 0);
    again.QIRTableRecordSource(u"Other"_s);
    EXPECT_EQ(again.QirTableRecordsCount(), 1);
}

TEST_P(ContractTest, ATableWithoutFieldsIsWrittenWithoutRecordsAtTheRelease) {
    {
        const QirDatabase database = pumps();
        save(database);
        for (int field = 3; field >= 1; --field)
            database.RemoveField(field);
        EXPECT_TRUE(database.DtbHasChanged());
    }
    const QirDatabase again = loaded(u"TEST.DDB"_s);
    again.QIRTableRecordSource(u"Pumps"_s);
    EXPECT_EQ(again.QirTableFieldsCount(), 0);
    EXPECT_EQ(again.QirTableRecordsCount(), 0);
}

TEST_P(ContractTest, FieldNumber1025IsRefused) {
    const QirDatabase database = made();
    addBareTable(database, u"Wide"_s);
    for (int field = 1; field <= 1024; ++field)
        database.AddField(u"F%1"_s.arg(field), 4);
    database.setDtbHasChanged(false);
    EXPECT_THROW(database.AddField(u"One too many"_s, 4), std::exception);
    EXPECT_EQ(database.QirTableFieldsCount(), 1024);
    EXPECT_FALSE(database.DtbHasChanged());
}

} // namespace

} // namespace qir
