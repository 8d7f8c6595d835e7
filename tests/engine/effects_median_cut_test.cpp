#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "effects/engine/smoothing.h"
#include "effects/engine/smoothing_rows.h"
#include "failure.h"
#include "ground/processor.h"
#include "pixel_buffer.h"

namespace vrx::test {
namespace {

/// What one channel's neighbourhood looks like.
struct Neighbourhood {
    int values[9];
    int sum;
    int squares;

    explicit Neighbourhood(const int (&p)[9]) : values{}, sum(0), squares(0) {
        constexpr int kWeights[] = {1, 2, 1, 2, 4, 2, 1, 2, 1};
        std::copy(std::begin(p), std::end(p), values);
        for (int i = 0; i < 9; ++i) sum += kWeights[i] * values[i];
        const float mean = static_cast<float>(sum) / 16.0F;
        for (const int value : values) {
            const double distance = static_cast<double>(value) - static_cast<double>(mean);
            squares += static_cast<int>(std::nearbyint(distance * distance));
        }
    }

    /// The steps of the description, a Single after each.
    [[nodiscard]] std::uint8_t smoothed() const {
        const float mean = static_cast<float>(sum) / 16.0F;
        const float spread = std::clamp(static_cast<float>(squares / 36.0), 0.0F, 255.0F);
        const float alpha =
            std::clamp(static_cast<float>(static_cast<double>(spread) / 255.0 * 3.0), 0.0F, 1.0F);
        const double own = static_cast<double>(alpha) * values[4];
        const float value =
            static_cast<float>(own + (1.0 - static_cast<double>(alpha)) * static_cast<double>(mean));
        return static_cast<std::uint8_t>(std::nearbyint(std::clamp(value, 0.0F, 255.0F)));
    }
};

Neighbourhood neighbourhoodOf(const PixelBuffer& picture, int x, int y, int c) {
    int p[9];
    for (int i = 0; i < 9; ++i) p[i] = picture.at(x + i % 3 - 1, y + i / 3 - 1, c);
    return Neighbourhood(p);
}

PixelBuffer smoothedByDescription(const PixelBuffer& picture) {
    PixelBuffer result = picture;
    result.forInner(1, 1, 2, [&](int x, int y, int c) {
        result.at(x, y, c) = neighbourhoodOf(picture, x, y, c).smoothed();
    });
    return result;
}

PixelBuffer smoothed(PixelBuffer picture) {
    medianCut(picture.bytes, picture.width, picture.height);
    return picture;
}

void setAround(PixelBuffer& picture, int x, int y, const Neighbourhood& near) {
    for (int i = 0; i < 9; ++i) {
        for (int c = 0; c < 3; ++c) {
            picture.at(x + i % 3 - 1, y + i / 3 - 1, c) = static_cast<std::uint8_t>(near.values[i]);
        }
    }
}

TEST(MedianCut, AUniformImageIsUnchanged) {
    for (const int value : {0, 1, 100, 254, 255}) {
        const PixelBuffer picture = uniformPicture(23, 8, value);
        EXPECT_EQ(smoothed(picture), picture);
    }
}

TEST(MedianCut, ASingleBrightPixelOnAFlatBackgroundKeepsItsValue) {
    // The spread is above 85 at the pixel and at all eight around it.
    PixelBuffer picture = uniformPicture(7, 8, 100);
    for (int c = 0; c < 3; ++c) picture.at(3, 3, c) = 255;
    EXPECT_EQ(smoothed(picture), picture);
}

TEST(MedianCut, GentleNoiseIsReplacedByTheWeightedMean) {
    // Mean 100.25, squares 8 * 0 + 1, spread 1 / 36.
    PixelBuffer picture = uniformPicture(3, 4, 100);
    picture.at(1, 1, 2) = 101;
    EXPECT_EQ(smoothed(picture), uniformPicture(3, 4, 100));
}

TEST(MedianCut, BlendsThePixelAndTheMeanBetweenThese) {
    // Mean 105, squares 8 * 25 + 225, spread 425 / 36, alpha 425 / 3060: 105 + 15 * 0.1389 = 107.08.
    PixelBuffer picture = uniformPicture(3, 4, 100);
    picture.at(1, 1, 0) = 120;
    EXPECT_EQ(smoothed(picture).at(1, 1, 0), 107);
}

TEST(MedianCut, RoundsHalvesToEvenWhereNothingSpreads) {
    // All squares are 0.25 and round to 0. The sum is 8 more than 16 times 10, then 16 times 11.
    PixelBuffer picture(3, 4);
    picture.fill([](int x, int, int c) { return 10 + c % 2 + (x == 1 ? 1 : 0); });
    const PixelBuffer result = smoothed(picture);
    EXPECT_EQ(result.at(1, 1, 0), 10);
    EXPECT_EQ(result.at(1, 1, 1), 12);
}

TEST(MedianCut, LeavesTheEdgesAndTheLastRowButOne) {
    PixelBuffer picture(6, 6);
    picture.fill([](int x, int y, int) { return 100 + (x + y) % 2 * 9; });
    const PixelBuffer result = smoothed(picture);
    PixelBuffer expected = picture;
    // Means of 104.5, squares 9 * 20, alpha 180 / 3060: a quarter towards the byte itself.
    expected.forInner(1, 1, 2,
                      [&](int x, int y, int c) { expected.at(x, y, c) = (x + y) % 2 == 0 ? 104 : 105; });
    EXPECT_EQ(result, expected);
}

TEST(MedianCut, RefusesABufferShorterThanItsRowsAndChangesNothing) {
    PixelBuffer picture(5, 6);
    picture.fill([](int x, int y, int) { return x * y * 9; });
    std::vector<std::uint8_t> bytes(picture.bytes.begin(), picture.bytes.end() - 1);
    const std::vector<std::uint8_t> before = bytes;
    EXPECT_EQ(errorNumberOf([&] { medianCut(bytes, 5, 6); }), 9);
    EXPECT_EQ(bytes, before);
}

TEST(MedianCut, DoesNothingBelow3ColumnsOr4RowsOrForNegativeSizes) {
    for (const Size& size : {Size{2, 9}, {9, 3}}) {
        PixelBuffer picture(size.width, size.height);
        picture.fill([](int x, int y, int) { return (x * 7 + y) * 31; });
        EXPECT_EQ(smoothed(picture), picture) << size.width << 'x' << size.height;
    }
    EXPECT_EQ(errorNumberOf([] { medianCut({}, -3, 4); }), 0);
}

using RowsFunction = void (*)(const SmoothingRows&);

PixelBuffer smoothedBy(RowsFunction smoothRows, PixelBuffer picture) {
    const std::size_t size = static_cast<std::size_t>(picture.width) * 3;
    std::vector<std::uint16_t> work(kSmoothingWorkRows * size);
    smoothRows(
        {picture.bytes.data(), picture.stride, size, static_cast<std::size_t>(picture.height), work.data()});
    return picture;
}

void expectDescribedBytes(const PixelBuffer& picture) {
    const PixelBuffer expected = smoothedByDescription(picture);
    ASSERT_EQ(smoothedBy(baseline::medianCutRows, picture), expected);
    if (hasAvx2()) {
        ASSERT_EQ(smoothedBy(avx2::medianCutRows, picture), expected);
    }
    ASSERT_EQ(smoothed(picture), expected);
}

TEST(MedianCut, GivesTheDescribedBytesWithEveryInstructionSet) {
    std::mt19937 random(2);
    for (int i = 0; i < 600; ++i) {
        const int width = 3 + static_cast<int>(random() % 40);
        expectDescribedBytes(randomPicture(width, 4 + static_cast<int>(random() % 9), random));
        if (HasFatalFailure()) return;
    }
}

/// Values of one level with some noise, or nearly black with a few brighter ones: there a Single is finest,
/// and the steps leave an exact half most easily.
Neighbourhood randomNeighbourhood(std::mt19937& random) {
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const bool dark = below(2) == 0;
    const int base = dark ? 0 : below(216);
    const int amplitude = dark ? 4 : 2 + below(38);
    int p[9];
    for (int& value : p) value = base + below(amplitude);
    for (int i = dark ? below(4) : 0; i > 0; --i) p[below(9)] = below(70);
    return Neighbourhood(p);
}

/// Neighbourhoods whose exact result lies within a few 48960ths of a half, found by trying.
std::vector<Neighbourhood> neighbourhoodsNearHalves(std::size_t count) {
    std::mt19937 random(3);
    std::vector<Neighbourhood> found;
    while (found.size() < count) {
        const Neighbourhood near = randomNeighbourhood(random);
        if (near.squares == 0 || near.squares > 3060) continue;
        const int numerator = 3060 * near.sum + near.squares * (16 * near.values[4] - near.sum);
        if (std::abs(numerator % 48960 - 24480) <= 3) found.push_back(near);
    }
    return found;
}

TEST(MedianCut, DecidesNearHalvesAsTheStepsDo) {
    const std::vector<Neighbourhood> found = neighbourhoodsNearHalves(500);
    constexpr int kAcross = 20;
    PixelBuffer picture(3 * kAcross, static_cast<int>(found.size()) / kAcross * 3 + 1);
    for (int i = 0; i < static_cast<int>(found.size()); ++i) {
        setAround(picture, 3 * (i % kAcross) + 1, 3 * (i / kAcross) + 1, found[static_cast<std::size_t>(i)]);
    }
    expectDescribedBytes(picture);
}

TEST(MedianCut, HoldsForTheLargestSquares) {
    PixelBuffer picture(30, 12);
    std::mt19937 random(4);
    for (const int rest : {0, 255}) {
        picture.fill([&](int, int, int) { return random() % 9 == 0 ? 255 - rest : rest; });
        expectDescribedBytes(picture);
    }
}

}  // namespace
}  // namespace vrx::test
