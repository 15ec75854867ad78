#include "compare/engine/TableComparison.h"
#include "tests/compare/CallLog.h"
#include "tests/compare/SetElements.h"
#include "tests/model/Content.h"
#include "tests/model/TableGenerators.h"
#include "tests/tools/fake/FakeControl.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace qir;
using test::Cells;
using test::PlainTable;
using test::with;

namespace {

const PlainTable pumps{"Pumps", {false, true}, {{1.0, "one"}, {2.0, "two"}, {3.0, "three"}}};

/// Two components whose only table is current.
struct Pair {
    QirDatabase left;
    QirDatabase right;

    Pair(const PlainTable &leftTable, const PlainTable &rightTable)
        : left(test::makeDatabase({leftTable}))
        , right(test::makeDatabase({rightTable})) {
        left.QIRTableRecordSource(leftTable.name);
        right.QIRTableRecordSource(rightTable.name);
    }
};

class TableComparison : public testing::Test {
protected:
    bool differ(const PlainTable &leftTable, const PlainTable &rightTable) {
        const Pair pair(leftTable, rightTable);
        const bool result = currentTablesDiffer(pair.left, pair.right);
        EXPECT_EQ(result, currentTablesDiffer(pair.right, pair.left));
        return result;
    }

    UseFake fake;
};

TEST_F(TableComparison, FindsEqualTablesEqual) {
    EXPECT_FALSE(differ(pumps, pumps));
    EXPECT_FALSE(differ({"Empty", {}, {}}, {"Empty", {}, {}}));
}

TEST_F(TableComparison, FindsTheCaseOfOneTextValue) {
    EXPECT_TRUE(differ(pumps, with(pumps, 3, 2, "Three")));
}

TEST_F(TableComparison, LeavesNamesAndTypesOfFieldsOutOfAccount) {
    const Pair pair(pumps, pumps);
    pair.right.RenameField(1, u"Another name"_s);
    pair.right.ResizeField(2, 7);
    EXPECT_FALSE(currentTablesDiffer(pair.left, pair.right));
}

TEST_F(TableComparison, NeverFindsANumberEqualToItsText) {
    EXPECT_TRUE(differ({"T", {false}, {{5.0}}}, {"T", {true}, {{"5"}}}));
    EXPECT_TRUE(differ({"T", {false}, {{0.0}}}, {"T", {true}, {{""}}}));
}

TEST_F(TableComparison, FindsTablesOfEqualSizeWithoutRecordsEqual) {
    EXPECT_FALSE(differ({"T", {false, true}, {}}, {"T", {true, false}, {}}));
}

TEST_F(TableComparison, FindsAnotherNumberOfRecordsOrFields) {
    PlainTable more = pumps;
    more.records.push_back({4.0, u"four"_s});
    EXPECT_TRUE(differ(pumps, more));
    EXPECT_TRUE(differ({"T", {false}, {}}, {"T", {false, false}, {}}));
    EXPECT_TRUE(differ({"T", {}, {{}}}, {"T", {}, {{}, {}}}));
}

TEST_F(TableComparison, ReadsNoFurtherThanTheFirstDifference) {
    const Pair pair(pumps, with(pumps, 2, 1, 7.0));
    fake->clearLog();
    EXPECT_TRUE(currentTablesDiffer(pair.left, pair.right));
    std::vector<std::string> expected{"left QirTableRecordsCount", "right QirTableRecordsCount",
                                      "left QirTableFieldsCount", "right QirTableFieldsCount"};
    for (const int values : {2, 1}) {
        expected.emplace_back("left QIRTableRecordsPointerOut");
        expected.emplace_back("right QIRTableRecordsPointerOut");
        for (int i = 0; i < values; ++i) {
            expected.emplace_back("right QIRTableRecordSetByIndex");
            expected.emplace_back("left QIRTableRecordSetByIndex");
        }
    }
    EXPECT_EQ(test::loggedCalls(FakeControl::get()), expected);
}

TEST_F(TableComparison, AsksNoValueOfTablesOfDifferentSize) {
    PlainTable more = pumps;
    more.records.push_back({4.0, u"four"_s});
    const Pair pair(pumps, more);
    fake->reset();
    EXPECT_TRUE(currentTablesDiffer(pair.left, pair.right));
    EXPECT_EQ(fake->calls(u"QIRTableRecordSetByIndex"_s), 0);
}

TEST_F(TableComparison, PositionsEachRecordOnceAndReadsEachValueOnce) {
    const Pair pair(pumps, pumps);
    BitMatrix matrix(4, 3);
    fake->reset();
    compareCurrentTables(pair.left, pair.right, 3, 2, matrix);
    EXPECT_EQ(fake->calls(u"QIRTableRecordsPointerOut"_s), 6);
    EXPECT_EQ(fake->calls(u"QIRTableRecordSetByIndex"_s), 12);
}

TEST_F(TableComparison, SetsOnlyTheBlockBeyondBothBounds) {
    const Pair pair(pumps, with(pumps, 1, 1, 9.0));
    BitMatrix matrix(5, 4);
    compareCurrentTables(pair.left, pair.right, 3, 2, matrix);
    EXPECT_EQ(test::setElements(matrix), (Cells{{1, 1}, {4, 3}}));
}

TEST_F(TableComparison, ClearsWhatIsEqualAndKeepsWhatItDoesNotLookAt) {
    const Pair pair(pumps, pumps);
    BitMatrix matrix(4, 3);
    matrix.set(1, 1, true);
    matrix.set(3, 2, true);
    matrix.set(1, 0, true);
    compareCurrentTables(pair.left, pair.right, 2, 2, matrix);
    EXPECT_EQ(test::setElements(matrix), (Cells{{1, 0}, {3, 2}}));
}

TEST_F(TableComparison, ComparesNoFurtherThanTablesAndMatrixGo) {
    const Pair pair(pumps, with(pumps, 3, 2, "x"));
    BitMatrix matrix(3, 2); // records 1..2, field 1
    compareCurrentTables(pair.left, pair.right, 100, 100, matrix);
    EXPECT_EQ(matrix.count(), 0U);
    BitMatrix nothing;
    compareCurrentTables(pair.left, pair.right, 3, 2, nothing);
    EXPECT_EQ(nothing.count(), 0U);
}

TEST_F(TableComparison, SetsAndClearsSomeCellsAsFarAsBothTablesHaveThem) {
    const Pair pair(pumps, with(with(pumps, 2, 1, 9.0), 3, 2, "other"));
    BitMatrix matrix(6, 4);
    matrix.set(2, 2, true); // equal
    matrix.set(1, 1, true); // equal, and not asked for
    compareCurrentCells(pair.left, pair.right, {2, 1, 5, 3}, matrix);
    EXPECT_EQ(test::setElements(matrix), (Cells{{1, 1}, {2, 1}, {3, 2}}));
}

TEST_F(TableComparison, TellsEachFinishedRecord) {
    const Pair pair(pumps, pumps);
    std::vector<int> records;
    BitMatrix matrix(4, 3);
    compareCurrentTables(pair.left, pair.right, 3, 2, matrix, [&](int record) { records.push_back(record); });
    EXPECT_EQ(records, (std::vector<int>{1, 2, 3}));
}

TEST_F(TableComparison, EndsWithWhatAStepThrows) {
    const Pair pair(pumps, pumps);
    const auto stop = [](int record) {
        if (record == 2)
            throw std::runtime_error("enough");
    };
    EXPECT_THROW(currentTablesDiffer(pair.left, pair.right, stop), std::runtime_error);
    EXPECT_THROW(differingCells(pair.left, pair.right, stop), std::runtime_error);
}

TEST_F(TableComparison, PassesOnAnErrorOfAComponent) {
    const Pair pair(pumps, pumps);
    fake->failOn(u"QIRTableRecordSetByIndex"_s, u"broken"_s, 3);
    EXPECT_THROW(currentTablesDiffer(pair.left, pair.right), std::exception);
}

TEST_F(TableComparison, MarksWholeRecordsAndFieldsOfOneSide) {
    PlainTable more = pumps;
    more.records.push_back({4.0, u"four"_s});
    PlainTable wider = pumps;
    wider.addField(true);
    for (QVariantList &values : wider.records)
        values.back() = u"x"_s;
    const Pair pair(more, wider);
    const BitMatrix cells = differingCells(pair.left, pair.right);
    EXPECT_EQ(cells.rows(), 5U);
    EXPECT_EQ(cells.columns(), 4U);
    EXPECT_EQ(test::setElements(cells), (Cells{{1, 3}, {2, 3}, {3, 3}, {4, 1}, {4, 2}, {4, 3}}));
}

TEST_F(TableComparison, KeepsWideTablesApartByWord) {
    PlainTable wide{"Wide", std::vector<bool>(130, false), {std::vector<test::PlainValue>(130, 0.0)}};
    PlainTable other = wide;
    for (const int field : {1, 63, 64, 65, 128, 130})
        other = with(other, 1, field, 1.0);
    const Pair pair(wide, other);
    EXPECT_EQ(test::setElements(differingCells(pair.left, pair.right)),
              (Cells{{1, 1}, {1, 63}, {1, 64}, {1, 65}, {1, 128}, {1, 130}}));
}

RC_GTEST_FIXTURE_PROP(TableComparison, AgreesWithTheReferenceForAnyTwoTables, ()) {
    const PlainTable left = *test::plainTables("T");
    const PlainTable right = *rc::gen::oneOf(test::changedTables(left), test::plainTables("T"));
    const Pair pair(left, right);
    RC_ASSERT(currentTablesDiffer(pair.left, pair.right) == test::differ(left, right));
    RC_ASSERT(test::setElements(differingCells(pair.left, pair.right)) == test::differences(left, right));
}

} // namespace
