// A picture's parameters, pixels, painting and conversion.
#include "hdr/engine/hdr_picture.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

#include "failure.h"
#include "hdr/engine/rgbe_writer.h"
#include "memory_sink.h"

namespace vrx::test {
namespace {

using Pixel = std::array<int, 4>;
using Bgr = std::array<int, 3>;

RgbeStore onePixel(const Pixel& pixel) {
    RgbeStore store(1, 1);
    for (int c = 0; c < 4; ++c) {
        store.row(c, 0)[0] = static_cast<std::uint8_t>(pixel[static_cast<std::size_t>(c)]);
    }
    return store;
}

Bgr firstOf(const BitmapRows& rows) {
    std::array<std::uint8_t, 3> bgr{};
    rows.paint(0, bgr.data());
    return {bgr[0], bgr[1], bgr[2]};
}

Bgr firstOf(const Bitmap24& bitmap) { return {bitmap.data()[0], bitmap.data()[1], bitmap.data()[2]}; }

struct Picture : testing::Test {
    HdrPicture picture;

    Bgr paintedPixel(const Pixel& pixel) {
        picture.setStore(onePixel(pixel));
        picture.paint();
        return firstOf(picture.preview());
    }
    Bgr convertedPixel(const Pixel& pixel, float exposure, float gamma) {
        picture.setStore(onePixel(pixel));
        return firstOf(picture.convert(exposure, gamma));
    }
};

// Parameters.

TEST_F(Picture, StartsEmptyWithAutoExpositionOffAndHdraetMax) {
    EXPECT_EQ(picture.dimX(), 0);
    EXPECT_EQ(picture.dimY(), 0);
    EXPECT_TRUE(picture.store().empty());
    EXPECT_FALSE(picture.autoExposition());
    EXPECT_EQ(picture.expositionType(), ExpositionType::Max);
    EXPECT_FALSE(picture.tablesBuilt());
}

TEST_F(Picture, Gamma0Point5ReadsBackAs1AndGamma10ReadsBackAs6) {
    picture.setGamma(0.5F);
    EXPECT_EQ(picture.gamma(), 1.0F);
    picture.setGamma(10.0F);
    EXPECT_EQ(picture.gamma(), 6.0F);
    picture.setGamma(2.2F);
    EXPECT_EQ(picture.gamma(), 2.2F);
    picture.setGamma(-std::numeric_limits<float>::infinity());
    EXPECT_EQ(picture.gamma(), 1.0F);
}

TEST_F(Picture, ParametersNeverFail) {
    for (const float value : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::max(), 128.0F}) {
        picture.setGamma(value);
        picture.setExposure(value);
        EXPECT_GE(picture.gamma(), 1.0F);
        EXPECT_LE(picture.gamma(), 6.0F);
    }
    EXPECT_EQ(picture.exposure(), 128.0F);
}

// Painting.

TEST_F(Picture, ANewObjectPaintedAfterGammaButBeforeExposureIsAssignedYieldsABlackImage) {
    picture.setGamma(2.2F);
    EXPECT_EQ(paintedPixel({255, 200, 150, 200}), (Bgr{0, 0, 0}));
}

TEST_F(Picture, WithBothUnassignedEveryComponentComesOutAs1) {
    EXPECT_EQ(paintedPixel({255, 0, 150, 200}), (Bgr{1, 1, 1}));
}

TEST_F(Picture, WithExposure0AndGamma1APixel128And128And128And136GivesBytesOf128) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    EXPECT_EQ(paintedPixel({128, 128, 128, 136}), (Bgr{128, 128, 128}));
}

TEST_F(Picture, BytesAreBlueGreenRed) {
    picture.setExposure(1.0F);
    picture.setGamma(1.0F);
    EXPECT_EQ(paintedPixel({10, 20, 30, 136}), (Bgr{61, 41, 21}));  // 2 * 30.5, 2 * 20.5, 2 * 10.5
}

// By long double: with 1 / 2.2 rounded to Single (0x1.d1745cp-2) the powers are 203.499986 and 25.4999996;
// with 1 / 2.2 in any more digits they are above the half.
TEST_F(Picture, Gamma2Point2Uses1Over2Point2RoundedToSingle) {
    picture.setGamma(2.2F);
    picture.setExposure(-0.328125F);
    EXPECT_EQ(paintedPixel({73, 73, 73, 147}), (Bgr{203, 203, 203}));
    picture.setExposure(-0.171875F);
    EXPECT_EQ(paintedPixel({87, 87, 87, 140}), (Bgr{25, 25, 25}));
}

TEST_F(Picture, AnExposureBeyondASinglePaintsWhite) {
    picture.setGamma(1.0F);
    picture.setExposure(200.0F);
    EXPECT_EQ(paintedPixel({1, 1, 1, 136}), (Bgr{255, 255, 255}));
}

TEST_F(Picture, PaintsTheFirstRowAtTheTop) {
    RgbeStore store(1, 2);
    for (int y = 0; y < 2; ++y) {
        for (int c = 0; c < 3; ++c) store.row(c, y)[0] = static_cast<std::uint8_t>(100 + 10 * y + 2 * c);
        store.row(3, y)[0] = 137;
    }
    picture.setExposure(-1.0F);
    picture.setGamma(1.0F);
    picture.setStore(std::move(store));
    picture.paint();
    const Bitmap24& bitmap = picture.preview();
    // (M + 0.5) * 2 / 2, half to even: 110.5, 112.5, 114.5 in the last row, 100.5, 102.5, 104.5 in the first.
    const std::vector<int> expected = {114, 112, 110, 0, 104, 102, 100, 0};
    EXPECT_EQ(std::vector<int>(bitmap.data(), bitmap.data() + bitmap.size()), expected);
}

TEST_F(Picture, PaintsWithAutoExposition) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    picture.setAutoExposition(true);
    // Of a single pixel the luminance becomes 1: grey (0.998979, 1, 0.991969) / 1 is above 1 in every
    // component.
    EXPECT_EQ(paintedPixel({1, 1, 1, 136}), (Bgr{255, 255, 255}));
    picture.setExpositionType(ExpositionType::MinMax);
    EXPECT_EQ(errorNumberOf([this] { picture.paint(); }), 11);
}

TEST_F(Picture, PaintsAndConvertsWithAutoExpositionWhatItHasPaintedPlainWithOtherParameters) {
    const auto bytesOf = [](const HdrPicture& painted) {
        const Bitmap24& bitmap = painted.preview();
        return std::vector<std::uint8_t>(bitmap.data(), bitmap.data() + bitmap.size());
    };
    RgbeStore store(3, 1);
    for (std::uint8_t x = 0; x < 3; ++x) {
        for (int c = 0; c < 3; ++c) store.row(c, 0)[x] = static_cast<std::uint8_t>(20 * x + 3 * c);
        store.row(3, 0)[x] = 130;
    }
    const auto makeReady = [&](HdrPicture& given) {
        given.setStore(RgbeStore(3, 1, {store.data(), store.size()}));
        given.setGamma(2.0F);
        given.setExposure(5.0F);
        given.setAutoExposition(true);
    };
    HdrPicture fresh;
    makeReady(fresh);
    fresh.paint();
    picture.setGamma(1.5F);
    picture.setExposure(-2.0F);
    picture.setStore(onePixel({1, 2, 3, 136}));
    picture.paint();
    makeReady(picture);
    const BitmapRows converted = picture.convert(5.0F, 2.0F);
    std::vector<std::uint8_t> row(12);
    converted.paint(0, row.data());
    EXPECT_EQ(row, bytesOf(fresh));
    picture.paint();
    EXPECT_EQ(bytesOf(picture), bytesOf(fresh));
}

TEST_F(Picture, TheDivisionOfHdraetMinMaxIsCheckedOnceForAPaintingNotInEveryRow) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    static_cast<void>(paintedPixel({10, 20, 30, 136}));
    picture.setAutoExposition(true);
    picture.setExpositionType(ExpositionType::MinMax);
    picture.setStore(RgbeStore(3, 2));
    EXPECT_EQ(errorNumberOf([this] { picture.paint(); }), 11);
    // The bitmap of before: nothing was begun.
    EXPECT_EQ(picture.preview().width(), 1U);
    EXPECT_EQ(firstOf(picture.preview()), (Bgr{30, 20, 10}));
}

TEST_F(Picture, RowsOfManyPixelsAndExponentsArePaintedLikeSinglePixels) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    for (int width = 1; width <= 40; ++width) {
        RgbeStore store(width, 1);
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c) store.row(c, 0)[x] = static_cast<std::uint8_t>(3 * x + c);
            store.row(3, 0)[x] = static_cast<std::uint8_t>(x % 11 == 7 ? 137 : 136);
        }
        picture.setStore(std::move(store));
        picture.paint();
        const std::uint8_t* bgr = picture.preview().data();
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c) {
                const int m = 3 * x + c;
                const int expected = x % 11 == 7 ? std::min(2 * m + 1, 255) : (m + 1) / 2 * 2;
                ASSERT_EQ(bgr[3 * x + 2 - c], expected) << width << ' ' << x << ' ' << c;
            }
        }
    }
}

TEST_F(Picture, AnEmptyPicturePaintsNothing) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    picture.setAutoExposition(true);
    picture.paint();
    EXPECT_TRUE(picture.preview().empty());
    EXPECT_EQ(picture.convert(0.0F, 1.0F).height, 0U);
    EXPECT_TRUE(picture.tablesBuilt());
}

// Conversion with other parameters: (0 + 0.5) * 2^(140 - 136) is 8.

TEST_F(Picture, ConvertingWithMinus1And2Point2KeepsTheExposureAndUsesTheGammaWithoutChangingTheProperty) {
    picture.setExposure(3.0F);
    picture.setGamma(1.0F);
    // (128.5 * 8) ^ (1 / 2.2) = 1028 ^ 0.4545454 = 23.39
    EXPECT_EQ(convertedPixel({128, 128, 128, 136}, -1.0F, 2.2F), (Bgr{23, 23, 23}));
    EXPECT_EQ(picture.gamma(), 1.0F);
    EXPECT_EQ(picture.exposure(), 3.0F);
}

TEST_F(Picture, ConvertingWith0Point5And0Point5UsesTheInverseGamma2) {
    picture.setExposure(0.0F);
    picture.setGamma(2.2F);
    EXPECT_EQ(convertedPixel({0, 0, 0, 140}, 0.5F, 0.5F), (Bgr{128, 128, 128}));  // (8 * 2^0.5)^2
    EXPECT_EQ(picture.gamma(), 2.2F);
    EXPECT_EQ(picture.exposure(), 0.0F);
}

TEST_F(Picture, ConvertingWithMinus1OrLessKeepsBothValues) {
    picture.setExposure(4.0F);
    picture.setGamma(1.0F);
    EXPECT_EQ(convertedPixel({0, 0, 0, 140}, -1.0F, -1.0F), (Bgr{128, 128, 128}));  // 8 * 16
    EXPECT_EQ(convertedPixel({0, 0, 0, 140}, -5.0F, -5.0F), (Bgr{128, 128, 128}));
}

TEST_F(Picture, ConvertingTakesAnyValueAboveMinus1) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    EXPECT_EQ(convertedPixel({0, 0, 0, 140}, -0.5F, 1.0F), (Bgr{6, 6, 6}));     // 8 * 0.7071 = 5.66
    EXPECT_EQ(convertedPixel({0, 0, 0, 135}, 0.0F, -0.5F), (Bgr{16, 16, 16}));  // 0.25 ^ -2
    EXPECT_EQ(convertedPixel({0, 0, 0, 146}, 0.0F, 8.0F), (Bgr{2, 2, 2}));      // 512 ^ 0.125 = 2.18
}

TEST_F(Picture, ConvertingWithAGammaOf0DividesByZero) {
    EXPECT_EQ(errorNumberOf([this] { static_cast<void>(picture.convert(-1.0F, 0.0F)); }), 11);
}

TEST_F(Picture, ConvertedValuesStayUntilTheNextPaint) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    picture.setStore(onePixel({0, 0, 0, 140}));
    picture.paint();
    static_cast<void>(picture.convert(0.5F, 0.5F));
    picture.buildTables();
    picture.previewRow(0);
    EXPECT_EQ(firstOf(picture.preview()), (Bgr{128, 128, 128}));
    picture.paint();
    EXPECT_EQ(firstOf(picture.preview()), (Bgr{8, 8, 8}));
}

TEST_F(Picture, ConvertingLeavesThePreviewAlone) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    picture.setStore(onePixel({0, 0, 0, 140}));
    picture.paint();
    EXPECT_EQ(firstOf(picture.convert(4.0F, 1.0F)), (Bgr{128, 128, 128}));
    EXPECT_EQ(firstOf(picture.preview()), (Bgr{8, 8, 8}));
}

// Pixels.

TEST_F(Picture, GettingAComponentGivesItsLinearValue) {
    picture.setStore(onePixel({127, 0, 255, 136}));
    EXPECT_EQ(picture.component(0, 0, 0), 127.5F);
    EXPECT_EQ(picture.component(0, 0, 1), 0.5F);
    EXPECT_EQ(picture.component(0, 0, 2), 255.5F);
    EXPECT_EQ(picture.component(0, 0, 3), 136.5F);
    picture.setStore(onePixel({127, 0, 255, 140}));
    EXPECT_EQ(picture.component(0, 0, 0), 2040.0F);  // 127.5 * 16
    EXPECT_EQ(picture.component(0, 0, 3), 2248.0F);  // 140.5 * 16
}

TEST_F(Picture, GetCompoAtAnXYOutsideTheStoreReturns2ToTheMinus136WithoutRaisingAnError) {
    EXPECT_EQ(picture.component(0, 0, 0), 0x1p-136F);
    picture.setStore(onePixel({127, 0, 255, 140}));
    EXPECT_EQ(picture.component(-1, 0, 0), 0x1p-136F);
    EXPECT_EQ(picture.component(0, -1, 0), 0x1p-136F);
    EXPECT_EQ(picture.component(2, 0, 0), 0x1p-136F);
    EXPECT_EQ(picture.component(0, 2, 0), 0x1p-136F);
    EXPECT_EQ(picture.component(2147483647, -2147483647 - 1, 9), 0x1p-136F);
}

TEST_F(Picture, AComponentThatDoesNotExistGivesTheScaleAlone) {
    picture.setStore(onePixel({127, 0, 255, 140}));
    EXPECT_EQ(picture.component(0, 0, 4), 16.0F);
    EXPECT_EQ(picture.component(0, 0, -1), 16.0F);
}

TEST_F(Picture, TheExtraColumnAndRowBelongToTheStore) {
    picture.setStore(onePixel({127, 0, 255, 140}));
    EXPECT_EQ(picture.component(1, 0, 0), 0x1p-137F);  // 0.5 * 2^-136
    EXPECT_EQ(picture.component(0, 1, 0), 0x1p-137F);
    EXPECT_EQ(picture.component(1, 1, 2), 0x1p-137F);
}

TEST_F(Picture, PercentAreLinearValuesTimes100) {
    picture.setStore(onePixel({127, 0, 255, 130}));
    // 2^-6 * 100 = 1.5625 times 127.5, 0.5 and 255.5; exposure and gamma do not matter.
    picture.setExposure(5.0F);
    picture.setGamma(2.2F);
    EXPECT_EQ(picture.percentAt(0, 0), (std::array{199.21875, 0.78125, 399.21875}));
    EXPECT_EQ(picture.percentAt(1, 1), (std::array{0x1p-137 * 100, 0x1p-137 * 100, 0x1p-137 * 100}));
    EXPECT_EQ(picture.percentAt(2, 0), std::nullopt);
    EXPECT_EQ(picture.percentAt(0, -1), std::nullopt);
}

TEST_F(Picture, SettingAnArrayWithBounds0To99And0To49And0To3GivesDimX99AndDimY49) {
    picture.setStore(RgbeStore(99, 49));
    EXPECT_EQ(picture.dimX(), 99);
    EXPECT_EQ(picture.dimY(), 49);
    EXPECT_EQ(picture.store().size(), 20000U);  // 100 * 50 * 4
}

TEST_F(Picture, ClearingLeavesNoPixels) {
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    static_cast<void>(paintedPixel({1, 2, 3, 136}));
    picture.clear();
    EXPECT_EQ(picture.dimX(), 0);
    EXPECT_EQ(picture.dimY(), 0);
    EXPECT_TRUE(picture.store().empty());
    EXPECT_TRUE(picture.preview().empty());
    EXPECT_EQ(picture.gamma(), 1.0F);
}

TEST_F(Picture, ALoadHoldsItUntilAnotherOneOrOtherPixelsOrTheirClearingTakeItsPlace) {
    const auto lostBy = [this](auto action) {
        const PictureFilling filling(picture, {3, 2});
        action();
        return !filling.holds();
    };
    EXPECT_TRUE(lostBy([this] { picture.setStore(RgbeStore(2, 2)); }));
    EXPECT_TRUE(lostBy([this] { picture.clear(); }));
    EXPECT_TRUE(lostBy([this] { const PictureFilling other(picture, {3, 2}); }));
    EXPECT_FALSE(lostBy([this] { picture.makeRoom(true); }));
    EXPECT_FALSE(lostBy([this] { picture.setExposure(1.0F); }));
    EXPECT_FALSE(lostBy([this] { picture.paint(); }));
    EXPECT_FALSE(lostBy([this] { static_cast<void>(picture.convert(1.0F, 1.0F)); }));
}

TEST_F(Picture, HasTheSizesThatALoadAnnouncesAndThePixelsOfBeforeUntilThereIsRoom) {
    picture.setStore(onePixel({127, 0, 255, 136}));
    {
        const PictureFilling filling(picture, {5, 4});
        EXPECT_EQ(picture.dimX(), 5);
        EXPECT_EQ(picture.dimY(), 4);
        EXPECT_EQ(picture.component(0, 0, 0), 127.5F);
        picture.makeRoom(false);
        EXPECT_EQ(picture.store().size(), 120U);  // 6 * 5 * 4
        EXPECT_TRUE(picture.preview().empty());
    }
    EXPECT_EQ(picture.dimX(), 5);
    EXPECT_EQ(picture.dimY(), 4);
}

TEST_F(Picture, RoomOfTheSameSizesReadsAsZero) {
    picture.setStore(RgbeStore(3, 2));
    std::fill_n(picture.store().data(), picture.store().size(), std::uint8_t{9});
    picture.makeRoom(true);
    std::fill_n(picture.store().data(), picture.store().size(), std::uint8_t{9});
    picture.previewRow(0);
    picture.makeRoom(true);
    for (std::size_t i = 0; i < picture.store().size(); ++i) EXPECT_EQ(picture.store().data()[i], 0);
    for (std::size_t i = 0; i < picture.preview().size(); ++i) EXPECT_EQ(picture.preview().data()[i], 0);
}

TEST_F(Picture, AStoreThatNoMemoryHoldsHasItsSizesAndNoBytes) {
    picture.setStore(RgbeStore(3, 2));
    {
        const PictureFilling filling(picture, {2147483647, 2147483647});
        EXPECT_EQ(errorNumberOf([this] { picture.makeRoom(true); }), 7);
    }
    EXPECT_EQ(picture.dimX(), 2147483647);
    EXPECT_TRUE(picture.store().empty());
    EXPECT_EQ(picture.component(0, 0, 0), 0x1p-136F);
    picture.paint();
    EXPECT_TRUE(picture.preview().empty());
    MemorySink sink;
    EXPECT_EQ(failureOf([&] { picture.encode(sink); }), kFileError);
    picture.clear();
    EXPECT_EQ(picture.dimX(), 0);
    // Sizes that a file can name, of which there is only no memory.
    RgbeStore store;
    EXPECT_EQ(errorNumberOf([&] { store.reset(65535, 65535); }), 7);
    EXPECT_EQ(failureOf([&] { encodeRgbe(store, sink); }), kFileError);
}

TEST_F(Picture, AStoreOfGivenBytesHoldsACopy) {
    std::vector<std::uint8_t> bytes(4 * 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i);
    const RgbeStore store(3, 2, bytes);
    bytes.clear();
    EXPECT_EQ(store.dimX(), 3);
    EXPECT_EQ(store.dimY(), 2);
    EXPECT_EQ(store.row(0, 0)[1], 1);
    EXPECT_EQ(store.row(3, 2)[3], 47);
}

TEST_F(Picture, AnErasedPicturePaintsAnEmptyBitmap) {
    static_cast<void>(paintedPixel({1, 2, 3, 136}));
    picture.setStore({});
    EXPECT_FALSE(picture.preview().empty());
    picture.paint();
    EXPECT_TRUE(picture.preview().empty());
}

TEST_F(Picture, ThatNeverPaintsHasNoToneTables) {
    picture.setStore(onePixel({1, 2, 3, 4}));
    EXPECT_LT(sizeof picture, 1024U);
    EXPECT_FALSE(picture.tablesBuilt());
}

TEST_F(Picture, EncodesItsStore) {
    picture.setStore(onePixel({1, 2, 3, 4}));
    MemorySink sink;
    picture.encode(sink);
    const std::string header =
        "#?RADIANCE\nSOFTWARE=QUILB\nFORMAT=32-bit_rle_rgbe\nEXPOSURE=1.0000000000000\n\n-Y 1 +X 1\n";
    std::vector<std::uint8_t> expected(header.begin(), header.end());
    for (const int byte : {2, 2, 0, 1, 1, 1, 1, 2, 1, 3, 1, 4}) {
        expected.push_back(static_cast<std::uint8_t>(byte));
    }
    EXPECT_EQ(sink.bytes, expected);
}

}  // namespace
}  // namespace vrx::test
