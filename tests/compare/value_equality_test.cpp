#include "compare/engine/ValueEquality.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <QDate>
#include <QString>

#include <cmath>
#include <limits>
#include <string>
#include <variant>

using namespace Qt::StringLiterals;
using qir::valuesEqual;

namespace {

/// Equality and its mirror image, which must agree.
bool equal(const QVariant &left, const QVariant &right) {
    const bool there = valuesEqual(left, right);
    EXPECT_EQ(there, valuesEqual(right, left));
    return there;
}

TEST(ValuesEqual, ComparesNumbersByValueWhateverTheirTypes) {
    EXPECT_TRUE(equal(5, 5));
    EXPECT_TRUE(equal(5, 5.0));
    EXPECT_FALSE(equal(5, 5.5));
    EXPECT_TRUE(equal(5, 5LL));
    EXPECT_TRUE(equal(5U, 5.0F));
    EXPECT_TRUE(equal(0.0, -0.0));
    EXPECT_FALSE(equal(1e300, 1e-300));
}

TEST(ValuesEqual, TellsLargeWholeNumbersApartThatOneDoubleStandsFor) {
    EXPECT_FALSE(equal(9007199254740993LL, 9007199254740992LL));
    EXPECT_FALSE(equal(-1, std::numeric_limits<qulonglong>::max()));
    EXPECT_TRUE(equal(std::numeric_limits<qulonglong>::max(), std::numeric_limits<qulonglong>::max()));
}

TEST(ValuesEqual, TakesTrueAsMinusOne) {
    EXPECT_TRUE(equal(true, -1));
    EXPECT_TRUE(equal(true, -1.0));
    EXPECT_FALSE(equal(true, 1));
    EXPECT_TRUE(equal(false, 0));
    EXPECT_TRUE(equal(true, true));
    EXPECT_FALSE(equal(true, false));
}

TEST(ValuesEqual, ComparesTextsByCodeUnit) {
    EXPECT_TRUE(equal(u"abc"_s, u"abc"_s));
    EXPECT_FALSE(equal(u"abc"_s, u"ABC"_s));
    EXPECT_FALSE(equal(u"abc"_s, u"abc "_s));
    EXPECT_FALSE(equal(u"\u00E9"_s, u"e\u0301"_s)); // the same to the eye
}

TEST(ValuesEqual, NeverFindsANumberEqualToAText) {
    EXPECT_FALSE(equal(5, u"5"_s));
    EXPECT_FALSE(equal(0.0, u""_s));
    EXPECT_FALSE(equal(true, u"true"_s));
}

TEST(ValuesEqual, TakesAnEmptyValueForWhatAFieldWithoutValueHolds) {
    EXPECT_TRUE(equal(QVariant(), QVariant()));
    EXPECT_TRUE(equal(QVariant(), QVariant::fromValue(nullptr)));
    EXPECT_TRUE(equal(QVariant(), 0));
    EXPECT_TRUE(equal(QVariant(), false));
    EXPECT_TRUE(equal(QVariant(), QString()));
    EXPECT_FALSE(equal(QVariant(), 1));
    EXPECT_FALSE(equal(QVariant(), u" "_s));
    EXPECT_FALSE(equal(QVariant(), QDate(2000, 1, 1)));
}

TEST(ValuesEqual, TakesAllNotANumbersForOneValue) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(equal(nan, nan));
    EXPECT_TRUE(equal(nan, std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(equal(nan, 0));
    EXPECT_FALSE(equal(std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()));
}

TEST(ValuesEqual, FindsOtherTypesEqualOnlyToThemselves) {
    EXPECT_TRUE(equal(QDate(2000, 1, 1), QDate(2000, 1, 1)));
    EXPECT_FALSE(equal(QDate(2000, 1, 1), QDate(2000, 1, 2)));
    EXPECT_FALSE(equal(QByteArray("5"), u"5"_s));
}

/// A component's values, as plain C++.
using Plain = std::variant<bool, int, double, std::u16string>;

rc::Gen<Plain> plainValues() {
    const auto small = rc::gen::inRange(-2, 3);
    return rc::gen::oneOf(rc::gen::cast<Plain>(rc::gen::arbitrary<bool>()), rc::gen::cast<Plain>(small),
                          rc::gen::map(small, [](int n) { return Plain(n / 2.0); }),
                          rc::gen::map(small, [](int n) { return Plain(QString::number(n).toStdU16String()); }),
                          rc::gen::element(Plain(u""), Plain(u"a"), Plain(u"A"), Plain(u"é")));
}

QVariant asVariant(const Plain &value) {
    return std::visit(
        [](const auto &held) -> QVariant {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::u16string>)
                return QString::fromStdU16String(held);
            else
                return QVariant::fromValue(held);
        },
        value);
}

bool naivelyEqual(const Plain &left, const Plain &right) {
    const auto *leftText = std::get_if<std::u16string>(&left);
    const auto *rightText = std::get_if<std::u16string>(&right);
    if (leftText || rightText)
        return leftText && rightText && *leftText == *rightText;
    const auto number = [](const Plain &value) {
        if (const bool *flag = std::get_if<bool>(&value))
            return *flag ? -1.0 : 0.0;
        if (const int *whole = std::get_if<int>(&value))
            return static_cast<double>(*whole);
        return std::get<double>(value);
    };
    return number(left) == number(right);
}

RC_GTEST_PROP(ValuesEqualProperty, AgreesWithTheReference, ()) {
    const Plain left = *plainValues();
    const Plain right = *plainValues();
    RC_ASSERT(valuesEqual(asVariant(left), asVariant(right)) == naivelyEqual(left, right));
}

} // namespace
