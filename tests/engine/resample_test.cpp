#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "failure.h"
#include "ground/processor.h"
#include "pixel_buffer.h"
#include "raster/engine/resample.h"
#include "raster/engine/resample_rows.h"

namespace vrx::test {
namespace {

constexpr int kSubscript = 9;
constexpr int kDivisionByZero = 11;

/// Scanline 0 is the bottom row, as in the description.
std::uint8_t& byteAt(PixelBuffer& picture, int x, int scanline, int c) {
    return picture.at(x, picture.height - 1 - scanline, c);
}

/// A coordinate of the target between two of the source.
struct Place {
    int first;
    int second;
    double fraction;

    Place(int source, int target, int i) {
        const auto scale = static_cast<float>((source - 1.0) / (target - 1.0));
        const double place = static_cast<double>(scale) * i;
        first = std::min(static_cast<int>(std::floor(place)), source - 1);
        second = std::min(first + 1, source - 1);
        fraction = place - std::floor(place);
    }
};

std::uint8_t describedByte(PixelBuffer& source, const Place& x, const Place& y, int c) {
    const auto blend = [&](int column) {
        return (1 - y.fraction) * byteAt(source, column, y.first, c) +
               y.fraction * byteAt(source, column, y.second, c);
    };
    const double value = (1 - x.fraction) * blend(x.first) + x.fraction * blend(x.second);
    return static_cast<std::uint8_t>(std::nearbyint(value));
}

PixelBuffer resampledByDescription(PixelBuffer source, int width, int height) {
    PixelBuffer result(width, height);
    result.forInner(0, 0, 0, [&](int x, int row, int c) {
        const int y = height - 1 - row;
        result.at(x, row, c) =
            describedByte(source, Place(source.width, width, x), Place(source.height, height, y), c);
    });
    return result;
}

PixelBuffer resampled(const PixelBuffer& source, int width, int height) {
    PixelBuffer target(width, height);
    resample({source.bytes, source.width, source.height}, {target.bytes, width, height});
    return target;
}

TEST(Resample, PutsMidpointsBetweenPixels) {
    PixelBuffer source(2, 2);
    source.at(0, 0, 0) = 0;
    source.at(1, 0, 0) = 100;
    source.at(0, 1, 0) = 40;
    source.at(1, 1, 0) = 200;
    const PixelBuffer result = resampled(source, 3, 3);
    const int expected[3][3] = {{0, 50, 100}, {20, 85, 150}, {40, 120, 200}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 3; ++x) EXPECT_EQ(result.at(x, y, 0), expected[y][x]) << x << ' ' << y;
    }
}

TEST(Resample, RoundsHalvesToEven) {
    PixelBuffer source(3, 2);
    for (int y = 0; y < 2; ++y) {
        source.at(1, y, 1) = 1;
        source.at(2, y, 1) = 4;
    }
    const PixelBuffer result = resampled(source, 5, 2);
    EXPECT_EQ(result.at(1, 0, 1), 0);  // 0.5
    EXPECT_EQ(result.at(3, 0, 1), 2);  // 2.5
}

/// The scales are Singles, so that far corners may be missed by a hair, which can move a byte by one.
void expectSameCorners(const PixelBuffer& source, const PixelBuffer& result) {
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(result.at(0, result.height - 1, c), source.at(0, source.height - 1, c));
        EXPECT_NEAR(result.at(0, 0, c), source.at(0, 0, c), 1);
        EXPECT_NEAR(result.at(result.width - 1, 0, c), source.at(source.width - 1, 0, c), 1);
    }
}

TEST(Resample, MapsCornersToCorners) {
    std::mt19937 random(5);
    const auto size = [&](unsigned least) { return static_cast<int>(least + random() % 40); };
    for (int i = 0; i < 200; ++i) {
        const PixelBuffer source = randomPicture(size(1), size(1), random);
        expectSameCorners(source, resampled(source, size(2), size(2)));
    }
}

TEST(Resample, ToItsOwnSizeLeavesThePixelsByteIdentical) {
    std::mt19937 random(6);
    for (int width = 1; width < 20; ++width) {
        const PixelBuffer source = randomPicture(width, 21 - width, random);
        EXPECT_EQ(resampled(source, width, 21 - width), source);
    }
}

TEST(Resample, ToAWidthOrHeightOf1FailsWithTheDivisionError) {
    const PixelBuffer source = uniformPicture(4, 4, 9);
    for (const Size& size : {Size{1, 4}, {4, 1}, {1, 1}}) {
        PixelBuffer target = uniformPicture(size.width, size.height, 1);
        EXPECT_EQ(errorNumberOf([&] {
                      resample({source.bytes, 4, 4}, {target.bytes, target.width, target.height});
                  }),
                  kDivisionByZero);
        EXPECT_EQ(target, uniformPicture(size.width, size.height, 1));
    }
}

TEST(Resample, OfOnePixelToOnePixelIsACopy) {
    EXPECT_EQ(resampled(uniformPicture(1, 1, 200), 1, 1), uniformPicture(1, 1, 200));
}

TEST(Resample, OfOneColumnRepeatsIt) {
    EXPECT_EQ(resampled(uniformPicture(1, 3, 50), 9, 3), uniformPicture(9, 3, 50));
}

TEST(Resample, OfAUniformPictureIsUniform) {
    for (const int value : {0, 1, 254, 255}) {
        EXPECT_EQ(resampled(uniformPicture(13, 7, value), 31, 5), uniformPicture(31, 5, value));
    }
}

TEST(Resample, RefusesMemoryShorterThanItsRows) {
    const std::vector<std::uint8_t> source(48);  // 4 x 4
    std::vector<std::uint8_t> target(24, 7);     // 2 x 3
    const std::vector<std::uint8_t> before = target;
    const auto error = [&](std::size_t sourceSize, std::size_t targetSize) {
        return errorNumberOf([&] {
            resample({std::span(source).first(sourceSize), 4, 4},
                     {std::span(target).first(targetSize), 2, 3});
        });
    };
    EXPECT_EQ(error(47, 24), kSubscript);
    EXPECT_EQ(error(48, 23), kSubscript);
    EXPECT_EQ(target, before);
    EXPECT_EQ(error(48, 24), 0);
}

TEST(Resample, RefusesSizesWhoseProductOverflows) {
    std::vector<std::uint8_t> bytes(64);
    EXPECT_EQ(errorNumberOf([&] { resample({bytes, INT32_MAX, INT32_MAX}, {bytes, 2, 2}); }), kSubscript);
    EXPECT_EQ(errorNumberOf([&] { resample({bytes, 2, 2}, {bytes, 0x15555556, 4}); }), kSubscript);
}

TEST(Resample, OfASourceWithoutPixelsFails) {
    std::vector<std::uint8_t> target(64);
    EXPECT_EQ(errorNumberOf([&] { resample({{}, 0, 5}, {target, 2, 2}); }), kSubscript);
    EXPECT_EQ(errorNumberOf([&] { resample({{}, 5, -1}, {target, 2, 2}); }), kSubscript);
}

TEST(Resample, LeavesATargetWithoutPixelsAlone) {
    const PixelBuffer source = uniformPicture(4, 4, 9);
    std::vector<std::uint8_t> target(8, 3);
    resample({source.bytes, 4, 4}, {target, -2, 5});
    EXPECT_EQ(target, std::vector<std::uint8_t>(8, 3));
}

void expectDescribedBytes(const PixelBuffer& source, int width, int height) {
    ASSERT_EQ(resampled(source, width, height), resampledByDescription(source, width, height))
        << source.width << 'x' << source.height << " to " << width << 'x' << height;
}

TEST(Resample, GivesTheDescribedBytesAtRandomSizes) {
    std::mt19937 random(7);
    for (int i = 0; i < 500; ++i) {
        const auto size = [&](unsigned least) { return static_cast<int>(least + random() % 50); };
        const PixelBuffer source = randomPicture(size(1), size(1), random);
        expectDescribedBytes(source, size(2), size(2));
        if (HasFatalFailure()) return;
    }
}

TEST(Resample, GivesTheDescribedBytesWhereManyValuesAreNextToAHalf) {
    std::mt19937 random(8);
    for (const int factor : {2, 3, 6, 10, 12, 14, 22}) {
        const PixelBuffer source = randomPicture(12, 9, random);
        expectDescribedBytes(source, 11 * factor + 1, 8 * factor + 1);
        expectDescribedBytes(source, 12 * factor, 9 * factor);
        expectDescribedBytes(randomPicture(11 * factor + 1, 8 * factor + 1, random), 12, 9);
        if (HasFatalFailure()) return;
    }
}

TEST(Resample, GivesTheDescribedBytesForFractionsOfManyBits) {
    // Steps of 1 / 256 in both directions still fit into a Single, those of 1 / 512 do not.
    std::mt19937 random(11);
    for (const int steps : {256, 512}) {
        for (int i = 0; i < 2; ++i) expectDescribedBytes(randomPicture(2, 2, random), steps + 1, steps + 1);
        if (HasFatalFailure()) return;
    }
}

TEST(Resample, GivesTheDescribedBytesAcrossTiles) {
    std::mt19937 random(9);
    // A tile takes some 1360 columns of the source.
    for (const auto& [sourceWidth, width] : {std::pair{5000, 2499}, {3000, 6001}, {9000, 30}, {20000, 5}}) {
        expectDescribedBytes(randomPicture(sourceWidth, 3, random), width, 4);
        if (HasFatalFailure()) return;
    }
}

/// One row between two, with every instruction set.
TEST(Resample, GivesTheSameBytesWithEveryInstructionSet) {
    if (!hasAvx2()) GTEST_SKIP() << "This processor has no AVX2.";
    std::mt19937 random(10);
    for (int i = 0; i < 500; ++i) {
        const auto width = static_cast<int>(2 + random() % 60);
        const auto count = 1 + random() % 70;
        const PixelBuffer source = randomPicture(width, 2, random);
        std::vector<std::uint32_t> lefts;
        std::vector<double> fractions;
        std::vector<float> singles;
        for (std::size_t x = 0; x < count; ++x) {
            lefts.push_back(static_cast<std::uint32_t>(random() % static_cast<unsigned>(width) * 3));
            fractions.push_back(random() % 3 == 0 ? 0.5 : static_cast<double>(random()) / 0x1p32);
            singles.push_back(static_cast<float>(fractions.back()));
        }
        std::sort(lefts.begin(), lefts.end());
        const std::size_t tileEnd = lefts.size();
        const ResampleColumns columns{lefts.data(),
                                      fractions.data(),
                                      singles.data(),
                                      lefts.size(),
                                      &tileEnd,
                                      1,
                                      static_cast<std::size_t>(width - 1) * 3};
        const ResampleRow row{source.bytes.data(), source.bytes.data() + source.stride, fractions[0], false};
        std::vector<std::uint8_t> plain(lefts.size() * 3);
        std::vector<std::uint8_t> fast(lefts.size() * 3);
        baseline::resampleRow(row, columns, plain.data());
        avx2::resampleRow(row, columns, fast.data());
        ASSERT_EQ(plain, fast);
    }
}

}  // namespace
}  // namespace vrx::test
