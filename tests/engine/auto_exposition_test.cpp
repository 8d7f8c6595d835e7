// Painting with automatic exposition against its steps, and against cases computed by hand.
#include "hdr/engine/auto_exposition.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "exposition_steps.h"
#include "failure.h"
#include "hdr/engine/auto_exposition_rows.h"
#include "sample_picture.h"

namespace vrx::test {
namespace {

Row painted(const ToneTables& tables, const RowExposition& exposition, const RgbeStore& store, int y) {
    std::vector<std::uint8_t> bgr(3 * static_cast<std::size_t>(store.dimX()));
    paintExposedRow(tables, exposition, store, y, bgr.data());
    return {bgr.begin(), bgr.end()};
}

/// With the range of the store itself.
Row painted(const ToneTables& tables, ExpositionType type, const RgbeStore& store) {
    return painted(tables, expositionOf(type, measureLuminance(tables, store)), store, 0);
}

constexpr auto kNoOperator = static_cast<ExpositionType>(7);

struct AutoExposition : testing::Test {
    ToneTables tables;

    AutoExposition() { tables.build(1.0F, 1.0F); }
};

// By hand: with exposure 0 and gamma 1 a mantissa M of exponent 136 is (M + 0.5) / 255.

const Row kGreenishAtLuminance1 = {85, 255, 85};

TEST_F(AutoExposition, WithHdraetMaxTheBrightestPixelsLuminanceYmaxMapsTo1) {
    const RgbeStore store = rowOf({{3, 2, 1, 136}, kGreenish, {0, 0, 0, 0}});
    const Row row = painted(tables, ExpositionType::Max, store);
    EXPECT_EQ(Row(row.begin() + 3, row.begin() + 6), kGreenishAtLuminance1);
}

TEST_F(AutoExposition, HdraetMinMaxMapsTheDarkestPixelsLuminanceTo0AndTheBrightestTo1) {
    const RgbeStore store = rowOf({{10, 10, 10, 136}, kGreenish, {60, 60, 60, 136}});
    const Row row = painted(tables, ExpositionType::MinMax, store);
    EXPECT_EQ(Row(row.begin(), row.begin() + 3), (Row{0, 0, 0}));
    EXPECT_EQ(Row(row.begin() + 3, row.begin() + 6), kGreenishAtLuminance1);
}

TEST_F(AutoExposition, APixelWhoseLuminanceIs0OrLessConvertsBackWithXAndZ0) {
    // Grey 127.5 / 255 = 0.5 has the luminance 0.5 * 0.99939383 = 0.49969692; less 1, that is -0.50030308 =
    // Y. R is -1.1665 Y = 0.583604 (148.82), G below 0 and B -0.2543 Y = 0.127227 (32.44).
    const RgbeStore store = rowOf({{127, 127, 127, 136}});
    const RowExposition below = expositionOf(ExpositionType::MinMax, {1.0F, 2.0F, 0.0});
    EXPECT_EQ(painted(tables, below, store, 0), (Row{32, 0, 149}));
}

TEST_F(AutoExposition, APixelWhoseChromaticityXOrYIs0StaysBlack) {
    tables.build(0x1p-149F, 1.0F);
    EXPECT_EQ(tables.singles()[0], 0.0F);
    const RgbeStore store = rowOf({{0, 0, 0, 0}});
    for (const ExpositionType type : {ExpositionType::Max, ExpositionType::MinMax, kNoOperator}) {
        EXPECT_EQ(painted(tables, expositionOf(type, {0.0F, 1.0F, 1.0}), store, 0), (Row{0, 0, 0}));
    }
}

TEST_F(AutoExposition, AnotherOperatorKeepsTheLuminance) {
    // The greenish pixel's Y is 151.00453 / 255 = 0.592175: 255 Y times 0.334422, 1.327774 and 0.334417.
    EXPECT_EQ(painted(tables, expositionOf(kNoOperator, {}), rowOf({kGreenish}), 0), (Row{50, 200, 50}));
}

// Faults.

TEST_F(AutoExposition, WhenEveryPixelHasTheSameLuminanceMinMaxDividesByZero) {
    const RgbeStore store = rowOf({kGreenish, kGreenish, kGreenish});
    const LuminanceRange range = measureLuminance(tables, store);
    EXPECT_EQ(errorNumberOf([&] { static_cast<void>(expositionOf(ExpositionType::MinMax, range)); }), 11);
    EXPECT_EQ(errorNumberOf([&] { static_cast<void>(expositionOf(ExpositionType::Max, range)); }), 0);
}

// The one division is done before the rows, which nothing can fail.
static_assert(noexcept(paintExposedRow(std::declval<ToneTables&>(), std::declval<RowExposition&>(),
                                       std::declval<RgbeStore&>(), 0, nullptr)));

TEST_F(AutoExposition, APictureOfZeroBytesIsWhiteWithMaxAndDividesByZeroWithMinMax) {
    // 2^-137 / 255 is the luminance of every pixel, the largest one included.
    const RgbeStore store = rowOf({{0, 0, 0, 0}, {0, 0, 0, 0}});
    EXPECT_EQ(painted(tables, ExpositionType::Max, store), (Row{255, 255, 255, 255, 255, 255}));
    EXPECT_EQ(errorNumberOf([&] { painted(tables, ExpositionType::MinMax, store); }), 11);
}

// Against the model.

using Kernel = void (*)(const ExposureRow&, const RowExposition&, std::uint8_t*);

Row rowBy(Kernel kernel, const ToneTables& tables, const RowExposition& exposition, const RgbeStore& store,
          int y) {
    std::vector<std::uint8_t> bgr(3 * static_cast<std::size_t>(store.dimX()));
    kernel({tables.singles(), store.row(0, y), store.row(1, y), store.row(2, y), store.row(3, y),
            static_cast<std::size_t>(store.dimX())},
           exposition, bgr.data());
    return {bgr.begin(), bgr.end()};
}

void expectModel(const ToneTables& tables, const RgbeStore& store) {
    const LuminanceRange range = measureLuminance(tables, store);
    const LuminanceRange expected = modelRange(tables, store);
    ASSERT_EQ(range.minimum, expected.minimum);
    ASSERT_EQ(range.maximum, expected.maximum);
    ASSERT_EQ(range.whitePoint, expected.whitePoint);
    for (const ExpositionType type : {ExpositionType::Max, ExpositionType::MinMax, kNoOperator}) {
        if (type == ExpositionType::MinMax && range.minimum == range.maximum) continue;
        const RowExposition exposition = expositionOf(type, range);
        for (int y = 0; y < store.dimY(); ++y) {
            const Row row = modelRow(tables, type, range, store, y);
            ASSERT_EQ(painted(tables, exposition, store, y), row) << "type " << static_cast<int>(type);
            ASSERT_EQ(rowBy(baseline::exposeRow, tables, exposition, store, y), row);
            if (__builtin_cpu_supports("avx2") != 0) {
                ASSERT_EQ(rowBy(avx2::exposeRow, tables, exposition, store, y), row);
            }
        }
    }
}

TEST_F(AutoExposition, PicturesOfEveryWidthComeOutAsTheStepsSay) {
    StoreMaker maker;
    for (int width = 1; width <= 200; ++width) {
        tables.build(std::ldexp(1.0F, width % 9), 1.0F / (1.0F + static_cast<float>(width % 6)));
        expectModel(tables, maker.random(width, 2, 120, 140));
        expectModel(tables, maker.random(width, 1, 0, 255));
        if (HasFatalFailure()) FAIL() << width;
    }
}

TEST_F(AutoExposition, PicturesLikePhotographsComeOutAsTheStepsSay) {
    for (const float multiplier : {1.0F, 128.0F, 65536.0F}) {
        tables.build(multiplier, 1.0F / 2.2F);
        expectModel(tables, bench::samplePicture(1000, 12, 1));
    }
}

void expectKernelsToFollowTheSteps(const ToneTables& tables, const RgbeStore& store, double whitePoint) {
    const LuminanceRange range{0.0F, 1.0F, whitePoint};
    const RowExposition exposition = expositionOf(ExpositionType::Max, range);
    for (int y = 0; y < store.dimY(); ++y) {
        const Row row = modelRow(tables, ExpositionType::Max, range, store, y);
        ASSERT_EQ(rowBy(baseline::exposeRow, tables, exposition, store, y), row) << whitePoint;
        if (__builtin_cpu_supports("avx2") != 0) {
            ASSERT_EQ(rowBy(avx2::exposeRow, tables, exposition, store, y), row) << whitePoint;
        }
    }
}

TEST_F(AutoExposition, WhitePointsOfOtherPicturesComeOutAsTheStepsSay) {
    StoreMaker maker;
    for (const double whitePoint : {0.0, 0x1p-140, 0x1p-60, 1e-6, 0.01, 1.0, 50.0, 1e10}) {
        expectKernelsToFollowTheSteps(tables, maker.random(300, 8, 0, 255), whitePoint);
        expectKernelsToFollowTheSteps(tables, maker.random(300, 8, 120, 145), whitePoint);
        if (HasFatalFailure()) return;
    }
    for (const double whitePoint : {0x1p59, 0x1p60, 0x1p61, 1e30}) {
        expectKernelsToFollowTheSteps(tables, maker.random(300, 8, 0, 110), whitePoint);
    }
}

TEST_F(AutoExposition, ResultsHalfwayBetweenTwoBytesComeOutAsTheStepsSay) {
    // Grey whose luminance is compressed to half a byte's step: every mantissa with white points all around.
    StoreMaker maker;
    for (int i = 0; i < 2000; ++i) {
        RgbeStore store = maker.random(64, 1, 130, 138);
        for (int x = 0; x < 64; ++x) store.row(1, 0)[x] = store.row(2, 0)[x] = store.row(0, 0)[x];
        expectKernelsToFollowTheSteps(tables, store, std::ldexp(1.0 + i / 2000.0, i % 7 - 3));
        if (HasFatalFailure()) return;
    }
}

TEST_F(AutoExposition, PicturesOfOneColourComeOutAsTheStepsSay) {
    for (const std::array<int, 4>& pixel :
         {std::array{255, 255, 255, 255}, std::array{255, 0, 0, 136}, std::array{0, 255, 0, 136},
          std::array{0, 0, 255, 136}, std::array{127, 127, 127, 136}, std::array{1, 2, 3, 90}}) {
        expectModel(tables, StoreMaker::plain(70, 1, pixel));
        if (HasFatalFailure()) FAIL() << testing::PrintToString(pixel);
    }
}

TEST_F(AutoExposition, ABlackAndASaturatedHalfComeOutAsTheStepsSay) {
    RgbeStore store = StoreMaker::plain(130, 2, {0, 0, 0, 0});
    for (int c = 0; c < 4; ++c) std::fill_n(store.row(c, 1), 130, std::uint8_t{255});
    expectModel(tables, store);
    store.row(3, 1)[5] = 254;
    expectModel(tables, store);
}

TEST_F(AutoExposition, NearlyEqualLuminancesComeOutAsTheStepsSay) {
    StoreMaker maker;
    for (int m = 0; m < 255; ++m) {
        RgbeStore store = maker.random(9, 1, 136, 136);
        for (int x = 0; x < 9; ++x) {
            for (int c = 0; c < 3; ++c) store.row(c, 0)[x] = static_cast<std::uint8_t>(m + (x + c) % 2);
        }
        expectModel(tables, store);
        if (HasFatalFailure()) FAIL() << m;
    }
}

// Pictures that are all but black.

TEST_F(AutoExposition, TheBrightestPixelBecomesWhiteDownToTheSmallestLuminance) {
    for (int stops = 0; stops <= 149; ++stops) {
        tables.build(std::ldexp(1.0F, -stops), 1.0F);
        EXPECT_EQ(painted(tables, ExpositionType::Max, rowOf({{128, 128, 128, 136}})), (Row{255, 255, 255}))
            << stops;
    }
}

/// As WithHdraetMaxTheBrightestPixelsLuminanceYmaxMapsTo1, where a Single has most of its digits and where it
/// has none.
TEST_F(AutoExposition, TheBrightestColourKeepsItsChromaticityDownToTheSmallestLuminance) {
    for (const int stops : {60, 64, 70, 100, 120}) {
        tables.build(std::ldexp(1.0F, -stops), 1.0F);
        const Row row = painted(tables, ExpositionType::Max, rowOf({{3, 2, 1, 136}, kGreenish}));
        EXPECT_EQ(Row(row.begin() + 3, row.end()), kGreenishAtLuminance1) << stops;
    }
    // 200.5 / 255 * 2^-149 is nearest to the smallest Single, 50.5 / 255 * 2^-149 to 0: green alone, whose
    // luminance 0.67023426 becomes 1. R is 2.5651 X - 1.1665 - 0.3986 Z with X 0.483232 and Z 0.183246:
    // -0.000004; G is 1.492026 and B 0.000004.
    tables.build(0x1p-149F, 1.0F);
    const Row row = painted(tables, ExpositionType::Max, rowOf({kGreenish}));
    EXPECT_EQ(row, (Row{0, 255, 0}));
}

TEST_F(AutoExposition, PicturesThatAreAllButBlackComeOutAsTheStepsSay) {
    StoreMaker maker;
    for (const int stops : {62, 63, 64, 66, 70, 90, 110, 118}) {
        tables.build(std::ldexp(1.0F, -stops), 1.0F);
        expectModel(tables, maker.random(150, 2, 128, 136));
        if (HasFatalFailure()) FAIL() << stops;
    }
}

}  // namespace
}  // namespace vrx::test
