#include "platform/grid/IdentityNumbers.h"

#include <gtest/gtest.h>

using qir::IdentityNumbers;

namespace {

TEST(IdentityNumbers, KeepNothingWhileEachIsItsIndex) {
    IdentityNumbers numbers;
    EXPECT_EQ(numbers.at(1000000), 1000000);
    numbers.set(7, 7, 1000000);
    numbers.resize(2000000);
    EXPECT_TRUE(numbers.isIdentity());
}

TEST(IdentityNumbers, KeepOneThatDiffers) {
    IdentityNumbers numbers;
    numbers.set(2, 9, 4);
    EXPECT_EQ(numbers.at(1), 1);
    EXPECT_EQ(numbers.at(2), 9);
    EXPECT_EQ(numbers.at(3), 3);
    numbers.set(4, 9, 4);
    EXPECT_EQ(numbers.at(4), 4) << "there is no entry 4";
    numbers.resize(6);
    EXPECT_EQ(numbers.at(5), 5);
    EXPECT_EQ(numbers.at(2), 9);
    numbers.reset();
    EXPECT_EQ(numbers.at(2), 2);
}

TEST(IdentityNumbers, FollowTheirRowsWhenReordered) {
    IdentityNumbers numbers;
    numbers.permute({2, 0, 1});
    EXPECT_EQ(numbers.at(0), 0);
    EXPECT_EQ(numbers.at(1), 3);
    EXPECT_EQ(numbers.at(2), 1);
    EXPECT_EQ(numbers.at(3), 2);
    numbers.permute({1, 2, 0});
    EXPECT_EQ(numbers.at(1), 1);
    EXPECT_EQ(numbers.at(3), 3);
}

} // namespace
