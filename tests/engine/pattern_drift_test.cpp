// Sums of single-precision steps over long segments: they drift, and hosts get what they give.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "pattern_colors.h"
#include "pattern_model.h"

namespace vrx::test {
namespace {

std::vector<std::int32_t> valuesOf(const model::Table& table) {
    std::vector<std::int32_t> values;
    for (const auto& entry : table) values.push_back(entry.value_or(-1));
    return values;
}

TEST(Drift, StepsBelowHalfAUnitOfTheSumAreLost) {
    // From 128 to 256 a single has steps of 2^-16; 1 / 200000 is less than half of that.
    const auto table = colorsOf(u"0-254;1-255;", 200'000);
    EXPECT_EQ(std::ranges::count(table, 254), 200'001);
}

TEST(Drift, AChannelThatGrowsTo256SpillsIntoTheNextOne) {
    // 1 / 131000 is more than half a step of 2^-16, so each sum grows by all of it: the last one is 255.9989.
    const auto table = colorsOf(u"0-254;1-255;", 131'000);
    EXPECT_EQ(table.front(), 254);
    EXPECT_EQ(table.back(), 256);
    const auto green = colorsOf(u"0-65024;1-65280;", 131'000);
    EXPECT_EQ(green.back(), 65536);
    const auto blue = colorsOf(u"0-16646144;1-16711680;", 131'000);
    EXPECT_EQ(blue.back(), 16777216);
}

TEST(Drift, AChannelThatFallsBelow0MakesTheColorNegative) {
    // From 255 the step 255 / 10443498 is 1.6 x 2^-16 and counts as two: the sum passes 0 before the end.
    constexpr std::int32_t kEntries = 10'443'498;
    const auto table = colorsOf(u"0-255;", kEntries);
    float sum = 255.0F;
    const float step = -255.0F / static_cast<float>(kEntries);
    for (std::int32_t i = 0; i < kEntries; ++i) sum += step;
    EXPECT_LT(sum, -1.0F);
    EXPECT_EQ(table.back(), static_cast<std::int32_t>(std::lrint(sum)));
}

TEST(Drift, SegmentsOfEveryLengthEqualThePlainSums) {
    for (const std::int32_t numItem : {2, 3, 7, 255, 256, 1000, 4095, 65537, 300'001}) {
        EXPECT_EQ(colorsOf(u"0-8388863;333-16744321;1000-65535;", numItem),
                  valuesOf(model::expand("0-8388863;333-16744321;1000-65535;", numItem)))
            << numItem;
    }
}

}  // namespace
}  // namespace vrx::test
