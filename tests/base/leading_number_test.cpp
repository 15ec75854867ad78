#include "base/LeadingNumber.h"

#include <QString>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using qir::leadingNumber;
using qir::passesRange;
using qir::plainNumber;
using qir::wholeNumber;

namespace {

constexpr double largest = std::numeric_limits<double>::max();

struct Reading {
    const char16_t *text;
    double value;
};

TEST(LeadingNumber, TellsWhatNoDoubleReaches) {
    for (const char16_t *text :
         {u"1e309", u"-1e999", u"1.7976931348623159e308", u"1 0e 999x", u"1d99999999999999999999"})
        EXPECT_TRUE(passesRange(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    for (const char16_t *text :
         {u"1.7976931348623158e308", u"-1.7976931348623157e308", u"1e-999", u"0e999", u"0", u"", u"e999", u"inf"})
        EXPECT_FALSE(passesRange(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    EXPECT_TRUE(passesRange(QString(400, u'9')));
}

TEST(LeadingNumber, ReadsWhatTheTextBeginsWith) {
    const std::vector<Reading> readings = {
        {u"", 0},          {u"   ", 0},
        {u"abc", 0},       {u"12abc", 12},
        {u"3,5", 3},       {u"7", 7},
        {u"007", 7},       {u"-12", -12},
        {u"+12", 12},      {u"1.5", 1.5},
        {u".5", 0.5},      {u"5.", 5},
        {u"1.2.3", 1.2},   {u"-.25x", -.25},
        {u"1-2", 1},       {u"$5", 0},
        {u"(5)", 0},       {u"0x10", 0},
        {u"&H10", 0},      {u"10%", 10},
        {u"1_000", 1},     {u"1'000", 1},
        {u"inf", 0},       {u"nan", 0},
        {u"-infinity", 0}, {u"123456789012345678", 123456789012345678.0},
    };
    for (const auto &[text, value] : readings)
        EXPECT_EQ(leadingNumber(text), value) << QStringView(text).toString().toStdString();
}

TEST(LeadingNumber, SkipsBlanksTabsAndLineFeedsAnywhere) {
    EXPECT_EQ(leadingNumber(u"  1 2\t3\n4 x"), 1234.0);
    EXPECT_EQ(leadingNumber(u"- \t\n1"), -1.0);
    EXPECT_EQ(leadingNumber(u"1 . 5 e + 1"), 15.0);
    EXPECT_EQ(leadingNumber(u"\n\n"), 0.0);
}

TEST(LeadingNumber, StopsAtACarriageReturnOrAnyOtherSpace) {
    EXPECT_EQ(leadingNumber(u"1\r2"), 1.0);
    EXPECT_EQ(leadingNumber(u"\r2"), 0.0);
    EXPECT_EQ(leadingNumber(u"1\u00A02"), 1.0);
    EXPECT_EQ(leadingNumber(u"1\v2"), 1.0);
    EXPECT_EQ(leadingNumber(QStringView(u"1\0002", 3)), 1.0);
}

TEST(LeadingNumber, ReadsAnExponentOfEitherLetterAndCase) {
    EXPECT_EQ(leadingNumber(u"1e3"), 1000.0);
    EXPECT_EQ(leadingNumber(u"1E+3"), 1000.0);
    EXPECT_EQ(leadingNumber(u"1d3"), 1000.0);
    EXPECT_EQ(leadingNumber(u"15D-1"), 1.5);
    EXPECT_EQ(leadingNumber(u".5e1"), 5.0);
    EXPECT_EQ(leadingNumber(u"5.e1"), 50.0);
    EXPECT_EQ(leadingNumber(u"1e2.5"), 100.0);
    EXPECT_EQ(leadingNumber(u"1e2e3"), 100.0);
}

TEST(LeadingNumber, LeavesAnExponentWithoutDigitsAlone) {
    EXPECT_EQ(leadingNumber(u"2e"), 2.0);
    EXPECT_EQ(leadingNumber(u"2e+"), 2.0);
    EXPECT_EQ(leadingNumber(u"2d-x"), 2.0);
    EXPECT_EQ(leadingNumber(u"2ee5"), 2.0);
    EXPECT_EQ(leadingNumber(u"2e+-5"), 2.0);
}

TEST(LeadingNumber, IsZeroWithoutAnyDigit) {
    for (const char16_t *text : {u"-", u"+", u".", u"-.", u"e5", u".e5", u"--5", u"+-5", u"-x"})
        EXPECT_EQ(std::bit_cast<std::uint64_t>(leadingNumber(text)), 0U) << QStringView(text).toString().toStdString();
}

TEST(LeadingNumber, KeepsTheSignOfZero) {
    EXPECT_TRUE(std::signbit(leadingNumber(u"-0")));
    EXPECT_TRUE(std::signbit(leadingNumber(u"-0.0e9")));
    EXPECT_TRUE(std::signbit(leadingNumber(u"-1e-999")));
    EXPECT_FALSE(std::signbit(leadingNumber(u"+0")));
}

TEST(LeadingNumber, GivesTheLargestDoublePastTheRange) {
    EXPECT_EQ(leadingNumber(u"1e309"), largest);
    EXPECT_EQ(leadingNumber(u"-1e309"), -largest);
    EXPECT_EQ(leadingNumber(u"1.7976931348623159e308"), largest);
    EXPECT_EQ(leadingNumber(u"1e99999999999999999999999"), largest);
    EXPECT_EQ(leadingNumber(u"0.0001e400"), largest);
    EXPECT_EQ(leadingNumber(QString(400, u'9')), largest);
    EXPECT_EQ(leadingNumber(u"-"_s + QString(400, u'9')), -largest);
    EXPECT_EQ(leadingNumber(QString(100'000, u'9')), largest);
}

TEST(LeadingNumber, GivesZeroBelowTheRange) {
    EXPECT_EQ(leadingNumber(u"1e-400"), 0.0);
    EXPECT_EQ(leadingNumber(u"1e-99999999999999999999999"), 0.0);
    EXPECT_EQ(leadingNumber(u"0e99999999999999999999999"), 0.0);
    EXPECT_EQ(leadingNumber(u"1000e-400"), 0.0);
    EXPECT_EQ(leadingNumber(u"0."_s + QString(400, u'0') + u"1"_s), 0.0);
}

TEST(LeadingNumber, GivesTheNearestDouble) {
    EXPECT_EQ(leadingNumber(u"0.1"), 0.1);
    EXPECT_EQ(leadingNumber(u"4.9e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(leadingNumber(u"2.2250738585072014e-308"), std::numeric_limits<double>::min());
    EXPECT_EQ(leadingNumber(u"1.7976931348623157e308"), largest);
    EXPECT_EQ(leadingNumber(u"9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(leadingNumber(u"1"_s + QString(300, u'0') + u"e-300"_s), 1.0);
    EXPECT_EQ(leadingNumber(u"0."_s + QString(400, u'0') + u"1e401"_s), 1.0);
}

TEST(LeadingNumber, RoundsShortDecimalsAsTheStandardLibraryDoes) {
    std::uint64_t state = 88172645463325252U;
    for (int i = 0; i < 20'000; ++i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        // One to eighteen digits, a point among them or none, an exponent about the edges of what is exact.
        std::string digits = std::to_string(state % 1'000'000'000'000'000'000U).substr(0, 1 + (state >> 7) % 18);
        digits.insert((state >> 15) % (digits.size() + 1), (state >> 20) % 3 == 0 ? "" : ".");
        digits += "e" + std::to_string(static_cast<int>((state >> 30) % 61) - 30);
        EXPECT_EQ(leadingNumber(QString::fromStdString(digits)), std::strtod(digits.c_str(), nullptr)) << digits;
    }
}

TEST(LeadingNumber, TakesAsciiDigitsOnly) {
    EXPECT_EQ(leadingNumber(u"\uFF11\uFF12"), 0.0);
    EXPECT_EQ(leadingNumber(u"1\u0662"), 1.0);
    EXPECT_EQ(leadingNumber(u"\u22125"), 0.0);
}

TEST(WholeNumber, IsTheValueOfATextThatIsANumberAllThrough) {
    EXPECT_EQ(wholeNumber(u" -1 2.5e1 "), -125.0);
    EXPECT_EQ(wholeNumber(u"7\n"), 7.0);
    EXPECT_EQ(wholeNumber(u"5."), 5.0);
    EXPECT_EQ(wholeNumber(u"1e999"), largest);
}

TEST(WholeNumber, IsNothingForAnyOtherText) {
    for (const char16_t *text : {u"", u" ", u"-", u".", u"x", u"1x", u"1e", u"1,5", u"1\r", u"1 2 x", u"1.2.3", u"--1"})
        EXPECT_FALSE(wholeNumber(text).has_value()) << QStringView(text).toString().toStdString();
}

TEST(PlainNumber, IsTheValueOfATextThatReadsAsOneNumber) {
    EXPECT_EQ(plainNumber(u" -12.5 "), -12.5);
    EXPECT_EQ(plainNumber(u"+5."), 5.0);
    EXPECT_EQ(plainNumber(u".5"), 0.5);
    EXPECT_EQ(plainNumber(u"1e-7"), 1e-7);
    EXPECT_EQ(plainNumber(u"2E+3"), 2000.0);
    EXPECT_EQ(plainNumber(u"1e999"), largest);
}

TEST(PlainNumber, IsNothingForAnyOtherText) {
    for (const char16_t *text : {u"", u" ", u"-", u".", u"2D1", u"1 2", u"- 1", u"1e", u"1e+", u"1 e5", u"7\n", u"\t7",
                                 u"1.2.3", u"1,5", u"12x", u"--1", u"\uFF11"})
        EXPECT_FALSE(plainNumber(text).has_value()) << QStringView(text).toString().toStdString();
}

} // namespace
