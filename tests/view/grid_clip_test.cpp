#include "view/AreaClipboard.h"

#include <gtest/gtest.h>

using namespace qir;
using namespace Qt::StringLiterals;

TEST(GridClip, CarriageReturnWithLineFeedIsOneRowEnd) {
    EXPECT_EQ(gridClip(u"a\tb\r\nc\td"_s), u"a\tb\rc\td"_s);
}

TEST(GridClip, LineFeedsBesideCarriageReturnsGo) {
    EXPECT_EQ(gridClip(u"a\nb\rc"_s), u"ab\rc"_s);
}

TEST(GridClip, LineFeedsAloneAreRowEnds) {
    EXPECT_EQ(gridClip(u"a\nb\nc"_s), u"a\rb\rc"_s);
}

TEST(GridClip, OneLastRowEndIsDropped) {
    EXPECT_EQ(gridClip(u"a\nb\n"_s), u"a\rb"_s);
    EXPECT_EQ(gridClip(u"a\r\nb\r\n"_s), u"a\rb"_s);
    EXPECT_EQ(gridClip(u"a\rb\r\r"_s), u"a\rb\r"_s);
    EXPECT_EQ(gridClip(u"\n"_s), QString());
}
