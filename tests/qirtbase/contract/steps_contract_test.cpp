#include "tests/qirtbase/contract/ContractTest.h"

#include <string_view>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// A step of one written cell.
void writeInStep(const QirDatabase &database, const QString &name, const QString &text, const QString &key = {}) {
    const ChangeStep step(database, name, key);
    database.setQIRTableRecordsPointerOut(1);
    database.setQIRTableRecordSetByIndex(1, text);
}

class StepsContract : public ContractTest {
protected:
    StepsContract() {
        save(database);
        database.QIRTableRecordSource(u"Pumps"_s);
        if (!database.hasSteps())
            ADD_FAILURE() << "it has no steps";
        before = database.StepsCount(); // those that made the tables
    }

    QString first() { return text(database, 1, 1); }
    int made() { return database.StepsCount() - before; }

    const QirDatabase database = pumps();
    int before = 0;
};

TEST_P(StepsContract, AStepIsUndoneAndMadeAgainWhole) {
    const Content loaded = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    {
        const ChangeStep step(database, u"Everything"_s);
        setValue(database, 2, 1, u"Changed"_s);
        database.AddRecord();
        database.RemoveRecord(1);
        database.AddField(u"New"_s, 10, 5);
        database.RemoveField(2);
        database.ResizeField(1, 2);
        database.AddTable(u"Valves"_s);
        database.RenameTable(1, u"Machines"_s);
    }
    const Content changed = Content::of(database);
    EXPECT_EQ(made(), 1);
    database.Undo();
    EXPECT_EQ(Content::of(database), loaded);
    database.Redo();
    EXPECT_EQ(Content::of(database), changed);
}

TEST_P(StepsContract, StepsHaveNamesAndTimes) {
    writeInStep(database, u"One"_s, u"1"_s);
    writeInStep(database, u"Two"_s, u"2"_s);
    EXPECT_EQ(database.UndoName(), u"Two"_s);
    EXPECT_EQ(database.RedoName(), QString());
    database.Undo();
    EXPECT_EQ(database.UndoName(), u"One"_s);
    EXPECT_EQ(database.RedoName(), u"Two"_s);
    EXPECT_EQ(database.StepName(before + 1), u"One"_s);
    EXPECT_EQ(database.StepName(before + 2), u"Two"_s);
    EXPECT_GE(database.StepTime(before + 2), database.StepTime(before + 1));
    EXPECT_GT(database.StepTime(before + 1), 1.6e12);
    EXPECT_EQ(database.StepsDone(), before + 1);
    EXPECT_FALSE(database.StepsDropped());
    EXPECT_THROW((void)database.StepName(0), std::exception);
    EXPECT_THROW((void)database.StepTime(before + 3), std::exception);
}

TEST_P(StepsContract, StepsOfOneKeyAreOne) {
    writeInStep(database, u"Edit"_s, u"a"_s, u"1"_s);
    writeInStep(database, u"Edit"_s, u"ab"_s, u"1"_s);
    EXPECT_EQ(made(), 1);
    writeInStep(database, u"Edit"_s, u"b"_s, u"2"_s);
    writeInStep(database, u"Edit"_s, u"c"_s, QString());
    writeInStep(database, u"Edit"_s, u"d"_s, QString());
    EXPECT_EQ(made(), 4);
    database.GoToStep(before + 1);
    EXPECT_EQ(first(), u"ab"_s);
    database.Undo();
    EXPECT_EQ(first(), u"P-1"_s);
}

TEST_P(StepsContract, NoStepJoinsOneAcrossASaveOrAnUndo) {
    writeInStep(database, u"Edit"_s, u"a"_s, u"1"_s);
    database.SaveDtb();
    database.setDtbHasChanged(false);
    writeInStep(database, u"Edit"_s, u"ab"_s, u"1"_s);
    EXPECT_EQ(made(), 2);
    database.Undo();
    EXPECT_FALSE(database.DtbHasChanged());
    writeInStep(database, u"Edit"_s, u"b"_s, u"1"_s);
    EXPECT_EQ(made(), 2);
    database.Undo();
    EXPECT_EQ(first(), u"a"_s);
}

TEST_P(StepsContract, ANewStepDropsTheUndoneOnes) {
    writeInStep(database, u"One"_s, u"1"_s);
    writeInStep(database, u"Two"_s, u"2"_s);
    database.GoToStep(before);
    writeInStep(database, u"Three"_s, u"3"_s);
    EXPECT_EQ(made(), 1);
    EXPECT_EQ(database.UndoName(), u"Three"_s);
    EXPECT_EQ(database.RedoName(), QString());
    EXPECT_THROW(database.Redo(), std::exception);
}

TEST_P(StepsContract, ChangesOutsideStepsAreStepsOfTheirOwn) {
    setValue(database, 1, 1, u"x"_s);
    ChangeGroup group(database);
    setValue(database, 1, 1, u"y"_s);
    setValue(database, 2, 1, u"y"_s);
    group.commit();
    EXPECT_EQ(made(), 2);
    EXPECT_NE(database.UndoName(), QString());
    database.Undo();
    EXPECT_EQ(first(), u"x"_s);
    EXPECT_EQ(text(database, 2, 1), u"P-2"_s);
}

TEST_P(StepsContract, WhatChangesNothingIsNoStep) {
    writeInStep(database, u"Same"_s, u"P-1"_s);
    {
        const ChangeStep step(database, u"Undone"_s);
        const ChangeGroup group(database);
        setValue(database, 1, 1, u"x"_s);
    }
    EXPECT_EQ(made(), 0);
    EXPECT_EQ(first(), u"P-1"_s);
}

TEST_P(StepsContract, AStepKeepsWhatWasWrittenBeforeAnError) {
    {
        const ChangeStep step(database, u"Cut short"_s);
        setValue(database, 1, 1, u"kept"_s);
        EXPECT_THROW(database.RemoveRecord(99), std::exception);
    }
    EXPECT_EQ(first(), u"kept"_s);
    EXPECT_EQ(database.UndoName(), u"Cut short"_s);
}

TEST_P(StepsContract, TheFlagIsFalseInTheSavedStateAlone) {
    writeInStep(database, u"One"_s, u"1"_s);
    EXPECT_TRUE(database.DtbHasChanged());
    database.Undo();
    EXPECT_FALSE(database.DtbHasChanged());
    database.Redo();
    EXPECT_TRUE(database.DtbHasChanged());
    database.SaveDtb();
    database.setDtbHasChanged(false);
    database.Undo();
    EXPECT_TRUE(database.DtbHasChanged());
    EXPECT_EQ(first(), u"P-1"_s);
    database.Redo();
    EXPECT_FALSE(database.DtbHasChanged());
}

TEST_P(StepsContract, NothingIsTakenBackWithinAGroupOrStepOrWhereThereIsNothing) {
    database.GoToStep(0);
    EXPECT_EQ(database.UndoName(), QString());
    EXPECT_THROW(database.Undo(), std::exception);
    database.GoToStep(database.StepsCount());
    EXPECT_THROW(database.Redo(), std::exception);
    EXPECT_THROW(database.GoToStep(database.StepsCount() + 1), std::exception);
    EXPECT_THROW(database.GoToStep(-1), std::exception);
    EXPECT_THROW(database.EndStep(), std::exception);
    database.BeginStep(u"Open"_s, QString());
    EXPECT_THROW(database.Undo(), std::exception);
    database.EndStep();
    const ChangeGroup group(database);
    EXPECT_THROW(database.Undo(), std::exception);
    EXPECT_THROW(database.RevertToSaved(u"Revert"_s), std::exception);
}

TEST_P(StepsContract, TheCurrentTableStaysAndNoRecordIsCurrent) {
    writeInStep(database, u"One"_s, u"1"_s);
    database.AddTable(u"Valves"_s);
    database.Undo();
    EXPECT_EQ(database.QirTableFieldsCount(), 3);
    EXPECT_EQ(database.QIRTableRecordsPointerOut(), 0);
    database.Redo();
    database.QIRTableRecordSource(u"Valves"_s);
    database.Undo();
    EXPECT_EQ(database.QirTableFieldsCount(), 0) << "it has gone";
}

TEST_P(StepsContract, TheTableOfTheLastChangeIsTold) {
    writeInStep(database, u"One"_s, u"1"_s);
    database.Undo();
    EXPECT_EQ(database.ChangedTable(), u"Pumps"_s);
    EXPECT_EQ(database.ChangedTables(), 1);
}

TEST_P(StepsContract, TheTablesOfSeveralStepsAreCountedOnce) {
    const int first = database.StepsDone();
    database.AddTable(u"Valves"_s);
    database.AddTable(u"Motors"_s);
    const int added = database.StepsDone();
    database.QIRTableRecordSource(u"Pumps"_s);
    writeInStep(database, u"One"_s, u"1"_s);
    writeInStep(database, u"Two"_s, u"2"_s);
    database.GoToStep(added);
    EXPECT_EQ(database.ChangedTable(), u"Pumps"_s);
    EXPECT_EQ(database.ChangedTables(), 1);
    database.GoToStep(added + 2);
    EXPECT_EQ(database.ChangedTables(), 1);
    database.GoToStep(added - 1);
    EXPECT_EQ(database.ChangedTables(), 2);
    database.GoToStep(first);
}

TEST_P(StepsContract, GoingToTheStepThatIsDoneChangesNothing) {
    writeInStep(database, u"One"_s, u"1"_s);
    database.Undo();
    database.GoToStep(database.StepsDone());
    EXPECT_EQ(database.ChangedTable(), QString());
    EXPECT_EQ(database.ChangedRecord(), 0);
    EXPECT_EQ(database.ChangedField(), 0);
    EXPECT_EQ(database.ChangedTables(), 0);
}

TEST_P(StepsContract, RevertingIsAStepToo) {
    const Content saved = Content::of(database);
    database.QIRTableRecordSource(u"Pumps"_s);
    writeInStep(database, u"One"_s, u"1"_s);
    database.AddTable(u"Valves"_s);
    const Content changed = Content::of(database);
    database.RevertToSaved(u"Revert"_s);
    EXPECT_EQ(Content::of(database), saved);
    EXPECT_FALSE(database.DtbHasChanged());
    EXPECT_EQ(database.UndoName(), u"Revert"_s);
    database.Undo();
    EXPECT_EQ(Content::of(database), changed);
    EXPECT_TRUE(database.DtbHasChanged());
    database.GoToStep(before);
    EXPECT_EQ(Content::of(database), saved);
}

/// The fake has steps or columns, not both.
std::vector<ContractComponent> componentsWithSteps() {
    std::vector<ContractComponent> components = contractComponents();
    std::erase_if(components, [](const ContractComponent &component) {
        return component.columns && std::string_view(component.name).starts_with("Fake");
    });
    return components;
}

INSTANTIATE_TEST_SUITE_P(Component, StepsContract, testing::ValuesIn(componentsWithSteps()), contractTitle);

} // namespace

} // namespace qir
