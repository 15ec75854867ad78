#include "qirtbase/clsQirDatabase.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

constexpr int longCode = 4;

/// One table "T" with a text and a number field, one record, current; not changed.
class Groups : public testing::Test {
protected:
    Groups() {
        database.AddTable(u"T"_s);
        database.QIRTableRecordSource(u"T"_s);
        database.AddField(u"Number"_s, longCode);
        database.setQIRTableRecordsPointerOut(1);
        database.setDtbHasChanged(false);
    }
    void writeNumber(int number) { database.QIRTableRecordSetByIndex(2, number); }
    int number() { return database.QIRTableRecordSetByIndex(2).toInt(); }

    clsQirDatabase database;
};

TEST_F(Groups, AnEndedGroupKeepsItsChanges) {
    database.BeginChanges();
    writeNumber(7);
    database.EndChanges();
    EXPECT_EQ(number(), 7);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_F(Groups, ACancelledGroupLeavesNoTrace) {
    database.BeginChanges();
    writeNumber(7);
    database.AddRecord();
    database.setQIRTableRecordsPointerOut(2);
    database.AddTable(u"U"_s);
    database.QIRTableRecordSource(u"U"_s);
    database.RemoveTable(1);
    database.CancelChanges();
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(database.QIRTablesCount(), 1);
    EXPECT_EQ(database.QirTableRecordsCount(), 1);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    EXPECT_EQ(number(), 0);
}

TEST_F(Groups, CancellingKeepsAFlagThatWasSetBefore) {
    writeNumber(3);
    database.BeginChanges();
    writeNumber(7);
    database.CancelChanges();
    EXPECT_TRUE(database.DtbHasChanged());
    EXPECT_EQ(number(), 3);
}

TEST_F(Groups, AnErrorWithinAGroupMakesItsEndUndoIt) {
    database.BeginChanges();
    writeNumber(7);
    EXPECT_THROW(database.RemoveRecord(9), std::exception);
    EXPECT_EQ(number(), 7);
    database.EndChanges();
    EXPECT_EQ(number(), 0);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_F(Groups, AnErrorBeforeAGroupDoesNotMatterToIt) {
    EXPECT_THROW(database.RemoveRecord(9), std::exception);
    database.BeginChanges();
    writeNumber(7);
    database.EndChanges();
    EXPECT_EQ(number(), 7);
}

TEST_F(Groups, GroupsNest) {
    database.BeginChanges();
    writeNumber(1);
    database.BeginChanges();
    writeNumber(2);
    database.CancelChanges();
    EXPECT_EQ(number(), 1);
    database.BeginChanges();
    writeNumber(3);
    database.EndChanges();
    EXPECT_EQ(number(), 3);
    database.CancelChanges();
    EXPECT_EQ(number(), 0);
}

TEST_F(Groups, AnErrorInAnInnerGroupUndoesTheOuterOneToo) {
    database.BeginChanges();
    writeNumber(1);
    database.BeginChanges();
    EXPECT_THROW(database.RemoveRecord(9), std::exception);
    database.EndChanges();
    EXPECT_EQ(number(), 1);
    database.EndChanges();
    EXPECT_EQ(number(), 0);
}

TEST_F(Groups, EndingWithoutABeginIsAnError) {
    EXPECT_THROW(database.EndChanges(), std::exception);
    EXPECT_THROW(database.CancelChanges(), std::exception);
}

TEST_F(Groups, NeitherSavingNorANewPasswordGoIntoAGroup) {
    database.BeginChanges();
    writeNumber(7);
    EXPECT_THROW(database.SaveDtb(), std::exception);
    EXPECT_THROW(database.NewPassword(u""_s, u"secret"_s), std::exception);
    database.CancelChanges();
}

} // namespace
