// Turns of a mouse wheel as pixels.

#include "dialogs/engine/wheel.h"

#include <gtest/gtest.h>

using vrx::pixelsOfNotch;
using vrx::WheelTurns;

namespace {

TEST(Wheel, SmallStepsAddUp) {
    WheelTurns turns;
    int sum = 0;
    // Forty to a notch of 72 pixels: 1.8 pixels each.
    for (int i = 0; i < 40; ++i) sum += turns.pixels(3, 72);
    EXPECT_EQ(sum, 72);
    EXPECT_EQ(turns.pixels(120, 72), 72);
    for (int i = 0; i < 120; ++i) sum += turns.pixels(-1, 72);
    EXPECT_EQ(sum, 0);
}

TEST(Wheel, WhatIsLeftOfTheOtherDirectionIsForgotten) {
    WheelTurns turns;
    EXPECT_EQ(turns.pixels(119, 1), 0);
    EXPECT_EQ(turns.pixels(-1, 1), 0);
    EXPECT_EQ(turns.pixels(119, 1), 0);
    EXPECT_EQ(turns.pixels(1, 1), 1);
}

TEST(Wheel, TurnsManyNotchesAtOnce) {
    WheelTurns turns;
    EXPECT_EQ(turns.pixels(-32768, 32767), -8947575);
    EXPECT_EQ(turns.pixels(240, 72), 144);
}

TEST(Wheel, ANotchIsTheUsersLinesAPageAtMostAndNothingForNoLines) {
    EXPECT_EQ(pixelsOfNotch(3, 24, 500), 72);
    EXPECT_EQ(pixelsOfNotch(1, 24, 500), 24);
    EXPECT_EQ(pixelsOfNotch(100, 24, 500), 500);
    EXPECT_EQ(pixelsOfNotch(UINT32_MAX, 24, 500), 500);
    EXPECT_EQ(pixelsOfNotch(0, 24, 500), 0);
    EXPECT_EQ(pixelsOfNotch(3, 24, -1), 0);
}

}  // namespace
