#include "compare/engine/KeyedComparison.h"
#include "tests/compare/PlainSource.h"
#include "tests/model/Content.h"
#include "tests/tools/fake/FakeControl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace qir;
using test::PlainSource;
using test::SourceTable;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const SourceTable pumps{{{u"Name"_s, FieldType::Text}, {u"Speed"_s, FieldType::Long}, {u"Flow"_s, FieldType::Double}},
                        {{u"P-1"_s, 1500.0, 0.5}, {u"P-2"_s, 7.0, 1.0}, {u"P-3"_s, 7.0, 2.0}}};

class KeyedComparison : public testing::Test {
protected:
    static KeyedDifference compare(const SourceTable &leftTable, const SourceTable &rightTable,
                                   const KeyedRules &rules) {
        PlainSource left(leftTable);
        PlainSource right(rightTable);
        const auto fields = matchFields(left, right, rules);
        EXPECT_TRUE(fields.has_value());
        return compareByKey(left, right, fields.value_or(KeyedFields{}), rules.tolerance);
    }
    static std::optional<QString> proposed(const SourceTable &leftTable, const SourceTable &rightTable) {
        PlainSource left(leftTable);
        PlainSource right(rightTable);
        return proposedKey(left, right, {});
    }
    const KeyedRules byName{{u"NAME"_s}, {}, {}};
};

TEST_F(KeyedComparison, OneInsertedRecordIsOneAddedRecord) {
    SourceTable more = pumps;
    more.rows.insert(more.rows.begin(), {u"P-0"_s, 1.0, 1.0});
    const KeyedDifference difference = compare(pumps, more, byName);
    EXPECT_TRUE(difference.different());
    EXPECT_THAT(difference.added, ElementsAre(1));
    EXPECT_THAT(difference.removed, IsEmpty());
    EXPECT_THAT(difference.changed, IsEmpty());
    EXPECT_THAT(difference.moved, IsEmpty());
    EXPECT_EQ(difference.cellCount(), 3U);
    EXPECT_THAT(difference.partners, ElementsAre(2, 3, 4));
}

TEST_F(KeyedComparison, OneRecordTakenToTheEndIsOneThatMoved) {
    SourceTable other = pumps;
    std::rotate(other.rows.begin(), other.rows.begin() + 1, other.rows.end());
    const KeyedDifference difference = compare(pumps, other, byName);
    EXPECT_FALSE(difference.different());
    EXPECT_THAT(difference.moved, ElementsAre(PairedRecords{1, 3}));
}

TEST_F(KeyedComparison, AFieldThatMovedIsNoDifference) {
    SourceTable other = pumps;
    std::rotate(other.fields.begin(), other.fields.begin() + 1, other.fields.end());
    for (QVariantList &row : other.rows)
        std::rotate(row.begin(), row.begin() + 1, row.end());
    EXPECT_FALSE(compare(pumps, other, byName).different());
}

TEST_F(KeyedComparison, AFieldOfOneSideIsADifferenceOfTheTable) {
    SourceTable other = pumps;
    other.fields.push_back({u"New"_s, FieldType::Bool});
    for (QVariantList &row : other.rows)
        row.append(0.0);
    const KeyedDifference difference = compare(pumps, other, byName);
    EXPECT_TRUE(difference.different());
    EXPECT_THAT(difference.fields.onlyRight, ElementsAre(4));
    EXPECT_EQ(difference.cellCount(), 0U);
    EXPECT_FALSE(compare(pumps, other, {{u"Name"_s}, {u"new"_s}, {}}).different());
}

TEST_F(KeyedComparison, TellsADoubleKeyWithItsFirstDouble) {
    const KeyedDifference difference = compare(pumps, pumps, {{u"Speed"_s}, {}, {}});
    EXPECT_FALSE(difference.different());
    EXPECT_THAT(difference.duplicates,
                ElementsAre(DuplicateKey{TableSide::Left, 2, 3, 2}, DuplicateKey{TableSide::Right, 2, 3, 2}));
}

TEST_F(KeyedComparison, ToleranceTakesItsBoundInAndLeavesDatesAlone) {
    const auto one = [](FieldType type, double value) {
        return SourceTable{{{u"Name"_s, FieldType::Text}, {u"V"_s, type}}, {{u"x"_s, value}}};
    };
    const KeyedRules rules{{u"Name"_s}, {}, {0.1, false, false}};
    EXPECT_FALSE(compare(one(FieldType::Double, 1), one(FieldType::Double, 1.1), rules).different());
    EXPECT_TRUE(compare(one(FieldType::Double, 1), one(FieldType::Double, 1.11), rules).different());
    EXPECT_TRUE(compare(one(FieldType::Date, 20240101), one(FieldType::Date, 20240101.1), rules).different());
}

TEST_F(KeyedComparison, NeedsEachFieldOfTheKeyOnBothSides) {
    PlainSource left(pumps);
    PlainSource right(SourceTable{{{u"Name"_s, FieldType::Text}}, {}});
    EXPECT_FALSE(matchFields(left, right, {{u"Speed"_s}, {}, {}}).has_value());
    EXPECT_FALSE(matchFields(left, right, {{}, {}, {}}).has_value());
    EXPECT_TRUE(matchFields(left, right, {{u"name"_s}, {}, {}}).has_value());
}

TEST_F(KeyedComparison, ProposesTheFirstFieldThatIsUniqueOnBothSides) {
    EXPECT_EQ(proposed(pumps, pumps), u"Name"_s);
    SourceTable doubled = pumps;
    doubled.rows[1][0] = u"P-1"_s;
    EXPECT_EQ(proposed(pumps, doubled), u"Flow"_s);
    EXPECT_EQ(proposed(doubled, pumps), u"Flow"_s);
    doubled.rows[1][2] = 0.5;
    EXPECT_EQ(proposed(doubled, pumps), std::nullopt);
    SourceTable renamed = pumps;
    renamed.fields[0].name = u"Title"_s;
    EXPECT_EQ(proposed(pumps, renamed), u"Flow"_s);
}

TEST_F(KeyedComparison, EndsWithWhatAStepThrows) {
    SourceTable many{{{u"N"_s, FieldType::Long}}, {}};
    for (int i = 0; i < 5000; ++i)
        many.rows.push_back({static_cast<double>(i)});
    PlainSource left(many);
    PlainSource right(many);
    const KeyedFields fields = matchFields(left, right, {{u"N"_s}, {}, {}}).value();
    int steps = 0;
    compareByKey(left, right, fields, {}, [&] { ++steps; });
    EXPECT_GE(steps, 3 * 4); // both sides and the comparison
    const auto stop = [] { throw std::runtime_error("enough"); };
    EXPECT_THROW(compareByKey(left, right, fields, {}, stop), std::runtime_error);
    EXPECT_THROW(proposedKey(left, right, {}, stop), std::runtime_error);
}

TEST_F(KeyedComparison, TheFewestNumbersOutOfOrderAreLeftOut) {
    EXPECT_THAT(fewestOutOfOrder({}), IsEmpty());
    EXPECT_THAT(fewestOutOfOrder({1, 2, 3}), IsEmpty());
    EXPECT_THAT(fewestOutOfOrder({2, 3, 1}), ElementsAre(2));
    EXPECT_THAT(fewestOutOfOrder({9, 1, 2, 3}), ElementsAre(0));
    EXPECT_EQ(fewestOutOfOrder({3, 2, 1}).size(), 2U);
}

class CurrentTableTest : public testing::Test {
protected:
    UseFake fake;
};

TEST_F(CurrentTableTest, ReadsEachValueOnceAndGoesToEachRecordOnce) {
    const QirDatabase database =
        test::makeDatabase({test::PlainTable{"T", {false, true}, {{1.0, "one"}, {2.0, "two"}}}});
    database.QIRTableRecordSource(u"T"_s);
    CurrentTable table(database);
    fake->reset();
    EXPECT_EQ(valueOf(table.cell(1, 1)), QVariant(1.0));
    EXPECT_EQ(valueOf(table.cell(1, 2)), QVariant(u"one"_s));
    EXPECT_EQ(valueOf(table.cell(2, 2)), QVariant(u"two"_s));
    EXPECT_EQ(fake->calls(u"QIRTableRecordsPointerOut"_s), 2);
    EXPECT_EQ(fake->calls(u"QIRTableRecordSetByIndex"_s), 3);
    EXPECT_EQ(table.fieldType(1), FieldType::Double);
    EXPECT_EQ(table.fieldType(2), FieldType::Text);
}

} // namespace
