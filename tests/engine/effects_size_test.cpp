// Sizes: a picture's HiMetric units in pixels, and rectangles that keep proportions.
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

#include "effects/engine/fit_proportional.h"
#include "failure.h"
#include "ground/himetric.h"

namespace vrx {

inline bool operator==(const FittedRectangle& a, const FittedRectangle& b) {
    return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
}

inline void PrintTo(const FittedRectangle& r, std::ostream* out) {
    *out << r.left << ", " << r.top << ": " << r.width << " x " << r.height;
}

namespace test {
namespace {

constexpr int kOverflow = 6;
constexpr int kDivisionByZero = 11;

TEST(FitProportional, Of400x400Into200x100Is100x100AtLeft50) {
    EXPECT_EQ(fitProportional(200, 100, 400, 400), (FittedRectangle{50, 0, 100, 100}));
}

TEST(FitProportional, FillsTheWidthOfAHighBox) {
    EXPECT_EQ(fitProportional(100, 200, 400, 400), (FittedRectangle{0, 50, 100, 100}));
}

TEST(FitProportional, FillsTheHeightOfAHighBoxForAHighImage) {
    EXPECT_EQ(fitProportional(100, 200, 10, 40), (FittedRectangle{25, 0, 50, 200}));
}

TEST(FitProportional, FillsTheWidthOfAWideBoxForAWideImage) {
    EXPECT_EQ(fitProportional(200, 100, 40, 10), (FittedRectangle{0, 25, 200, 50}));
}

TEST(FitProportional, EnlargesSmallImages) {
    EXPECT_EQ(fitProportional(300, 300, 1, 1), (FittedRectangle{0, 0, 300, 300}));
}

TEST(FitProportional, RoundsSidesAndPositionsHalvesToEven) {
    // 10 / 5 * 6 = 12 is too wide; 6 / 6 * 5 = 5; 5 - 2.5 = 2.5.
    EXPECT_EQ(fitProportional(6, 10, 6, 5), (FittedRectangle{0, 2, 6, 5}));
    // 5 / 2 * 3 = 7.5 is too wide; 5 / 3 * 2 = 3.33; 2.5 - 1.5 = 1.
    EXPECT_EQ(fitProportional(5, 5, 3, 2), (FittedRectangle{0, 1, 5, 3}));
    // 3 / 2 * 3 = 4.5 becomes 4, which is no more than the box has; 1.5 - 2 = -0.5.
    EXPECT_EQ(fitProportional(4, 3, 2, 3).width, 2);
}

TEST(FitProportional, ComparesTheRoundedWidth) {
    // 4 / 8 * 9 = 4.5 rounds to 4 and fits a width of 4.
    EXPECT_EQ(fitProportional(4, 4, 9, 8), (FittedRectangle{0, 0, 4, 4}));
}

TEST(FitProportional, GivesAnEmptyBoxAnEmptyRectangle) {
    EXPECT_EQ(fitProportional(0, 0, 10, 10), (FittedRectangle{0, 0, 0, 0}));
}

TEST(FitProportional, FailsForAnImageWithoutASize) {
    EXPECT_EQ(errorNumberOf([] { (void)fitProportional(10, 10, 5, 0); }), kDivisionByZero);
    EXPECT_EQ(errorNumberOf([] { (void)fitProportional(20, 10, 0, 5); }), kDivisionByZero);
}

TEST(FitProportional, FailsBeyond32Bits) {
    constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(errorNumberOf([] { (void)fitProportional(kLargest, kLargest, kLargest, 1); }), kOverflow);
}

TEST(Himetric, AnInchIsTheResolutionInPixels) {
    EXPECT_EQ(pixelsOfHimetric(2540.0F, 96), 96);
    EXPECT_EQ(pixelsOfHimetric(2540.0F, 120), 120);
    EXPECT_EQ(pixelsOfHimetric(-2540.0F, 96), -96);
}

TEST(Himetric, RoundsHalvesToEven) {
    // A hundred pixels per inch: 25.4 units each.
    EXPECT_EQ(pixelsOfHimetric(254.0F * 0.25F, 100), 2);
    EXPECT_EQ(pixelsOfHimetric(254.0F * 0.35F, 100), 4);
    EXPECT_EQ(pixelsOfHimetric(12.0F, 100), 0);
    EXPECT_EQ(pixelsOfHimetric(13.0F, 100), 1);
}

TEST(Himetric, GivesBackThePixelsThatAPictureWasMeasuredIn) {
    for (int pixels = 0; pixels <= 32767; ++pixels) {
        const auto units = static_cast<float>(std::lround(pixels * 2540.0 / 96.0));
        ASSERT_EQ(pixelsOfHimetric(units, 96), pixels);
    }
}

TEST(Himetric, FailsBeyond16Bits) {
    // 32767 pixels are 866960.2 units.
    EXPECT_EQ(pixelsOfHimetric(866960.0F, 96), 32767);
    EXPECT_EQ(errorNumberOf([] { (void)pixelsOfHimetric(866980.0F, 96); }), kOverflow);
    EXPECT_EQ(errorNumberOf([] { (void)pixelsOfHimetric(-867010.0F, 96); }), kOverflow);
    EXPECT_EQ(errorNumberOf([] { (void)pixelsOfHimetric(3.4e38F, 96); }), kOverflow);
    EXPECT_EQ(errorNumberOf([] { (void)pixelsOfHimetric(std::numeric_limits<float>::quiet_NaN(), 96); }),
              kOverflow);
}

}  // namespace
}  // namespace test
}  // namespace vrx
