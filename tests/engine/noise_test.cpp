#include <gtest/gtest.h>

#include <array>

#include "failure.h"
#include "pixel_buffer.h"
#include "raster/engine/noise.h"

namespace vrx::test {
namespace {

PixelBuffer noise(int width, int height, bool grey, float seed) {
    PixelBuffer picture = uniformPicture(width, height, 99);
    randomisePixels(picture.bytes, width, height, grey, seed);
    return picture;
}

TEST(Noise, InColourLeavesEveryBlueByteAt0) {
    const PixelBuffer picture = noise(17, 13, false, 1.0F);
    for (int y = 0; y < 13; ++y) {
        for (int x = 0; x < 17; ++x) ASSERT_EQ(picture.at(x, y, 0), 0);
    }
}

TEST(Noise, InGreyHasThreeEqualBytesPerPixel) {
    const PixelBuffer picture = noise(17, 13, true, 1.0F);
    for (int y = 0; y < 13; ++y) {
        for (int x = 0; x < 17; ++x) {
            ASSERT_EQ(picture.at(x, y, 0), picture.at(x, y, 1));
            ASSERT_EQ(picture.at(x, y, 0), picture.at(x, y, 2));
        }
    }
}

TEST(Noise, LeavesThePadding) {
    for (const bool grey : {false, true}) {
        PixelBuffer picture = noise(5, 4, grey, 3.0F);
        PixelBuffer blank = picture;
        blank.fill([](int, int, int) { return 0; });
        picture.fill([](int, int, int) { return 0; });
        EXPECT_EQ(picture, blank);
        for (std::size_t y = 0; y < 4; ++y) EXPECT_EQ(picture.bytes[y * 16 + 15], kPaddingMark);
    }
}

TEST(Noise, IsUniformOverAllBytes) {
    std::array<int, 256> counts{};
    const PixelBuffer picture = noise(256, 256, true, 86399.0F);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) ++counts[picture.at(x, y, 1)];
    }
    // 65536 / 255 = 257 on average, half of that at both ends; some six standard deviations either way.
    for (int value = 1; value < 255; ++value) EXPECT_NEAR(counts[static_cast<std::size_t>(value)], 257, 96);
    EXPECT_NEAR(counts[0], 128, 68);
    EXPECT_NEAR(counts[255], 128, 68);
}

TEST(Noise, OfAnotherSeedIsAnotherOne) {
    EXPECT_EQ(noise(9, 9, false, 5.25F), noise(9, 9, false, 5.25F));
    EXPECT_NE(noise(9, 9, false, 5.25F), noise(9, 9, false, 5.5F));
}

TEST(Noise, InColourRunsDownTheColumns) {
    const PixelBuffer narrow = noise(1, 6, false, 7.0F);
    const PixelBuffer wide = noise(2, 6, false, 7.0F);
    for (int y = 0; y < 6; ++y) EXPECT_EQ(wide.at(0, y, 1), narrow.at(0, y, 1));
}

TEST(Noise, InGreyRunsAlongTheScanlines) {
    const PixelBuffer low = noise(6, 1, true, 7.0F);
    const PixelBuffer high = noise(6, 2, true, 7.0F);
    for (int x = 0; x < 6; ++x) EXPECT_EQ(high.at(x, 1, 0), low.at(x, 0, 0));
}

TEST(Noise, RefusesABufferShorterThanItsRowsAndChangesNothing) {
    std::vector<std::uint8_t> bytes(31, 9);
    EXPECT_EQ(errorNumberOf([&] { randomisePixels(bytes, 5, 2, false, 1.0F); }), 9);
    EXPECT_EQ(bytes, std::vector<std::uint8_t>(31, 9));
    EXPECT_EQ(errorNumberOf([&] { randomisePixels(bytes, 5, -2, false, 1.0F); }), 0);
    EXPECT_EQ(bytes, std::vector<std::uint8_t>(31, 9));
}

}  // namespace
}  // namespace vrx::test
