#include "platform/controls/KeyCodes.h"
#include "platform/controls/Twips.h"

#include <gtest/gtest.h>

using namespace qir;

namespace {

TEST(Twips, AreFifteenToThePixel) {
    EXPECT_EQ(toTwips(20), 300);
    EXPECT_EQ(toPixels(300), 20);
    EXPECT_EQ(toTwips(pixelsPerInch), twipsPerInch);
}

TEST(Twips, AreRoundedToTheNearestPixel) {
    EXPECT_EQ(toPixels(7), 0);
    EXPECT_EQ(toPixels(8), 1);
    EXPECT_EQ(toPixels(22), 1);
    EXPECT_EQ(toPixels(23), 2);
    EXPECT_EQ(toPixels(-8), -1);
    EXPECT_EQ(toPixels(-7), 0);
}

TEST(Twips, RoundedUpHoldWhatFits) {
    EXPECT_EQ(toPixelsRoundedUp(0), 0);
    EXPECT_EQ(toPixelsRoundedUp(1), 1);
    EXPECT_EQ(toPixelsRoundedUp(15), 1);
    EXPECT_EQ(toPixelsRoundedUp(16), 2);
}

TEST(KeyCodes, AreVirtualKeyCodes) {
    EXPECT_EQ(virtualKeyCode(Qt::Key_Insert), 45);
    EXPECT_EQ(virtualKeyCode(Qt::Key_C), 67);
    EXPECT_EQ(virtualKeyCode(Qt::Key_V), 86);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Return), 13);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Enter), 13);
    EXPECT_EQ(virtualKeyCode(Qt::Key_F5), 116);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Space), 32);
    EXPECT_EQ(virtualKeyCode(Qt::Key_MediaPlay), 0);
}

TEST(KeyCodes, AddUpModifiersAndIgnoreTheKeypad) {
    EXPECT_EQ(shiftMask(Qt::NoModifier), 0);
    EXPECT_EQ(shiftMask(Qt::ShiftModifier), 1);
    EXPECT_EQ(shiftMask(Qt::ControlModifier | Qt::KeypadModifier), 2);
    EXPECT_EQ(shiftMask(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier), 7);
}

} // namespace
