// Layout of 24-bit bitmaps.
#include "raster/engine/bitmap24.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "failure.h"

namespace vrx::test {
namespace {

TEST(Bitmap24, RowsArePaddedToAMultipleOfFourBytes) {
    EXPECT_EQ(strideOf(0), 0U);
    EXPECT_EQ(strideOf(1), 4U);
    EXPECT_EQ(strideOf(2), 8U);
    EXPECT_EQ(strideOf(3), 12U);
    EXPECT_EQ(strideOf(4), 12U);
    EXPECT_EQ(strideOf(5), 16U);
    EXPECT_EQ(strideOf(640), 1920U);
    EXPECT_EQ(strideOf(0xFFFFFFFF), 12884901888U);  // 3 * (2^32 - 1) = 12884901885, rounded up
}

TEST(Bitmap24, TheTopRowIsTheLastInMemory) {
    Bitmap24 bitmap(5, 3);
    EXPECT_EQ(bitmap.size(), 48U);
    EXPECT_EQ(bitmap.rowFromTop(0), bitmap.data() + 32);
    EXPECT_EQ(bitmap.rowFromTop(1), bitmap.data() + 16);
    EXPECT_EQ(bitmap.rowFromTop(2), bitmap.data());
}

TEST(Bitmap24, IsBlackAfterEveryReset) {
    Bitmap24 bitmap(3, 2);
    for (const std::uint32_t height : {2U, 2U, 5U, 2U}) {
        bitmap.reset(3, height);
        EXPECT_EQ(std::count(bitmap.data(), bitmap.data() + bitmap.size(), 0),
                  static_cast<std::ptrdiff_t>(12 * height));
        std::fill_n(bitmap.data(), bitmap.size(), std::uint8_t{255});
    }
}

TEST(Bitmap24, WithoutRowsOrColumnsIsEmpty) {
    EXPECT_TRUE(Bitmap24().empty());
    EXPECT_TRUE(Bitmap24(0, 5).empty());
    EXPECT_TRUE(Bitmap24(5, 0).empty());
    EXPECT_FALSE(Bitmap24(1, 1).empty());
}

TEST(Bitmap24, IsEmptyAfterSizesThatNoProcessHolds) {
    Bitmap24 bitmap(3, 2);
    EXPECT_EQ(errorNumberOf([&] { bitmap.reset(0xFFFFFFFF, 0xFFFFFFFF); }), 7);
    EXPECT_TRUE(bitmap.empty());
    EXPECT_EQ(errorNumberOf([&] { bitmap.reset(40000, 40000); }), 7);  // 120,000 * 40,000 = 4.8e9
    EXPECT_TRUE(bitmap.empty());
    bitmap.reset(1, 1);
    EXPECT_EQ(bitmap.size(), 4U);
}

}  // namespace
}  // namespace vrx::test
