#include "tests/qirtbase/contract/ContractTest.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

// One of everything that changes a database.
void changeEverything(const QirDatabase &database) {
    database.setQIRTableRecordsPointerOut(2);
    database.setQIRTableRecordSetByIndex(1, u"Changed"_s);
    database.setQIRTableRecordSetByIndex(2, -5);
    database.AddRecord();
    database.RemoveRecord(1);
    database.AddField(u"New"_s, 10, 5);
    database.RenameField(3, u"Lift"_s);
    database.ResizeField(1, 2);
    database.RemoveField(2);
    database.AddTable(u"Valves"_s);
    database.RenameTable(1, u"Machines"_s);
    database.QIRTableRecordSource(u"Valves"_s);
    database.AddField(u"Second"_s, 4);
    database.RemoveTable(1);
}

TEST_P(ContractTest, AGroupThatEndsKeepsItsChanges) {
    const QirDatabase database = pumps();
    ChangeGroup group(database);
    setValue(database, 1, 1, u"Changed"_s);
    group.commit();
    EXPECT_EQ(text(database, 1, 1), u"Changed"_s);
    EXPECT_TRUE(database.DtbHasChanged());
}

TEST_P(ContractTest, AGroupThatIsCutShortIsUndoneWhole) {
    const QirDatabase database = pumps();
    const Content before = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    database.setQIRTableRecordsPointerOut(1);
    {
        const ChangeGroup group(database);
        changeEverything(database);
    }
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 1);
    EXPECT_EQ(database.QirTableFieldsCount(), 3) << "the current table is the one before";
    EXPECT_EQ(Content::of(database), before);
}

TEST_P(ContractTest, AnErrorInAGroupUndoesItAlsoWhenItIsEnded) {
    const QirDatabase database = pumps();
    const Content before = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    database.BeginChanges();
    setValue(database, 1, 1, u"Changed"_s);
    EXPECT_THROW(database.RemoveRecord(99), std::exception);
    database.EndChanges();
    EXPECT_EQ(Content::of(database), before);
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(ContractTest, AnInnerGroupIsUndoneAlone) {
    const QirDatabase database = pumps();
    ChangeGroup outer(database);
    setValue(database, 1, 1, u"Outer"_s);
    {
        const ChangeGroup inner(database);
        setValue(database, 1, 1, u"Inner"_s);
        setValue(database, 2, 1, u"Inner"_s);
    }
    EXPECT_EQ(text(database, 1, 1), u"Outer"_s);
    EXPECT_EQ(text(database, 2, 1), u"P-2"_s);
    outer.commit();
    EXPECT_EQ(text(database, 1, 1), u"Outer"_s);
}

TEST_P(ContractTest, AnOuterGroupUndoesWhatAnInnerOneKept) {
    const QirDatabase database = pumps();
    const Content before = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    {
        const ChangeGroup outer(database);
        ChangeGroup inner(database);
        setValue(database, 1, 1, u"Inner"_s);
        inner.commit();
    }
    EXPECT_EQ(Content::of(database), before);
}

TEST_P(ContractTest, AnEmptyGroupChangesNothing) {
    const QirDatabase database = pumps();
    ChangeGroup group(database);
    group.commit();
    EXPECT_FALSE(database.DtbHasChanged());
}

} // namespace

} // namespace qir
