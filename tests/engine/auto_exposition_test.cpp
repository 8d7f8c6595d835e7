// Automatic exposition against its steps in plain double arithmetic, and against cases computed by hand.
#include "hdr/engine/auto_exposition.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "failure.h"
#include "hdr/engine/auto_exposition_rows.h"
#include "sample_picture.h"

namespace vrx::test {
namespace {

using Triple = std::array<double, 3>;
using Matrix = std::array<std::array<float, 3>, 3>;

constexpr Matrix kToXyz = {{{0.5141364F, 0.32387858F, 0.16036376F},
                            {0.265068F, 0.67023426F, 0.06409157F},
                            {0.0241188F, 0.1228178F, 0.84442663F}}};
constexpr Matrix kToRgb = {
    {{2.5651F, -1.1665F, -0.3986F}, {-1.0217F, 1.9777F, 0.0439F}, {0.0753F, -0.2543F, 1.1892F}}};

Triple operator*(const Matrix& m, const Triple& v) {
    Triple result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = double{m[i][0]} * v[0] + double{m[i][1]} * v[1] + double{m[i][2]} * v[2];
    }
    return result;
}

/// The luminance and the chromaticities x and y.
Triple yxyOf(const Triple& rgb) {
    const auto [X, Y, Z] = kToXyz * rgb;
    const double W = X + Y + Z;
    if (!(W > 0.0)) return {0.0, 0.0, 0.0};
    const double inverse = 1.0 / W;
    return {Y, X * inverse, Y * inverse};
}

Triple rgbOf(const Triple& yxy) {
    const auto [Y, x, y] = yxy;
    double X = 0.0;
    double Z = 0.0;
    if (Y > 0.0 && x > 0.0 && y > 0.0) {
        X = x * Y / y;
        Z = X / x - X - Y;
    }
    return kToRgb * Triple{X, Y, Z};
}

int byteOf(double component) {
    const double v = component * 255.0;
    if (v < 0.0) return 0;
    if (v > 255.0) return 255;
    const double floor = std::floor(v);
    const double rest = v - floor;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(floor, 2.0) == 1.0);
    return static_cast<int>(floor) + (up ? 1 : 0);
}

double exposed(double Y, ExpositionType type, const LuminanceRange& range) {
    if (type == ExpositionType::Max) return Y * (1.0 + Y * range.whitePoint) / (1.0 + Y);
    if (type == ExpositionType::MinMax) {
        return (Y - double{range.minimum}) / (double{range.maximum} - double{range.minimum});
    }
    return Y;
}

Triple colourAt(const ToneTables& tables, const RgbeStore& store, int x, int y) {
    const float* singles = tables.singles() + 256 * store.row(3, y)[x];
    return {singles[store.row(0, y)[x]], singles[store.row(1, y)[x]], singles[store.row(2, y)[x]]};
}

using Row = std::vector<int>;

Row modelRow(const ToneTables& tables, ExpositionType type, const LuminanceRange& range,
             const RgbeStore& store, int y) {
    Row row;
    for (int x = 0; x < store.dimX(); ++x) {
        Triple yxy = yxyOf(colourAt(tables, store, x, y));
        yxy[0] = exposed(yxy[0], type, range);
        const Triple rgb = rgbOf(yxy);
        row.insert(row.end(), {byteOf(rgb[2]), byteOf(rgb[1]), byteOf(rgb[0])});
    }
    return row;
}

LuminanceRange modelRange(const ToneTables& tables, const RgbeStore& store) {
    LuminanceRange range;
    for (int y = 0; y < store.dimY(); ++y) {
        for (int x = 0; x < store.dimX(); ++x) {
            const double Y = yxyOf(colourAt(tables, store, x, y))[0];
            if (Y < double{range.minimum}) range.minimum = static_cast<float>(Y);
            if (Y > double{range.maximum}) range.maximum = static_cast<float>(Y);
        }
    }
    const double whitePoint = 1.0 / (double{range.maximum} * double{range.maximum});
    range.whitePoint = whitePoint > 3.40282347e38 ? whitePoint : double{static_cast<float>(whitePoint)};
    return range;
}

Row painted(const ToneTables& tables, const RowExposition& exposition, const RgbeStore& store, int y) {
    std::vector<std::uint8_t> bgr(3 * static_cast<std::size_t>(store.dimX()));
    paintExposedRow(tables, exposition, store, y, bgr.data());
    return {bgr.begin(), bgr.end()};
}

/// With the range of the store itself.
Row painted(const ToneTables& tables, ExpositionType type, const RgbeStore& store) {
    return painted(tables, expositionOf(type, measureLuminance(tables, store)), store, 0);
}

/// A picture of one row of pixels given as R, G, B, E.
RgbeStore rowOf(const std::vector<std::array<int, 4>>& pixels) {
    RgbeStore store(static_cast<int>(pixels.size()), 1);
    for (std::size_t x = 0; x < pixels.size(); ++x) {
        for (int c = 0; c < 4; ++c) {
            store.row(c, 0)[x] = static_cast<std::uint8_t>(pixels[x][static_cast<std::size_t>(c)]);
        }
    }
    return store;
}

constexpr auto kNoOperator = static_cast<ExpositionType>(7);

struct AutoExposition : testing::Test {
    ToneTables tables;

    AutoExposition() { tables.build(1.0F, 1.0F); }
};

// By hand: with exposure 0 and gamma 1 a mantissa M of exponent 136 is (M + 0.5) / 255.

/// R 50.5, G 200.5, B 50.5: X 98.99991, Y 151.00453, Z 68.48651. With Y scaled to 1, X is 0.655609 and Z
/// 0.453540, so R is 2.5651 X - 1.1665 - 0.3986 Z = 0.334422, G 1.327774 and B 0.334417; 255ths: 85.28, 338.6
/// and 85.28.
const std::array<int, 4> kGreenish = {50, 200, 50, 136};
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

TEST_F(AutoExposition, MeasuresTheLuminanceOfTheTablesColours) {
    // Red 1 / 2 alone: 0.265068 / 2; green 1 / 2 alone: 0.67023426 / 2, but for the other components' halves
    // of 2^-8 that M = 0 still has with the same exponent: (0.5 / 255) * 0.73432583 and (0.5 / 255) *
    // 0.32915957.
    const RgbeStore store = rowOf({{127, 0, 0, 136}, {0, 127, 0, 136}});
    const LuminanceRange range = measureLuminance(tables, store);
    EXPECT_NEAR(range.minimum, 0.132534 + 0.00143986, 1e-7);
    EXPECT_NEAR(range.maximum, 0.33511713 + 0.00064541, 1e-7);
    EXPECT_NEAR(range.whitePoint, 8.87017, 1e-4);  // 1 / 0.33576254^2
}

TEST_F(AutoExposition, LeavesTheExtraColumnAndRowOut) {
    RgbeStore store = rowOf({kGreenish, kGreenish});
    const LuminanceRange range = measureLuminance(tables, store);
    for (int c = 0; c < 4; ++c) {
        store.row(c, 0)[2] = 255;
        store.row(c, 1)[0] = 255;
    }
    EXPECT_EQ(measureLuminance(tables, store).maximum, range.maximum);
}

TEST_F(AutoExposition, LuminancesBeyondTheStartingMinimumLeaveItAsItIs) {
    const LuminanceRange range = measureLuminance(tables, rowOf({{255, 255, 255, 255}}));
    EXPECT_EQ(range.minimum, 1.0e9F);
    EXPECT_GT(range.maximum, 1.0e35F);
    EXPECT_EQ(range.whitePoint, 0.0F);  // below 1e-70
}

// Faults.

TEST_F(AutoExposition, APictureWithoutAnyLuminanceDividesByZero) {
    tables.build(0.0F, 1.0F);
    EXPECT_EQ(errorNumberOf([this] { static_cast<void>(measureLuminance(tables, rowOf({kGreenish}))); }), 11);
}

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

class StoreMaker {
  public:
    RgbeStore random(int dimX, int dimY, int lowestExponent, int highestExponent) {
        RgbeStore store(dimX, dimY);
        const auto exponents = static_cast<unsigned>(highestExponent - lowestExponent + 1);
        for (int y = 0; y < dimY; ++y) {
            for (int x = 0; x < dimX; ++x) {
                for (int c = 0; c < 3; ++c) store.row(c, y)[x] = static_cast<std::uint8_t>(random_() % 256);
                store.row(3, y)[x] =
                    static_cast<std::uint8_t>(static_cast<unsigned>(lowestExponent) + random_() % exponents);
            }
        }
        return store;
    }

    static RgbeStore plain(int dimX, int dimY, const std::array<int, 4>& pixel) {
        RgbeStore store(dimX, dimY);
        for (int y = 0; y < dimY; ++y) {
            for (int c = 0; c < 4; ++c) {
                std::fill_n(store.row(c, y), dimX,
                            static_cast<std::uint8_t>(pixel[static_cast<std::size_t>(c)]));
            }
        }
        return store;
    }

  private:
    std::mt19937 random_{99};
};

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

/// The range must be that of every single pixel, however blocks of pixels are passed over.
TEST_F(AutoExposition, MeasuresOnePixelThatStandsOutAnywhere) {
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

TEST_F(AutoExposition, MeasuresWithTablesThatFall) {
    tables.build(1.0F, -0.5F);
    StoreMaker maker;
    for (int i = 0; i < 50; ++i) {
        const RgbeStore store = maker.random(200, 4, 100, 140);
        ASSERT_EQ(measureLuminance(tables, store).minimum, modelRange(tables, store).minimum);
        ASSERT_EQ(measureLuminance(tables, store).maximum, modelRange(tables, store).maximum);
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

TEST_F(AutoExposition, BothKernelsMeasureTheSame) {
    if (__builtin_cpu_supports("avx2") == 0) GTEST_SKIP() << "this processor has no AVX2";
    StoreMaker maker;
    for (int width = 1; width <= 200; ++width) {
        const RgbeStore store = maker.random(width, 1, 100, 160);
        const ExposureRow row{tables.singles(), store.row(0, 0), store.row(1, 0),
                              store.row(2, 0),     store.row(3, 0), static_cast<std::size_t>(width)};
        RowLuminance a{1.0e9, -1.0e9};
        RowLuminance b = a;
        baseline::widenLuminance(row, a);
        avx2::widenLuminance(row, b);
        EXPECT_EQ(a.minimum, b.minimum);
        EXPECT_EQ(a.maximum, b.maximum);
    }
}

// Pictures that are all but black.

TEST_F(AutoExposition, TheWhitePointIsASingleWhereItFitsOne) {
    // 1 / 0.3^2 in doubles is no Single.
    const RgbeStore store = rowOf({{76, 76, 76, 136}});
    const double whitePoint = measureLuminance(tables, store).whitePoint;
    EXPECT_EQ(whitePoint, double{static_cast<float>(whitePoint)});
}

TEST_F(AutoExposition, TheWhitePointBeyondASingleIsADouble) {
    // 0.5 * 2^-65 / 255 times 0.99939383 is a luminance Y of 5.31149e-23: 1 / Y^2 is 3.54459e44.
    const double whitePoint = measureLuminance(tables, rowOf({{0, 0, 0, 71}})).whitePoint;
    EXPECT_NEAR(whitePoint, 3.54459e44, 1e39);
}

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
