#include <gtest/gtest.h>

#include <cmath>

#include "effects/engine/grey.h"
#include "failure.h"
#include "pixel_buffer.h"

namespace vrx::test {
namespace {

/// A pixel through the conversion; all its bytes must be the same.
int converted(int blue, int green, int red, GreyStyle style) {
    std::vector<std::uint8_t> pixel = {static_cast<std::uint8_t>(blue), static_cast<std::uint8_t>(green),
                                       static_cast<std::uint8_t>(red), 77};
    convertToGrey(pixel, 1, 1, style);
    EXPECT_EQ(pixel, (std::vector<std::uint8_t>{pixel[0], pixel[0], pixel[0], 77}));
    return pixel[0];
}

constexpr GreyStyle twoColor(std::uint8_t threshold) { return {true, threshold}; }

TEST(Grey, MapsBlackTo128AndWhiteTo255) {
    EXPECT_EQ(converted(0, 0, 0, {}), 128);
    EXPECT_EQ(converted(255, 255, 255, {}), 255);
}

TEST(Grey, HalvesTheRoundedMeanOfTheThreeBytes) {
    EXPECT_EQ(converted(10, 20, 31, {}), 138);  // 20.33 is 20
    EXPECT_EQ(converted(10, 20, 32, {}), 138);  // 20.67 is 21, half of that 10
    EXPECT_EQ(converted(10, 20, 35, {}), 139);  // 21.67 is 22
}

TEST(Grey, OfTwoColoursWithThreshold255IsAllBlack) {
    for (const int value : {0, 1, 128, 254, 255}) EXPECT_EQ(converted(value, value, value, twoColor(255)), 0);
}

TEST(Grey, OfTwoColoursWithThreshold0KeepsOnlyBlackBlack) {
    EXPECT_EQ(converted(0, 0, 0, twoColor(0)), 0);
    EXPECT_EQ(converted(1, 0, 0, twoColor(0)), 0);  // a third rounds to 0
    EXPECT_EQ(converted(1, 1, 0, twoColor(0)), 255);
    EXPECT_EQ(converted(255, 255, 255, twoColor(0)), 255);
}

TEST(Grey, UpToTheThresholdIsBlack) {
    EXPECT_EQ(converted(128, 128, 129, twoColor(128)), 0);
    EXPECT_EQ(converted(128, 129, 129, twoColor(128)), 255);
}

TEST(Grey, MeansOfAllSumsRoundToNearest) {
    for (int sum = 0; sum <= 765; ++sum) {
        const int blue = std::min(sum, 255);
        const int green = std::min(sum - blue, 255);
        const int expected = static_cast<int>(std::nearbyint(sum / 3.0)) / 2 + 128;
        ASSERT_EQ(converted(blue, green, sum - blue - green, {}), expected) << sum;
    }
}

TEST(Grey, ConvertsEveryPixelAndLeavesThePadding) {
    PixelBuffer picture = uniformPicture(5, 3, 255);
    convertToGrey(picture.bytes, 5, 3, twoColor(255));
    EXPECT_EQ(picture, uniformPicture(5, 3, 0));
}

TEST(Grey, RefusesABufferShorterThanItsRowsAndChangesNothing) {
    std::vector<std::uint8_t> bytes(31, 9);
    EXPECT_EQ(errorNumberOf([&] { convertToGrey(bytes, 5, 2, {}); }), 9);
    EXPECT_EQ(bytes, std::vector<std::uint8_t>(31, 9));
    EXPECT_EQ(errorNumberOf([&] { convertToGrey(bytes, -5, 2, {}); }), 0);
}

}  // namespace
}  // namespace vrx::test
