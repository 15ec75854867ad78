#include "base/ArgumentTexts.h"
#include "base/ErrorWords.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {
namespace {

QString problemOf(const char *argument) {
    const char *const arguments[] = {"program", argument};
    const auto texts = argumentTexts(2, arguments);
    return texts ? QString() : texts.error().text;
}

TEST(ArgumentTexts, KeepEveryByteOfUtf8) {
    const char *const arguments[] = {"program", "", "\xEF\xBB\xBFx", "e\xCC\x81", "\xF0\x9F\x98\x80", "a\x1b"};
    const auto texts = argumentTexts(6, arguments);
    ASSERT_TRUE(texts);
    EXPECT_EQ(*texts, (QStringList{u"program"_s, u""_s, u"\uFEFFx"_s, u"e\u0301"_s, u"\U0001F600"_s, u"a\u001b"_s}));
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(texts->at(i).toUtf8(), QByteArray(arguments[i]));
}

TEST(ArgumentTexts, AreRefusedWhereOneIsNoUtf8) {
    for (const char *argument : {"\xff", "x\xfe.ddb", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xc3"})
        EXPECT_NE(problemOf(argument), u""_s) << argument;
    EXPECT_EQ(problemOf("a\x1b\"\xff"),
              u"the argument \"a\\x1b\"\\xff\" is not UTF-8: such a name cannot be told from another one"_s);
}

TEST(ErrorWords, GiveALackOfMemoryASentence) {
    EXPECT_EQ(errorWords(std::bad_alloc()), u"There is not enough memory."_s);
    EXPECT_EQ(errorWords(std::bad_array_new_length()), u"There is not enough memory."_s);
    EXPECT_EQ(errorWords(std::length_error("vector::reserve")), u"There is not enough memory."_s);
    EXPECT_EQ(errorWords(std::runtime_error("the pump is dry \xC2\xB0")), u"the pump is dry \u00B0"_s);
}

} // namespace
} // namespace qir
