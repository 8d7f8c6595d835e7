// BMP files, byte by byte.
#include "raster/engine/bmp_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "failure.h"
#include "memory_sink.h"
#include "raster/engine/bitmap24.h"

namespace vrx::test {
namespace {

TEST(BmpFile, APictureOfTwoByTwoPixels) {
    const std::vector<std::uint8_t> pixels = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0};
    const std::vector<std::uint8_t> expected = {
        'B', 'M', 70, 0, 0,  0, 0, 0, 0, 0, 54, 0,  0,  0,          // 54 + 2 rows of 8 bytes
        40,  0,   0,  0, 2,  0, 0, 0, 2, 0, 0,  0,  1,  0,  24, 0,  // sizes, planes, bits
        0,   0,   0,  0, 16, 0, 0, 0, 0, 0, 0,  0,  0,  0,  0,  0,  // uncompressed, image size
        0,   0,   0,  0, 0,  0, 0, 0,                               // palette
        1,   2,   3,  4, 5,  6, 0, 0, 7, 8, 9,  10, 11, 12, 0,  0};
    MemorySink sink;
    encodeBmp(2, 2, pixels.data(), sink);
    EXPECT_EQ(sink.bytes, expected);
}

TEST(BmpFile, NumbersAreWrittenLowByteFirst) {
    const std::vector<std::uint8_t> pixels(1200 * 258);
    MemorySink sink;
    encodeBmp(400, 258, pixels.data(), sink);
    ASSERT_EQ(sink.bytes.size(), 309654U);  // 54 + 1200 * 258 = 0x4B996
    const std::vector<std::uint8_t> size(sink.bytes.begin() + 2, sink.bytes.begin() + 6);
    EXPECT_EQ(size, (std::vector<std::uint8_t>{0x96, 0xB9, 0x04, 0x00}));
    const std::vector<std::uint8_t> sides(sink.bytes.begin() + 18, sink.bytes.begin() + 26);
    EXPECT_EQ(sides, (std::vector<std::uint8_t>{0x90, 0x01, 0, 0, 0x02, 0x01, 0, 0}));  // 0x190, 0x102
    const std::vector<std::uint8_t> image(sink.bytes.begin() + 34, sink.bytes.begin() + 38);
    EXPECT_EQ(image, (std::vector<std::uint8_t>{0x60, 0xB9, 0x04, 0x00}));  // 309600
}

TEST(BmpFile, APictureWithoutPixelsIsInvalid) {
    MemorySink sink;
    EXPECT_EQ(errorNumberOf([&] { encodeBmp(0, 2, nullptr, sink); }), 481);
    EXPECT_EQ(errorNumberOf([&] { encodeBmp(2, 0, nullptr, sink); }), 481);
    EXPECT_TRUE(sink.bytes.empty());
}

TEST(BmpFile, APictureThatNoFileSizeCanNameIsRefused) {
    MemorySink sink;
    EXPECT_EQ(errorNumberOf([&] { encodeBmp(40000, 40000, nullptr, sink); }), 7);
    EXPECT_TRUE(sink.bytes.empty());
}

TEST(BmpFile, OfRowsIsTheFileOfTheBitmapThatTheyMake) {
    for (const auto& [width, height] : {std::pair{1U, 1U}, {3U, 7U}, {400U, 258U}, {90000U, 3U}}) {
        Bitmap24 bitmap(width, height);
        const auto paint = [width = width](std::uint32_t y, std::uint8_t* bgr) {
            for (std::uint32_t i = 0; i < 3 * width; ++i) bgr[i] = static_cast<std::uint8_t>(7 * y + i);
        };
        for (std::uint32_t y = 0; y < height; ++y) paint(y, bitmap.rowFromTop(y));
        MemorySink whole;
        encodeBmp(width, height, bitmap.data(), whole);
        MemorySink rows;
        encodeBmp({width, height, paint}, rows);
        EXPECT_EQ(rows.bytes, whole.bytes) << width;
    }
}

}  // namespace
}  // namespace vrx::test
