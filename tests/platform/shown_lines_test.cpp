#include "platform/cells/ShownLines.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <set>

namespace qir {

TEST(ShownLines, AllLinesStandAtTheirPlaces) {
    const ShownLines all;
    EXPECT_TRUE(all.isAll());
    EXPECT_EQ(all.count(7), 7);
    EXPECT_EQ(all.line(0), 1);
    EXPECT_EQ(all.section(3), 2);
    EXPECT_EQ(all.sectionFrom(9), 8);
    EXPECT_FALSE(all.section(0).has_value());
}

TEST(ShownLines, NoneIsNotAll) {
    const ShownLines none{std::vector<int>()};
    EXPECT_FALSE(none.isAll());
    EXPECT_EQ(none.count(7), 0);
    EXPECT_FALSE(none.holds(1));
    EXPECT_EQ(none.sectionFrom(1), 0);
}

/// Against a set of numbers.
RC_GTEST_PROP(ShownLines, HoldsWhatASetHolds, ()) {
    const auto lines = *rc::gen::container<std::set<int>>(rc::gen::inRange(1, 40));
    const int whole = *rc::gen::inRange(0, 45);
    const int added = *rc::gen::inRange(-1, 45);
    ShownLines shown(std::vector<int>(lines.begin(), lines.end()));
    std::set<int> plain = lines;
    shown.cut(whole);
    plain.erase(plain.upper_bound(whole), plain.end());
    shown.insert(added);
    if (added >= 1)
        plain.insert(added);
    RC_ASSERT(shown.count(99) == static_cast<int>(plain.size()));
    int section = 0;
    for (const int line : plain) {
        RC_ASSERT(shown.line(section) == line);
        RC_ASSERT(shown.section(line) == section);
        ++section;
    }
    for (int line = 0; line < 50; ++line) {
        RC_ASSERT(shown.holds(line) == plain.contains(line));
        RC_ASSERT(shown.sectionFrom(line) == static_cast<int>(std::distance(plain.begin(), plain.lower_bound(line))));
    }
}

} // namespace qir
