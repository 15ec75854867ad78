#include "platform/controls/BesideWindow.h"

#include <gtest/gtest.h>

namespace qir {

namespace {

constexpr QRect screen(0, 0, 1920, 1080);
constexpr QSize wanted(600, 400);
constexpr QSize least(300, 200);

} // namespace

TEST(BesideWindow, StandsOnTheRightWhereThereIsRoom) {
    EXPECT_EQ(placeBeside({100, 50, 1000, 700}, wanted, least, screen), QRect(1100, 50, 600, 400));
}

TEST(BesideWindow, StandsOnTheLeftWhereTheRightIsTaken) {
    EXPECT_EQ(placeBeside({900, 50, 1000, 700}, wanted, least, screen), QRect(300, 50, 600, 400));
}

TEST(BesideWindow, StandsBelowOrAboveAWideWindow) {
    EXPECT_EQ(placeBeside({0, 0, 1920, 600}, wanted, least, screen), QRect(0, 600, 600, 400));
    EXPECT_EQ(placeBeside({0, 480, 1920, 600}, wanted, least, screen), QRect(0, 80, 600, 400));
}

TEST(BesideWindow, BecomesSmallerRatherThanCoverTheWindow) {
    const QRect place = placeBeside({0, 0, 1500, 1080}, wanted, least, screen);
    EXPECT_EQ(place, QRect(1500, 0, 420, 400));
}

TEST(BesideWindow, StaysOnTheScreen) {
    EXPECT_EQ(placeBeside({100, 900, 1000, 150}, wanted, least, screen), QRect(1100, 680, 600, 400));
    EXPECT_EQ(placeBeside({0, 0, 1920, 1080}, wanted, least, screen), QRect(1320, 680, 600, 400));
    EXPECT_EQ(placeBeside({0, 0, 640, 480}, wanted, least, {0, 0, 500, 300}), QRect(0, 0, 500, 300));
}

TEST(BesideWindow, CountsFromTheScreensOwnCorner) {
    EXPECT_EQ(placeBeside({2020, 150, 1000, 700}, wanted, least, {1920, 100, 1920, 1080}), QRect(3020, 150, 600, 400));
}

} // namespace qir
