#include "platform/cells/RecordOrder.h"

#include "base/LeadingNumber.h"
#include "tests/support/Columns.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

CellColumn packed(const QStringList &texts) {
    CellColumn column;
    for (const QString &text : texts)
        column.append(text);
    return column;
}

QStringList sorted(const QStringList &texts) {
    QStringList result;
    for (const std::uint32_t index : ascendingOrder(packed(texts)))
        result.append(texts[index]);
    return result;
}

/// The rule, said once more in the plainest way.
bool comesBefore(const QString &left, const QString &right) {
    const auto kind = [](const QString &text) { return text.isEmpty() ? 0 : plainNumber(text) ? 1 : 2; };
    if (kind(left) != kind(right))
        return kind(left) < kind(right);
    if (kind(left) == 1)
        return *plainNumber(left) < *plainNumber(right);
    if (left.toUpper() != right.toUpper())
        return left.toUpper() < right.toUpper();
    return left < right;
}

} // namespace

TEST(RecordOrder, NumbersAscendByValue) {
    EXPECT_EQ(sorted({u"10"_s, u"9"_s, u"100"_s}), QStringList({u"9"_s, u"10"_s, u"100"_s}));
    EXPECT_EQ(sorted({u"1e3"_s, u"-2"_s, u"999.5"_s, u"+4"_s}), QStringList({u"-2"_s, u"+4"_s, u"999.5"_s, u"1e3"_s}));
}

TEST(RecordOrder, ValuesThatAreNoNumberStandBehindAllNumbers) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    CellColumn column;
    column.append(numberBlock(ColumnType::Double, {3, nan, 1, infinity, -nan, -infinity, 2}));
    EXPECT_EQ(ascendingOrder(column), (std::vector<std::uint32_t>{5, 2, 6, 0, 3, 1, 4}));
}

TEST(RecordOrder, EmptyTextsComeFirstThenNumbersThenOtherTexts) {
    EXPECT_EQ(sorted({u"b"_s, u"12"_s, u""_s, u"12x"_s, u"3"_s, u""_s}),
              QStringList({u""_s, u""_s, u"3"_s, u"12"_s, u"12x"_s, u"b"_s}));
}

TEST(RecordOrder, TextsThatOnlyLookLikeNumbersAreTexts) {
    EXPECT_EQ(sorted({u"2D1"_s, u"15"_s, u"1 2"_s, u" 3 "_s}), QStringList({u" 3 "_s, u"15"_s, u"1 2"_s, u"2D1"_s}));
}

TEST(RecordOrder, TextsAscendIgnoringCaseAndByCodeUnitWhereThatTies) {
    EXPECT_EQ(sorted({u"b"_s, u"a"_s, u"B"_s, u"A"_s, u"ab"_s}),
              QStringList({u"A"_s, u"a"_s, u"ab"_s, u"B"_s, u"b"_s}));
}

TEST(RecordOrder, TextsThatShareALongBeginningAreToldApart) {
    EXPECT_EQ(sorted({u"station 12 north"_s, u"Station 12 East"_s, u"station 1"_s, u"station"_s}),
              QStringList({u"station"_s, u"station 1"_s, u"Station 12 East"_s, u"station 12 north"_s}));
}

TEST(RecordOrder, ATextWithNullUnitsComesBehindItsBeginning) {
    const QString nulls(2, QChar(u'\0'));
    EXPECT_EQ(sorted({u"ab"_s + nulls, u"ab"_s}), QStringList({u"ab"_s, u"ab"_s + nulls}));
}

TEST(RecordOrder, ExpandingUpperCaseCounts) {
    // The sharp s is SS in upper case.
    EXPECT_EQ(sorted({u"MASZ"_s, u"ma\u00dfe"_s, u"masse"_s}), QStringList({u"masse"_s, u"ma\u00dfe"_s, u"MASZ"_s}));
}

TEST(RecordOrder, EqualKeysKeepTheirOrder) {
    const QStringList texts{u"7"_s, u"x"_s, u"7.0"_s, u""_s, u" 7"_s, u"x"_s, u""_s};
    EXPECT_EQ(ascendingOrder(packed(texts)), (std::vector<std::uint32_t>{3, 6, 0, 2, 4, 1, 5}));
}

TEST(RecordOrder, NothingIsSortedInAnEmptyColumn) {
    EXPECT_TRUE(ascendingOrder({}).empty());
}

RC_GTEST_PROP(RecordOrder, ValuesOfADatabaseAreOrderedAsTheirTexts, ()) {
    const auto texts = *rc::gen::container<std::vector<QString>>(
        rc::gen::element(u""_s, u"10"_s, u"9"_s, u"b"_s, u"B"_s, u"\u00e9"_s, u"-1.5e3"_s));
    const auto numbers = *rc::gen::container<std::vector<double>>(
        rc::gen::element(0.0, -0.0, 1e300, -1e300, 0.1, 255.0, 1e15, 123456.75, 20260131.0));
    for (CellColumn column : {columnOf(texts, 3, &textBlock), columnOf(numbers, 3, [](const auto &some) {
                                  return numberBlock(ColumnType::Double, some);
                              })}) {
        if (column.size() > 2 && *rc::gen::arbitrary<bool>())
            column.set(1, u"typed");
        QStringList shown;
        for (std::size_t i = 0; i < column.size(); ++i)
            shown.append(column.at(i));
        RC_ASSERT(ascendingOrder(column) == ascendingOrder(packed(shown)));
    }
}

RC_GTEST_PROP(RecordOrder, AnyColumnIsOrderedAsTheRuleSays, ()) {
    const QString letters = u"aAbBßé0123.-+eE \tXx"_s + QChar(0xD800) + QChar(0xFF41);
    const auto text =
        rc::gen::map(rc::gen::container<std::vector<int>>(rc::gen::inRange(0, static_cast<int>(letters.size()))),
                     [letters](const std::vector<int> &picks) {
                         QString result;
                         for (const int pick : picks)
                             result += letters[pick];
                         return result;
                     });
    const std::vector<QString> generated = *rc::gen::container<std::vector<QString>>(text);
    const QStringList texts(generated.begin(), generated.end());
    std::vector<std::uint32_t> expected(generated.size());
    std::iota(expected.begin(), expected.end(), 0U);
    std::stable_sort(expected.begin(), expected.end(),
                     [&](std::uint32_t left, std::uint32_t right) { return comesBefore(texts[left], texts[right]); });
    RC_ASSERT(ascendingOrder(packed(texts)) == expected);
}
