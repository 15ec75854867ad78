#include "base/columns/UnicodeText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using namespace qir;

namespace {

const QChar high(0xD83D);
const QChar low(0xDE00);

std::string encoded(const QString &text) {
    PackedTexts packed;
    packed.append(text);
    std::string bytes(utf8Size(packed.view(0)), '\0');
    EXPECT_EQ(writeUtf8(bytes.data(), packed.view(0)) - bytes.data(), static_cast<std::ptrdiff_t>(bytes.size()));
    std::string again(utf8Size(QStringView(text)), '\0');
    writeUtf8(again.data(), QStringView(text));
    EXPECT_EQ(bytes, again);
    return bytes;
}

TEST(UnicodeText, TurnsLoneSurrogatesIntoReplacementCharacters) {
    EXPECT_EQ(wellFormed(u"plain"_s), u"plain"_s);
    EXPECT_EQ(wellFormed(QString(high) + low), QString(high) + low);
    EXPECT_EQ(wellFormed(QString(high)), u"\uFFFD"_s);
    EXPECT_EQ(wellFormed(u"a"_s + low + high + u"b"_s), u"a\uFFFD\uFFFDb"_s);
    EXPECT_EQ(wellFormed(QString(high) + high + low), u"\uFFFD"_s + high + low);
}

TEST(UnicodeText, CountsCodePoints) {
    EXPECT_EQ(codePoints(u""), 0U);
    EXPECT_EQ(codePoints(u"aé€"), 3U);
    EXPECT_EQ(codePoints(u"😀😀"), 2U);
    EXPECT_EQ(codePoints(QString(high) + u"a"_s), 2U);
}

TEST(UnicodeText, CutsBetweenCodePoints) {
    EXPECT_EQ(fittingText(u"abc"_s, 2), u"ab"_s);
    EXPECT_EQ(fittingText(u"abc"_s, 3), u"abc"_s);
    EXPECT_EQ(fittingText(u"abc"_s, 0), u""_s);
    EXPECT_EQ(fittingText(u"😀😀x"_s, 2), u"😀😀"_s);
    EXPECT_EQ(fittingText(u"a😀"_s, 1), u"a"_s);
    EXPECT_EQ(fittingText(QString(low) + u"😀x"_s, 2), u"\uFFFD😀"_s);
}

TEST(UnicodeText, WritesUtf8) {
    EXPECT_EQ(encoded(u"az\u007F"_s), "az\x7F");
    EXPECT_EQ(encoded(u"\u0080\u00FF"_s), "\xC2\x80\xC3\xBF");
    EXPECT_EQ(encoded(u"\u0100\u07FF\u0800\uFFFF"_s), "\xC4\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(encoded(u"\U00010000\U0010FFFF"_s), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(encoded(u""_s), "");
}

TEST(UnicodeText, ReadsUtf8AndCountsItsCodePoints) {
    QString text;
    EXPECT_EQ(readUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", text), 4U);
    EXPECT_EQ(text, u"aé€😀"_s);
    EXPECT_EQ(readUtf8("\xEF\xBB\xBFx", text), 2U); // a mark of byte order is a character like any other
    EXPECT_EQ(text, u"\uFEFFx"_s);
    EXPECT_EQ(readUtf8(QByteArrayView(), text), 0U);
    EXPECT_EQ(text, u""_s);
}

TEST(UnicodeText, RefusesWhatIsNotUtf8) {
    const std::vector<std::string> refused = {
        "\x80",             // a continuation alone
        "\xC3",             // cut short
        "\xE2\x82",         // cut short
        "\xF0\x9F\x98",     // cut short
        "\xC3(",            // no continuation
        "\xC0\x80",         // overlong
        "\xC1\xBF",         // overlong
        "\xE0\x9F\xBF",     // overlong
        "\xF0\x8F\xBF\xBF", // overlong
        "\xED\xA0\x80",     // a surrogate
        "\xED\xBF\xBF",     // a surrogate
        "\xF4\x90\x80\x80", // past the last code point
        "\xF5\x80\x80\x80", // past the last code point
        "\xFE",
        "\xFF",
        "abc\xFF",
    };
    for (const std::string &bytes : refused) {
        QString text;
        EXPECT_FALSE(readUtf8(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())), text).has_value())
            << testing::PrintToString(bytes);
    }
}

TEST(UnicodeText, EveryCodePointReadsBack) {
    constexpr char32_t firstSparse = 0x11000; // beyond, every 257th will do
    for (char32_t code = 0; code <= 0x10FFFF; code += code < firstSparse ? 1 : 257) {
        if (code >= 0xD800 && code <= 0xDFFF)
            continue;
        const QString text = QStringView(QChar::fromUcs4(code)).toString();
        std::string bytes(utf8Size(QStringView(text)), '\0');
        writeUtf8(bytes.data(), QStringView(text));
        QString back;
        ASSERT_EQ(readUtf8(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())), back), 1U);
        ASSERT_EQ(back, text);
    }
}

RC_GTEST_PROP(UnicodeTextProperty, AnyAcceptedBytesAreWrittenBackTheSame, ()) {
    const auto bytes = *rc::gen::container<std::string>(rc::gen::oneOf(
        rc::gen::arbitrary<char>(), rc::gen::element('\xC3', '\xA9', '\xE2', '\x82', '\xF0', '\x9F', '\x98', '\x80')));
    QString text;
    if (readUtf8(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())), text))
        RC_ASSERT(encoded(text) == bytes);
    else
        RC_ASSERT(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).contains(u'\uFFFD'));
}

} // namespace
