#include "qirtbase/model/Database.h"
#include "tests/qirtbase/model/DatabaseTestSupport.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace Qt::StringLiterals;
using namespace qir;
using qir::test::plain;

namespace {

constexpr int longCode = 4;

/// One table of a whole-number field and a text field.
class Undo : public testing::Test {
protected:
    static constexpr std::size_t records = 20'000;

    Undo() {
        database.addTable(u"T"_s);
        database.addField(table(), u"Number"_s, longCode, 0);
        for (std::size_t record = 1; record < records; ++record)
            database.addRecord(table());
    }
    Table &table() { return database.table(0); }

    Database database;
};

TEST_F(Undo, BringsBackSingleCells) {
    const auto before = plain(database);
    database.beginGroup();
    database.setNumber(table(), 1, 5, 7);
    database.setNumber(table(), 1, 5, 8);
    database.setText(table(), 0, 6, u"text"_s);
    database.undoGroup();
    EXPECT_EQ(plain(database), before);
    EXPECT_FALSE(database.hasOpenGroup());
}

TEST_F(Undo, BringsBackAWholeTableRewritten) {
    for (std::size_t record = 0; record < records; ++record)
        database.setText(table(), 0, record, QString::number(record));
    const auto before = plain(database);
    database.beginGroup();
    for (std::size_t record = 0; record < records; ++record) {
        database.setText(table(), 0, record, QString::number(records - record));
        database.setNumber(table(), 1, record, 1);
    }
    database.removeField(table(), 0);
    database.addRecord(table());
    database.undoGroup();
    EXPECT_EQ(plain(database), before);
}

TEST_F(Undo, KeepsTheTablesAddress) {
    const Table *address = &table();
    database.beginGroup();
    for (std::size_t record = 0; record < records; ++record)
        database.setNumber(table(), 1, record, 1);
    database.removeTable(0);
    database.addTable(u"Other"_s);
    database.undoGroup();
    EXPECT_EQ(&table(), address);
    EXPECT_EQ(table().recordCount(), records);
}

TEST_F(Undo, BringsBackFieldsRecordsAndTables) {
    for (std::size_t record = 0; record < records; ++record)
        database.setText(table(), 0, record, u"text that will be cut"_s);
    database.addTable(u"Second"_s);
    const auto before = plain(database);
    database.beginGroup();
    database.renameTable(1, u"Renamed"_s);
    database.resizeField(table(), 0, 4);
    database.renameField(table(), 1, u"Other"_s);
    database.removeRecord(table(), 0);
    database.removeRecord(table(), records / 2);
    database.removeField(table(), 1);
    database.addField(table(), u"New"_s, longCode, 0);
    database.addRecord(table());
    database.removeTable(1);
    database.addTable(u"Third"_s);
    database.addField(database.table(1), u"More"_s, longCode, 0);
    database.setNumber(database.table(1), 1, 0, 5);
    database.undoGroup();
    EXPECT_EQ(plain(database), before);
}

TEST_F(Undo, KeepsWhatAnEndedGroupDid) {
    database.beginGroup();
    database.setNumber(table(), 1, 0, 7);
    database.endGroup();
    EXPECT_EQ(table().field(1).column.value(0), CellValue(7.0));
    EXPECT_FALSE(database.hasOpenGroup());
}

TEST_F(Undo, OfAnInnerGroupLeavesTheOuterOnesChanges) {
    database.beginGroup();
    for (std::size_t record = 0; record < records; ++record) // enough for an image of the table
        database.setNumber(table(), 1, record, 1);
    const auto before = plain(database);
    database.beginGroup();
    database.setNumber(table(), 1, 3, 9);
    database.undoGroup();
    EXPECT_EQ(plain(database), before);
    EXPECT_TRUE(database.hasOpenGroup());
    database.endGroup();
    EXPECT_EQ(plain(database), before);
}

TEST_F(Undo, OfAnOuterGroupTakesEndedInnerOnesWithIt) {
    const auto before = plain(database);
    database.beginGroup();
    database.setNumber(table(), 1, 1, 1);
    database.beginGroup();
    database.setNumber(table(), 1, 2, 2);
    database.endGroup();
    database.setNumber(table(), 1, 2, 3);
    database.undoGroup();
    EXPECT_EQ(plain(database), before);
}

TEST_F(Undo, OfAnOuterGroupThatKeepsAWholeTableSkipsWhatInnerOnesKeptOfIt) {
    const auto before = plain(database);
    database.beginGroup();
    for (std::size_t record = 0; record < records; ++record) // enough for an image of the table
        database.setNumber(table(), 1, record, 1);
    database.beginGroup();
    database.removeRecord(table(), 0);
    database.endGroup();
    database.removeField(table(), 1);
    database.undoGroup();
    EXPECT_EQ(plain(database), before);
}

RC_GTEST_PROP(UndoProperty, OfAnyChangesBringsBackWhatStoodBefore, ()) {
    Database database = test::randomDatabase();
    const auto atFirst = plain(database);
    database.beginGroup();
    const auto changes = [&](int most) {
        const int count = *rc::gen::inRange(0, most);
        for (int i = 0; i < count; ++i)
            test::changeAtRandom(database);
    };
    changes(40);
    const auto between = plain(database);
    database.beginGroup();
    changes(40);
    const bool kept = *rc::gen::arbitrary<bool>();
    if (kept) {
        database.endGroup();
    } else {
        database.undoGroup();
        RC_ASSERT(plain(database) == between);
    }
    changes(10);
    database.undoGroup();
    RC_ASSERT(plain(database) == atFirst);
}

} // namespace
