#include "base/columns/ColumnBlock.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/Database.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

constexpr int longCode = 4;

/// A table of a text and a number field and 1,000 records, saved: nothing can be undone.
class Steps : public testing::Test {
protected:
    Steps() {
        database.addTable(u"T"_s);
        database.addField(table(), u"Number"_s, longCode, 0);
        for (int record = 1; record < 1000; ++record)
            database.addRecord(table());
        database.keepSteps(History::noBudget);
    }
    Table &table() { return database.table(0); }
    const History &history() { return database.history(); }
    void rewrite(double number) {
        database.beginStep(u"Rewriting"_s, {});
        for (std::size_t record = 0; record < table().recordCount(); ++record)
            database.setNumber(table(), 1, record, number);
        database.endGroup();
    }
    double number(std::size_t record) { return std::get<double>(table().field(1).column.value(record)); }

    Database database;
};

TEST_F(Steps, NothingIsKeptBeforeItIsAskedFor) {
    EXPECT_EQ(history().count(), 0U);
    EXPECT_EQ(history().bytes(), 0U);
}

TEST_F(Steps, KeystrokesInOneCellHoldNoMoreThanOne) {
    database.beginStep(u"Edit"_s, u"1"_s);
    database.setText(table(), 0, 0, u"a"_s);
    database.endGroup();
    const std::size_t one = history().bytes();
    for (int key = 0; key < 100; ++key) {
        database.beginStep(u"Edit"_s, u"1"_s);
        database.setText(table(), 0, 0, QString(key, u'x'));
        database.endGroup();
    }
    EXPECT_EQ(history().count(), 1U);
    EXPECT_EQ(history().bytes(), one);
    database.undoStep();
    EXPECT_EQ(std::get<QString>(table().field(0).column.value(0)), QString());
}

TEST_F(Steps, StatesHaveTheirNumbersAgain) {
    const std::uint64_t first = history().state();
    rewrite(1);
    const std::uint64_t second = history().state();
    EXPECT_NE(second, first);
    database.undoStep();
    EXPECT_EQ(history().state(), first);
    database.redoStep();
    EXPECT_EQ(history().state(), second);
    database.undoStep();
    rewrite(1);
    EXPECT_NE(history().state(), second) << "another way there is another state";
}

TEST_F(Steps, TheOldestGoWhereTheBudgetIsUsedUp) {
    rewrite(1);
    database.keepSteps(history().bytes() * 4);
    for (int step = 2; step <= 20; ++step)
        rewrite(step);
    EXPECT_TRUE(history().hasDropped());
    EXPECT_GE(history().count(), 2U);
    EXPECT_LE(history().count(), 4U);
    const auto kept = static_cast<double>(history().count());
    while (history().done() > 0)
        database.undoStep();
    EXPECT_EQ(number(5), 20 - kept);
    while (history().done() < history().count())
        database.redoStep();
    EXPECT_EQ(number(5), 20);
}

TEST_F(Steps, TheLastOneStaysHoweverLarge) {
    database.keepSteps(0);
    rewrite(1);
    rewrite(2);
    EXPECT_EQ(history().count(), 1U);
    database.undoStep();
    EXPECT_EQ(number(5), 1);
}

TEST_F(Steps, AStepThatFilledAWholeTableHoldsItOnce) {
    rewrite(1);
    const std::size_t entries = history().step(0).entries.size();
    EXPECT_LT(entries, table().recordCount()) << "an image takes the place of most cells";
    EXPECT_LT(history().bytes(), table().memory() * 2 + 16384);
}

TEST_F(Steps, AStepOfManySmallGroupsHoldsATableOnceToo) {
    database.beginStep(u"Rewriting"_s, {});
    for (std::size_t record = 0; record < table().recordCount(); ++record) {
        database.beginGroup();
        database.setNumber(table(), 1, record, 1);
        database.setText(table(), 0, record, u"text"_s);
        database.endGroup();
    }
    database.endGroup();
    EXPECT_LT(history().bytes(), table().memory() * 3 + 16384);
    database.undoStep();
    EXPECT_EQ(number(5), 0);
    EXPECT_EQ(number(999), 0);
    EXPECT_EQ(std::get<QString>(table().field(0).column.value(999)), QString());
    database.redoStep();
    EXPECT_EQ(number(999), 1);
}

TEST_F(Steps, WhatAnUndoneGroupHeldCoversNothingAfterIt) {
    database.beginStep(u"Step"_s, {});
    database.beginGroup();
    for (std::size_t record = 0; record < table().recordCount(); ++record)
        database.setNumber(table(), 1, record, 1);
    database.undoGroup();
    database.setNumber(table(), 1, 7, 2);
    database.endGroup();
    database.undoStep();
    EXPECT_EQ(number(7), 0);
}

TEST_F(Steps, AThousandEditsHoldLessThanHalfAMegabyte) {
    for (std::size_t edit = 0; edit < 1000; ++edit) {
        database.beginStep(u"Edit of T.Field1"_s, QString::number(edit));
        database.setText(table(), 0, edit, u"typed"_s);
        database.endGroup();
    }
    EXPECT_EQ(history().count(), 1000U);
    RecordProperty("bytes", static_cast<int>(history().bytes()));
    EXPECT_LT(history().bytes(), 512U * 1024);
}

TEST_F(Steps, ManyRemovalsHoldNoMoreThanTheTable) {
    const QByteArray before = encodeBody(database);
    database.beginStep(u"Removing"_s, {});
    while (table().recordCount() > 1)
        database.removeRecord(table(), table().recordCount() / 2);
    database.endGroup();
    const std::size_t whole = static_cast<std::size_t>(before.size()) * 3; // two columns of 12 bytes a record
    EXPECT_LT(history().bytes(), whole);
    database.undoStep();
    EXPECT_EQ(encodeBody(database), before);
    database.redoStep();
    EXPECT_EQ(table().recordCount(), 1U);
}

TEST_F(Steps, ThePlaceOfAChangeIsTold) {
    rewrite(1);
    database.setNumber(table(), 1, 7, 3);
    std::optional<StepPlace> place = database.undoStep();
    ASSERT_TRUE(place);
    EXPECT_EQ(place->table, 0U);
    EXPECT_EQ(place->record, 7U);
    EXPECT_EQ(place->field, 1U);
    database.removeRecord(table(), 3);
    place = database.undoStep();
    EXPECT_EQ(place->record, 3U);
    EXPECT_FALSE(place->field);
    place = database.redoStep();
    EXPECT_FALSE(place->record) << "it is gone";
    database.addTable(u"U"_s);
    EXPECT_FALSE(database.undoStep()) << "it is gone";
    EXPECT_EQ(database.redoStep()->table, 1U);
}

TEST_F(Steps, RecordsDroppedByASaveComeBackWithTheirFields) {
    const QByteArray before = encodeBody(database);
    database.beginStep(u"Bare"_s, {});
    database.removeField(table(), 1);
    database.removeField(table(), 0);
    database.endGroup();
    database.dropRecordsWithoutFields();
    EXPECT_EQ(table().recordCount(), 0U);
    EXPECT_EQ(history().count(), 1U);
    database.undoStep();
    EXPECT_EQ(encodeBody(database), before);
    database.redoStep();
    EXPECT_EQ(table().recordCount(), 0U);
}

TEST(TextColumn, CutToNothingIsStillAColumn) {
    Database database;
    database.addTable(u"T"_s);
    Table &table = database.table(0);
    database.addRecord(table);
    for (const std::size_t record : {0U, 1U})
        database.setText(table, 0, record, u"text"_s);
    database.resizeField(table, 0, 0);
    EXPECT_TRUE(ColumnBlock::fromVariant(table.field(0).column.block(0, 2).toVariant()));
}

} // namespace
