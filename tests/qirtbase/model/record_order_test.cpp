#include "base/columns/BlockOrder.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/Database.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

constexpr std::array codes{1, 2, 3, 4, 7, 8, 10};

/// A table with a field of each type and records of random values, with texts of every length and more than one chunk.
class RecordOrderTest : public testing::Test {
protected:
    RecordOrderTest() {
        database.addTable(u"T"_s);
        for (const int code : codes)
            database.addField(table(), u"F%1"_s.arg(code), code, 12);
        database.addRecords(table(), records - 1);
        for (std::size_t record = 0; record < records; ++record) {
            for (std::size_t field = 1; field < table().fieldCount(); ++field)
                database.setNumber(table(), field, record, static_cast<int>(random() % 1000) - 300);
            database.setText(table(), 0, record, QString(static_cast<qsizetype>(random() % 5), u'\u00E4'));
        }
        database.keepSteps(History::noBudget);
        before = encodeBody(database);
    }
    Table &table() { return database.table(0); }
    QByteArray body() const { return encodeBody(database); }
    RecordOrder someOrder() {
        RecordOrder order(records);
        std::iota(order.begin(), order.end(), 0U);
        std::ranges::shuffle(order, random);
        return order;
    }
    /// Writes the columns in this order, as a sort does; the group stays open.
    void write(const RecordOrder &order) {
        for (std::size_t field = 0; field < table().fieldCount(); ++field) {
            std::vector<ColumnBlock> blocks;
            const Column &column = table().field(field).column;
            for (std::size_t at = 0; at < records; at += static_cast<std::size_t>(blocks.back().count()))
                blocks.push_back(column.block(at, records - at));
            std::size_t first = 0;
            for (const ColumnBlock &block : reordered(blocks, order)) {
                database.setBlock(table(), field, first, block);
                first += static_cast<std::size_t>(block.count());
            }
        }
    }
    void sort(const RecordOrder &order) {
        database.beginStep(u"Sort"_s, {});
        database.beginGroup();
        write(order);
        database.endGroup();
        database.recordsReordered(table(), order);
        database.endGroup();
    }

    static constexpr std::size_t records = 70'000;
    std::mt19937 random{5};
    Database database;
    QByteArray before;
};

TEST_F(RecordOrderTest, ASortKeepsItsOrderAlone) {
    sort(someOrder());
    EXPECT_LT(database.history().bytes(), records * sizeof(std::uint32_t) + 1000);
    EXPECT_GT(table().memory(), 4 * database.history().bytes()); // which the values would have taken
}

TEST_F(RecordOrderTest, UndoAndRedoOfSortsAreExact) {
    std::vector<QByteArray> bodies{before};
    for (int time = 0; time < 3; ++time) {
        sort(someOrder());
        bodies.push_back(body());
    }
    for (int round = 0; round < 2; ++round) {
        for (std::size_t state = 3; state-- > 0;) {
            database.undoStep();
            ASSERT_TRUE(body() == bodies[state]) << state;
        }
        for (std::size_t state = 1; state <= 3; ++state) {
            database.redoStep();
            ASSERT_TRUE(body() == bodies[state]) << state;
        }
    }
}

TEST_F(RecordOrderTest, WhatFollowsInTheSameStepIsTakenBackToo) {
    const RecordOrder order = someOrder();
    database.beginStep(u"Sort and more"_s, {});
    database.beginGroup();
    write(order);
    database.endGroup();
    database.recordsReordered(table(), order);
    database.setNumber(table(), 4, 5, 12345);
    database.addRecord(table());
    database.renameField(table(), 1, u"Renamed"_s);
    database.endGroup();
    const QByteArray after = body();
    database.undoStep();
    EXPECT_TRUE(body() == before);
    database.redoStep();
    EXPECT_TRUE(body() == after);
}

TEST_F(RecordOrderTest, AnOrderThatIsNotTrueIsNotTaken) {
    const RecordOrder order = someOrder();
    RecordOrder wrong = order;
    std::swap(wrong[3], wrong[60'000]);
    const auto tellWrong = [&](const auto &more) {
        database.beginStep(u"Sort"_s, {});
        write(order);
        more();
        database.recordsReordered(table(), wrong);
        database.endGroup();
        EXPECT_GT(database.history().bytes(), records * sizeof(std::uint32_t) + 1000);
        database.undoStep();
        EXPECT_TRUE(body() == before);
    };
    tellWrong([] {});
    wrong = order;
    tellWrong([&] { database.setNumber(table(), 4, 5, 12345); });
    tellWrong([&] { database.addRecord(table()); });
    tellWrong([&] { database.resizeField(table(), 0, 3); });
}

TEST_F(RecordOrderTest, AGroupThatIsUndoneBringsBackWhatWas) {
    const RecordOrder order = someOrder();
    database.beginStep(u"Sort"_s, {});
    write(order);
    database.recordsReordered(table(), order);
    database.setNumber(table(), 4, 5, 12345);
    database.undoGroup();
    EXPECT_TRUE(body() == before);
    EXPECT_EQ(database.history().count(), 0U);
}

TEST(RecordOrderNumbersTest, OnlyEachRecordOnceIsAnOrder) {
    EXPECT_TRUE(isPermutation(RecordOrder{2, 0, 1}, 3));
    EXPECT_FALSE(isPermutation(RecordOrder{2, 0, 2}, 3));
    EXPECT_FALSE(isPermutation(RecordOrder{3, 0, 1}, 3));
    EXPECT_FALSE(isPermutation(RecordOrder{0, 1}, 3));
    EXPECT_TRUE(isPermutation(RecordOrder{}, 0));
    EXPECT_EQ(inverse(RecordOrder{2, 0, 1}), (RecordOrder{1, 2, 0}));
}

} // namespace
