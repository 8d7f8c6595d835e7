#include <gtest/gtest.h>

#include <cmath>

#include "effects/engine/smoothing.h"
#include "effects/engine/smoothing_rows.h"
#include "failure.h"
#include "ground/processor.h"
#include "pixel_buffer.h"

namespace vrx::test {
namespace {

constexpr int kSubscript = 9;

int weightedSum(const PixelBuffer& picture, int x, int y, int c) {
    const auto p = [&](int dx, int dy) { return static_cast<int>(picture.at(x + dx, y + dy, c)); };
    return p(-1, -1) + 2 * p(0, -1) + p(1, -1) + 2 * p(-1, 0) + 4 * p(0, 0) + 2 * p(1, 0) + p(-1, 1) +
           2 * p(0, 1) + p(1, 1);
}

/// Row by row as the effect is described, from an untouched copy.
PixelBuffer blurredByDescription(const PixelBuffer& picture) {
    PixelBuffer result = picture;
    result.forInner(1, 1, 2, [&](int x, int y, int c) {
        const float value = static_cast<float>(weightedSum(picture, x, y, c)) / 16.0F;
        result.at(x, y, c) = static_cast<std::uint8_t>(std::nearbyint(value));
    });
    return result;
}

PixelBuffer blurred(PixelBuffer picture) {
    blur(picture.bytes, picture.width, picture.height);
    return picture;
}

TEST(Blur, OnA3x4ImageChangesOnlyThePixel11) {
    PixelBuffer picture(3, 4);
    picture.fill([](int x, int y, int c) { return 10 * y + 3 * x + 100 * c; });
    picture.at(1, 1, 0) = 90;
    const PixelBuffer result = blurred(picture);
    PixelBuffer expected = picture;
    // Around 13, whose neighbours lie on a slope, stands 90: (16 * 13 + 4 * 77) / 16 = 32.25.
    expected.at(1, 1, 0) = 32;
    EXPECT_EQ(result, expected);
}

TEST(Blur, WeighsTheNeighbourhood121242121) {
    PixelBuffer picture(5, 7);
    picture.at(2, 2, 1) = 160;
    const PixelBuffer result = blurred(picture);
    const int expected[3][3] = {{10, 20, 10}, {20, 40, 20}, {10, 20, 10}};
    for (int y = 1; y <= 3; ++y) {
        for (int x = 1; x <= 3; ++x) EXPECT_EQ(result.at(x, y, 1), expected[y - 1][x - 1]) << x << ' ' << y;
    }
}

TEST(Blur, RoundsHalvesToEven) {
    PixelBuffer picture(3, 4);
    picture.at(1, 1, 0) = 2;   // 8 / 16
    picture.at(1, 1, 1) = 6;   // 24 / 16
    picture.at(1, 1, 2) = 10;  // 40 / 16
    const PixelBuffer result = blurred(picture);
    EXPECT_EQ(result.at(1, 1, 0), 0);
    EXPECT_EQ(result.at(1, 1, 1), 2);
    EXPECT_EQ(result.at(1, 1, 2), 2);
}

TEST(Blur, LeavesTheEdgesAndTheLastRowButOne) {
    PixelBuffer picture(6, 6);
    picture.fill([](int x, int y, int) { return (x + y) % 2 * 255; });
    const PixelBuffer result = blurred(picture);
    PixelBuffer expected = picture;
    // Ones and zeros of 255 in a chequer: half of all weights.
    expected.forInner(1, 1, 2, [&](int x, int y, int c) { expected.at(x, y, c) = 128; });
    EXPECT_EQ(result, expected);
}

TEST(Blur, AUniformImageIsUnchanged) {
    for (const int value : {0, 1, 127, 254, 255}) {
        const PixelBuffer picture = uniformPicture(19, 9, value);
        EXPECT_EQ(blurred(picture), picture);
    }
}

TEST(Blur, NeverTouchesThePadding) {
    for (int width = 3; width < 8; ++width) {
        const PixelBuffer picture = uniformPicture(width, 5, 200);  // marked behind each row
        EXPECT_EQ(blurred(picture), picture);
    }
}

TEST(Blur, DoesNothingBelow3ColumnsOr4Rows) {
    for (const Size& size : {Size{2, 9}, {1, 1}, {9, 3}, {9, 1}}) {
        PixelBuffer picture(size.width, size.height);
        picture.fill([](int x, int y, int) { return (x * 7 + y) * 31; });
        EXPECT_EQ(blurred(picture), picture) << size.width << 'x' << size.height;
    }
}

TEST(Blur, RefusesABufferShorterThanItsRowsAndChangesNothing) {
    PixelBuffer picture(5, 6);
    picture.fill([](int x, int y, int) { return x * y * 9; });
    std::vector<std::uint8_t> bytes(picture.bytes.begin(), picture.bytes.end() - 1);
    const std::vector<std::uint8_t> before = bytes;
    EXPECT_EQ(errorNumberOf([&] { blur(bytes, 5, 6); }), kSubscript);
    EXPECT_EQ(bytes, before);
}

TEST(Blur, ChecksTheLengthOfPicturesThatAreTooSmallToChange) {
    std::vector<std::uint8_t> bytes(7);
    EXPECT_EQ(errorNumberOf([&] { blur(bytes, 2, 1); }), kSubscript);
    bytes.resize(8);
    EXPECT_EQ(errorNumberOf([&] { blur(bytes, 2, 1); }), 0);
}

TEST(Blur, AcceptsALongerBuffer) {
    PixelBuffer picture(3, 4);
    picture.at(1, 1, 0) = 160;
    std::vector<std::uint8_t> bytes = picture.bytes;
    bytes.insert(bytes.end(), {1, 2, 3});
    blur(bytes, 3, 4);
    EXPECT_EQ(bytes[picture.offset(1, 1, 0)], 40);
    EXPECT_EQ(bytes.back(), 3);
}

TEST(Blur, TakesNegativeSizesForNoPixels) {
    std::vector<std::uint8_t> bytes = {1, 2, 3};
    for (const Size& size : {Size{-1, 5}, {5, -1}, {-5, -5}, {0, 9}, {INT32_MIN, INT32_MIN}}) {
        EXPECT_EQ(errorNumberOf([&] { blur(bytes, size.width, size.height); }), 0);
    }
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST(Blur, RefusesSizesWhoseProductOverflows) {
    std::vector<std::uint8_t> bytes(64);
    for (const Size& size : {Size{INT32_MAX, INT32_MAX}, {0x15555556, 4}, {1, 0x40000001}}) {
        EXPECT_EQ(errorNumberOf([&] { blur(bytes, size.width, size.height); }), kSubscript);
    }
}

using RowsFunction = void (*)(const SmoothingRows&);

PixelBuffer blurredBy(RowsFunction blurRows, PixelBuffer picture) {
    const std::size_t size = static_cast<std::size_t>(picture.width) * 3;
    std::vector<std::uint16_t> work(kSmoothingWorkRows * size);
    blurRows(
        {picture.bytes.data(), picture.stride, size, static_cast<std::size_t>(picture.height), work.data()});
    return picture;
}

TEST(Blur, GivesTheDescribedBytesWithEveryInstructionSet) {
    std::mt19937 random(1);
    for (int i = 0; i < 400; ++i) {
        const int width = 3 + static_cast<int>(random() % 60);
        const PixelBuffer picture = randomPicture(width, 4 + static_cast<int>(random() % 9), random);
        const PixelBuffer expected = blurredByDescription(picture);
        ASSERT_EQ(blurredBy(baseline::blurRows, picture), expected);
        if (hasAvx2()) {
            ASSERT_EQ(blurredBy(avx2::blurRows, picture), expected);
        }
        ASSERT_EQ(blurred(picture), expected);
    }
}

}  // namespace
}  // namespace vrx::test
