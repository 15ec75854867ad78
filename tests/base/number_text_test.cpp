#include "base/LeadingNumber.h"
#include "base/NumberText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

using namespace Qt::StringLiterals;
using qir::leadingNumber;
using qir::numberText;

namespace {

bool readsBackBitForBit(double value) {
    char text[qir::numberTextCapacity];
    const auto length = qir::formatNumber(text, value) - text;
    if (length < 1 || length > static_cast<std::ptrdiff_t>(qir::numberTextCapacity))
        return false;
    const QString read = QString::fromLatin1(text, length);
    return read == numberText(value) &&
           std::bit_cast<std::uint64_t>(leadingNumber(read)) == std::bit_cast<std::uint64_t>(value) &&
           qir::wholeNumber(read).has_value();
}

/// Digits of a number text that carry its value.
qsizetype significantDigits(const QString &text) {
    QString digits = text.section(u'e', 0, 0);
    digits.remove(u'-').remove(u'.');
    while (digits.startsWith(u'0'))
        digits.remove(0, 1);
    while (digits.endsWith(u'0'))
        digits.chop(1);
    return digits.size();
}

/// The fewest digits that printf needs for the same value.
qsizetype fewestDigits(double value) {
    for (int digits = 1; digits < 17; ++digits) {
        char text[64];
        std::snprintf(text, sizeof text, "%.*e", digits - 1, value);
        if (std::strtod(text, nullptr) == value)
            return significantDigits(QString::fromLatin1(text));
    }
    return 17;
}

TEST(NumberText, IsPlainBetweenOneHundredThousandthAndTenToTheFifteenth) {
    EXPECT_EQ(numberText(0), u"0"_s);
    EXPECT_EQ(numberText(-0.0), u"-0"_s);
    EXPECT_EQ(numberText(1), u"1"_s);
    EXPECT_EQ(numberText(-1.5), u"-1.5"_s);
    EXPECT_EQ(numberText(100000), u"100000"_s);
    EXPECT_EQ(numberText(0.25), u"0.25"_s);
    EXPECT_EQ(numberText(0.1), u"0.1"_s);
    EXPECT_EQ(numberText(0.1 + 0.2), u"0.30000000000000004"_s);
    EXPECT_EQ(numberText(1.0 / 3.0), u"0.3333333333333333"_s);
    EXPECT_EQ(numberText(1e-5), u"0.00001"_s);
    EXPECT_EQ(numberText(12345.000001), u"12345.000001"_s);
    EXPECT_EQ(numberText(999999999.999999), u"999999999.999999"_s);
    EXPECT_EQ(numberText(1e9), u"1000000000"_s);
    EXPECT_EQ(numberText(999999999999999), u"999999999999999"_s);
    EXPECT_EQ(numberText(20240131.235959), u"20240131.235959"_s);
}

TEST(NumberText, HasAnExponentOutsideThatRange) {
    EXPECT_EQ(numberText(1e15), u"1e+15"_s);
    EXPECT_EQ(numberText(1e20), u"1e+20"_s);
    EXPECT_EQ(numberText(-1.5e300), u"-1.5e+300"_s);
    EXPECT_EQ(numberText(9.999e-6), u"9.999e-06"_s);
    EXPECT_EQ(numberText(std::numeric_limits<double>::denorm_min()), u"5e-324"_s);
    EXPECT_EQ(numberText(std::numeric_limits<double>::max()), u"1.7976931348623157e+308"_s);
}

TEST(NumberText, WritesWholeNumbersAsDecimalIntegers) {
    const auto text = [](int value) {
        char out[qir::numberTextCapacity];
        return QString::fromLatin1(out, qir::formatNumber(out, value) - out);
    };
    EXPECT_EQ(text(0), u"0"_s);
    EXPECT_EQ(text(-7), u"-7"_s);
    EXPECT_EQ(text(INT_MAX), u"2147483647"_s);
    EXPECT_EQ(text(INT_MIN), u"-2147483648"_s);
}

TEST(NumberText, ReadsBackAtEveryPowerOfTenAndItsNeighbours) {
    for (int exponent = -324; exponent <= 308; ++exponent) {
        const double value = std::pow(10.0, exponent);
        for (const double near : {value, std::nextafter(value, 0.0), std::nextafter(value, HUGE_VAL)}) {
            EXPECT_TRUE(readsBackBitForBit(near)) << near;
            EXPECT_TRUE(readsBackBitForBit(-near)) << -near;
        }
    }
}

TEST(NumberText, ReadsBackBitForBitOverDoublesOfEveryMagnitude) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 200'000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (std::isfinite(value)) {
            ASSERT_TRUE(readsBackBitForBit(value)) << value;
        }
        const double everyday = static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 60)) /
                                std::pow(10.0, static_cast<double>(random() % 9));
        ASSERT_TRUE(readsBackBitForBit(everyday)) << everyday;
    }
}

RC_GTEST_PROP(NumberTextProperty, AnyFiniteDoubleReadsBackBitForBit, (std::uint64_t bits)) {
    // Generated bits are small numbers at first, so they are spread over all doubles as well.
    const std::uint64_t spread = bits * 0x9E3779B97F4A7C15U;
    for (const std::uint64_t pattern : {bits, spread}) {
        const auto value = std::bit_cast<double>(pattern);
        if (std::isfinite(value))
            RC_ASSERT(readsBackBitForBit(value));
    }
}

RC_GTEST_PROP(NumberTextProperty, AnyDecimalOfFewDigitsReadsBackAndIsTheShortest, (std::int64_t digits)) {
    const int decimals = *rc::gen::inRange(0, 12);
    const double value = static_cast<double>(digits % 10'000'000'000'000) / std::pow(10.0, decimals);
    RC_ASSERT(readsBackBitForBit(value));
    RC_ASSERT(significantDigits(numberText(value)) == (value == 0.0 ? 0 : fewestDigits(value)));
}

RC_GTEST_PROP(NumberTextProperty, NoDecimalOfFewerDigitsReadsBackTheSame, (std::uint64_t bits)) {
    const auto value = std::bit_cast<double>(bits * 0x9E3779B97F4A7C15U);
    RC_PRE(std::isfinite(value) && value != 0.0);
    RC_ASSERT(significantDigits(numberText(value)) <= fewestDigits(value));
}

} // namespace
