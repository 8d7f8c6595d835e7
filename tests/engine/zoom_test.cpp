// The zoom window's size and place, its scroll bars, the pixel under the pointer and the text of its value.

#include <gtest/gtest.h>

#include <limits>

#include "dialogs/engine/zoom_layout.h"

namespace {

using vrx::Extent;
using vrx::ScrolledView;
using vrx::WindowPlace;

constexpr Extent kBorders{16, 39};
constexpr Extent kBars{17, 17};
constexpr Extent kScreen{1280, 1024};

WindowPlace placeFor(int width, int height) {
    return vrx::zoomWindowPlace({width, height}, kBorders, kBars, kScreen);
}

TEST(ZoomWindow, IsThePictureAndItsBordersInTheMiddleOfTheScreen) {
    EXPECT_EQ(placeFor(100, 50), (WindowPlace{582, 467, 116, 89}));
}

TEST(ZoomWindow, APictureLargerThanTheScreenGivesAWindowNoLargerThanTheScreenCentred) {
    EXPECT_EQ(placeFor(2000, 1500), (WindowPlace{0, 0, 1280, 1024}));
    constexpr int kLargest = std::numeric_limits<int>::max();
    EXPECT_EQ(placeFor(kLargest, kLargest), (WindowPlace{0, 0, 1280, 1024}));
}

TEST(ZoomWindow, HasRoomForTheScrollBarOfItsOtherSide) {
    EXPECT_EQ(placeFor(2000, 100), (WindowPlace{0, 434, 1280, 156}));
    EXPECT_EQ(placeFor(100, 2000), (WindowPlace{573, 0, 133, 1024}));
}

TEST(ZoomWindow, IsItsBordersForAPictureWithoutPixels) {
    EXPECT_EQ(placeFor(0, 0), (WindowPlace{632, 492, 16, 39}));
}

TEST(ZoomScrolling, NeedsNoBarsForAContentThatFits) {
    EXPECT_EQ(vrx::scrolledView({100, 100}, {100, 100}, kBars), (ScrolledView{false, false, {100, 100}}));
}

TEST(ZoomScrolling, NeedsTheBarOfTheLongSideOnly) {
    EXPECT_EQ(vrx::scrolledView({100, 100}, {101, 83}, kBars), (ScrolledView{true, false, {100, 83}}));
    EXPECT_EQ(vrx::scrolledView({100, 100}, {83, 101}, kBars), (ScrolledView{false, true, {83, 100}}));
}

TEST(ZoomScrolling, NeedsBothBarsWhereOneHidesPartOfTheOtherSide) {
    EXPECT_EQ(vrx::scrolledView({100, 100}, {101, 84}, kBars), (ScrolledView{true, true, {83, 83}}));
    EXPECT_EQ(vrx::scrolledView({100, 100}, {84, 101}, kBars), (ScrolledView{true, true, {83, 83}}));
}

TEST(ZoomScrolling, CentresAContentThatFits) { EXPECT_EQ(vrx::contentStart(100, 40, 7), 30); }

TEST(ZoomScrolling, MovesALongContentNoFurtherThanItsEnds) {
    EXPECT_EQ(vrx::contentStart(100, 140, 25), -25);
    EXPECT_EQ(vrx::contentStart(100, 140, 90), -40);
    EXPECT_EQ(vrx::contentStart(100, 140, -5), 0);
    EXPECT_EQ(vrx::heldPosition(100, 140, 41), 40);
    EXPECT_EQ(vrx::heldPosition(100, 60, 5), 0);
}

TEST(ZoomPointer, CountsPixelsFromTwips) {
    EXPECT_EQ(vrx::pixelUnderPointer(0, 3000, 3000, 15), 0);
    EXPECT_EQ(vrx::pixelUnderPointer(1500, 3000, 3000, 15), 100);
}

TEST(ZoomPointer, FollowsThePicturesScale) {
    EXPECT_EQ(vrx::pixelUnderPointer(30, 3000, 1500, 15), 4);
    EXPECT_EQ(vrx::pixelUnderPointer(120, 1500, 3000, 15), 4);
}

TEST(ZoomPointer, RoundsHalvesToEvenAtBothSteps) {
    EXPECT_EQ(vrx::pixelUnderPointer(5, 100, 100, 10), 0);
    EXPECT_EQ(vrx::pixelUnderPointer(15, 100, 100, 10), 2);
    // 4.5 is 4 first, and half a pixel then; without the first step it would be 0.5625 of a pixel.
    EXPECT_EQ(vrx::pixelUnderPointer(4.5, 100, 100, 8), 0);
    EXPECT_EQ(vrx::pixelUnderPointer(5.5, 100, 100, 8), 1);
}

TEST(ZoomReadout, HasFourDecimalsAndADigitBeforeThem) {
    EXPECT_EQ(vrx::readoutText(0), u"0.0000");
    EXPECT_EQ(vrx::readoutText(-1), u"-1.0000");
    EXPECT_EQ(vrx::readoutText(0.25), u"0.2500");
    EXPECT_EQ(vrx::readoutText(12345.6789), u"12345.6789");
    EXPECT_EQ(vrx::readoutText(1e20), u"100000000000000000000.0000");
}

TEST(ZoomReadout, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(vrx::readoutText(0.03125), u"0.0313");
    EXPECT_EQ(vrx::readoutText(12.34565), u"12.3457");
    EXPECT_EQ(vrx::readoutText(-12.34565), u"-12.3457");
    EXPECT_EQ(vrx::readoutText(0.00005), u"0.0001");
    EXPECT_EQ(vrx::readoutText(0.00004999), u"0.0000");
    EXPECT_EQ(vrx::readoutText(1e-9), u"0.0000");
    EXPECT_EQ(vrx::readoutText(99999.99995), u"100000.0000");
}

}  // namespace
