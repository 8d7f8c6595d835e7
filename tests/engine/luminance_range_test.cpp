// The range of a picture's luminances and its white point: against all pixels, and against cases computed by
// hand.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "exposition_steps.h"
#include "failure.h"
#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/auto_exposition_rows.h"

namespace vrx::test {
namespace {

struct Luminance : testing::Test {
    ToneTables tables;

    Luminance() { tables.build(1.0F, 1.0F); }
};

TEST_F(Luminance, MeasuresTheLuminanceOfTheTablesColours) {
    // Red 1 / 2 alone: 0.265068 / 2; green 1 / 2 alone: 0.67023426 / 2, but for the other components' halves
    // of 2^-8 that M = 0 still has with the same exponent: (0.5 / 255) * 0.73432583 and (0.5 / 255) *
    // 0.32915957.
    const RgbeStore store = rowOf({{127, 0, 0, 136}, {0, 127, 0, 136}});
    const LuminanceRange range = measureLuminance(tables, store);
    EXPECT_NEAR(range.minimum, 0.132534 + 0.00143986, 1e-7);
    EXPECT_NEAR(range.maximum, 0.33511713 + 0.00064541, 1e-7);
    EXPECT_NEAR(range.whitePoint, 8.87017, 1e-4);  // 1 / 0.33576254^2
}

TEST_F(Luminance, LeavesTheExtraColumnAndRowOut) {
    RgbeStore store = rowOf({kGreenish, kGreenish});
    const LuminanceRange range = measureLuminance(tables, store);
    for (int c = 0; c < 4; ++c) {
        store.row(c, 0)[2] = 255;
        store.row(c, 1)[0] = 255;
    }
    EXPECT_EQ(measureLuminance(tables, store).maximum, range.maximum);
}

TEST_F(Luminance, LuminancesBeyondTheStartingMinimumLeaveItAsItIs) {
    const LuminanceRange range = measureLuminance(tables, rowOf({{255, 255, 255, 255}}));
    EXPECT_EQ(range.minimum, 1.0e9F);
    EXPECT_GT(range.maximum, 1.0e35F);
    EXPECT_EQ(range.whitePoint, 0.0F);  // below 1e-70
}

TEST_F(Luminance, APictureWithoutAnyLuminanceDividesByZero) {
    tables.build(0.0F, 1.0F);
    EXPECT_EQ(errorNumberOf([this] { static_cast<void>(measureLuminance(tables, rowOf({kGreenish}))); }), 11);
}

/// The range must be that of every single pixel, however blocks of pixels are passed over.
TEST_F(Luminance, MeasuresOnePixelThatStandsOutAnywhere) {
    tables.build(128.0F, 1.0F / 2.2F);
    StoreMaker maker;
    for (int x = 0; x < 256; ++x) {
        RgbeStore store = maker.random(256, 2, 128, 130);
        for (const int row : {0, 1}) {
            const int place = row == 0 ? x : 255 - x;
            store.row(3, row)[place] = row == 0 ? 127 : 131;
            for (int c = 0; c < 3; ++c) store.row(c, row)[place] = row == 0 ? 0 : 255;
        }
        const LuminanceRange range = measureLuminance(tables, store);
        const LuminanceRange expected = modelRange(tables, store);
        ASSERT_EQ(range.minimum, expected.minimum) << x;
        ASSERT_EQ(range.maximum, expected.maximum) << x;
    }
}

TEST_F(Luminance, MeasuresWithTablesThatFall) {
    tables.build(1.0F, -0.5F);
    StoreMaker maker;
    for (int i = 0; i < 50; ++i) {
        const RgbeStore store = maker.random(200, 4, 100, 140);
        ASSERT_EQ(measureLuminance(tables, store).minimum, modelRange(tables, store).minimum);
        ASSERT_EQ(measureLuminance(tables, store).maximum, modelRange(tables, store).maximum);
    }
}

TEST_F(Luminance, BothKernelsMeasureTheSame) {
    if (__builtin_cpu_supports("avx2") == 0) GTEST_SKIP() << "this processor has no AVX2";
    StoreMaker maker;
    for (int width = 1; width <= 200; ++width) {
        const RgbeStore store = maker.random(width, 1, 100, 160);
        const ExposureRow row{tables.singles(), store.row(0, 0), store.row(1, 0),
                              store.row(2, 0),  store.row(3, 0), static_cast<std::size_t>(width)};
        RowLuminance a{1.0e9, -1.0e9};
        RowLuminance b = a;
        baseline::widenLuminance(row, a);
        avx2::widenLuminance(row, b);
        EXPECT_EQ(a.minimum, b.minimum);
        EXPECT_EQ(a.maximum, b.maximum);
    }
}

TEST_F(Luminance, TheWhitePointIsASingleWhereItFitsOne) {
    // 1 / 0.3^2 in doubles is no Single.
    const RgbeStore store = rowOf({{76, 76, 76, 136}});
    const double whitePoint = measureLuminance(tables, store).whitePoint;
    EXPECT_EQ(whitePoint, double{static_cast<float>(whitePoint)});
}

TEST_F(Luminance, TheWhitePointBeyondASingleIsADouble) {
    // 0.5 * 2^-65 / 255 times 0.99939383 is a luminance Y of 5.31149e-23: 1 / Y^2 is 3.54459e44.
    const double whitePoint = measureLuminance(tables, rowOf({{0, 0, 0, 71}})).whitePoint;
    EXPECT_NEAR(whitePoint, 3.54459e44, 1e39);
}

}  // namespace
}  // namespace vrx::test
