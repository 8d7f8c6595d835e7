// The frame that the preview gives to a picture, and the conversions of lengths that it uses.

#include "dialogs/engine/preview_frame.h"

#include <gtest/gtest.h>

#include <ostream>

#include "failure.h"

namespace vrx {

void PrintTo(const PreviewFrame& frame, std::ostream* out) {
    *out << frame.left << ", " << frame.top << ", " << frame.width << " x " << frame.height;
}

}  // namespace vrx

namespace {

using vrx::PreviewFrame;
using vrx::proportionalFrame;
using vrx::test::errorNumberOf;

TEST(PreviewFrameInASquareBox, APictureWiderThanHighFillsTheWidthAndIsCentredVertically) {
    EXPECT_EQ(proportionalFrame(100, 100, 200, 100), (PreviewFrame{0, 25, 100, 50}));
}

TEST(PreviewFrameInASquareBox, APictureHigherThanWideFillsTheHeightAndIsCentredHorizontally) {
    EXPECT_EQ(proportionalFrame(100, 100, 100, 200), (PreviewFrame{25, 0, 50, 100}));
}

TEST(PreviewFrame, APictureWithExactlyTheBoxsProportionsFillsTheBoxInBothCases) {
    EXPECT_EQ(proportionalFrame(200, 100, 400, 200), (PreviewFrame{0, 0, 200, 100}));
    EXPECT_EQ(proportionalFrame(100, 200, 50, 100), (PreviewFrame{0, 0, 100, 200}));
}

TEST(PreviewFrame, ABoxWiderThanHighTestsTheHeightFirst) {
    EXPECT_EQ(proportionalFrame(300, 100, 200, 100), (PreviewFrame{50, 0, 200, 100}));
    EXPECT_EQ(proportionalFrame(300, 100, 600, 100), (PreviewFrame{0, 25, 300, 50}));
    // The test of the height divides by the width, whatever the height is; 0 fits.
    EXPECT_EQ(proportionalFrame(300, 100, 5, 0), (PreviewFrame{0, 50, 300, 0}));
}

TEST(PreviewFrame, ATallBoxTestsTheWidthFirst) {
    EXPECT_EQ(proportionalFrame(100, 300, 100, 200), (PreviewFrame{0, 50, 100, 200}));
    EXPECT_EQ(proportionalFrame(100, 300, 100, 600), (PreviewFrame{25, 0, 50, 300}));
    EXPECT_EQ(proportionalFrame(100, 300, 0, 5), (PreviewFrame{50, 0, 0, 300}));
}

TEST(PreviewFrame, ComparesTheTestedSideUnrounded) {
    // 200 / 500 * 251 = 100.4 is more than 100.
    EXPECT_EQ(proportionalFrame(100, 200, 251, 500), (PreviewFrame{0, 0.5, 100, 199}));
    EXPECT_EQ(proportionalFrame(200, 100, 500, 251), (PreviewFrame{0.5, 0, 199, 100}));
}

TEST(PreviewFrame, RoundsItsSidesHalvesToEven) {
    EXPECT_EQ(proportionalFrame(101, 200, 2, 1), (PreviewFrame{0, 75, 101, 50}));
    EXPECT_EQ(proportionalFrame(103, 200, 2, 1), (PreviewFrame{0, 74, 103, 52}));
}

TEST(PreviewFrame, IsPlacedUnrounded) {
    EXPECT_EQ(proportionalFrame(101, 50, 10, 10), (PreviewFrame{25.5, 0, 50, 50}));
}

TEST(PreviewFrame, DividesBeforeItMultiplies) {
    // 115 / 14 in double precision, times 7, is just below 57.5.
    EXPECT_EQ(proportionalFrame(115, 200, 14, 7), (PreviewFrame{0, 71.5, 115, 57}));
}

TEST(PreviewFrame, FailsWithDivisionByZeroWhereItDividesByNoLength) {
    EXPECT_EQ(errorNumberOf([] { return proportionalFrame(100, 200, 5, 0); }), 11);
    EXPECT_EQ(errorNumberOf([] { return proportionalFrame(200, 100, 0, 5); }), 11);
}

TEST(PreviewLengths, AreTwipsAtTheScreensResolution) {
    EXPECT_EQ(vrx::twipsPerPixel(96), 15.0);
    EXPECT_EQ(vrx::twipsPerPixel(120), 12.0);
    EXPECT_EQ(vrx::twipsOfPixels(101, 15), 1515);
    EXPECT_EQ(vrx::pixelsOfTwips(1515, 15), 101);
}

TEST(PreviewLengths, RoundHalvesToEven) {
    EXPECT_EQ(vrx::twipsOfPixels(5, 22.5), 112);
    EXPECT_EQ(vrx::twipsOfPixels(7, 22.5), 158);
    EXPECT_EQ(vrx::pixelsOfTwips(25, 10), 2);
    EXPECT_EQ(vrx::pixelsOfTwips(35, 10), 4);
}

TEST(PreviewLengths, FailWithOverflowBeyond32Bits) {
    EXPECT_EQ(errorNumberOf([] { return vrx::twipsOfPixels(2147483647, 15); }), 6);
}

TEST(PreviewLengths, OfPicturesAreConvertedFromHundredthsOfMillimetres) {
    EXPECT_EQ(vrx::pixelsOfPictureLength(2646, 96), 100);
    EXPECT_EQ(vrx::pixelsOfPictureLength(2540, 120), 120);
    EXPECT_EQ(vrx::pixelsOfPictureLength(0, 96), 0);
    EXPECT_EQ(vrx::pixelsOfPictureLength(1000000, 96), 37795);
}

}  // namespace
