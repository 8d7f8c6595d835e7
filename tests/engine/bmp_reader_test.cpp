// Headers and rows of uncompressed bitmap files.
#include "raster/engine/bmp_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "failure.h"

namespace vrx::test {
namespace {

using FileBytes = std::vector<std::uint8_t>;

/// 3 x 2 pixels of 24 bits: rows of 9 bytes and 3 of padding.
FileBytes wholeFile() {
    FileBytes file = {'B', 'M', 78, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,                     // pixels at 54
                      40,  0,   0,  0, 3, 0, 0, 0, 2, 0, 0,  0, 1, 0, 24, 0, 0, 0, 0, 0,  // uncompressed
                      24,  0,   0,  0, 0, 0, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0, 0};
    file.resize(78, 0x55);
    return file;
}

void put(FileBytes& file, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) file[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

FileBytes changed(std::size_t offset, std::uint32_t value) {
    FileBytes file = wholeFile();
    put(file, offset, value);
    return file;
}

std::optional<BmpReader> readerOf(std::span<const std::uint8_t> file) {
    return BmpReader::read(file.first(std::min(file.size(), BmpReader::kHeadSize)), file.size());
}

/// Refused as no picture.
bool isRefused(std::span<const std::uint8_t> file) {
    try {
        static_cast<void>(readerOf(file));
    } catch (const Error& error) {
        return error.number == 481;
    }
    return false;
}

FileBytes rowOf(const BmpReader& reader, const FileBytes& row) {
    FileBytes pixels(reader.width() * 3, 0xEE);
    reader.convertRow(row, pixels.data());
    return pixels;
}

/// A file of one row of 24 bits to begin with, and headers of `bitCount`; `colours` are palette or masks.
FileBytes fileOf(std::uint32_t bitCount, std::uint32_t width, const FileBytes& colours = {},
                 std::uint32_t compression = 0, std::uint32_t used = 0) {
    FileBytes file = changed(18, width);
    file.resize(54);
    put(file, 22, 1);
    put(file, 26, 1 | bitCount << 16);
    put(file, 30, compression);
    put(file, 46, used);
    file.insert(file.end(), colours.begin(), colours.end());
    put(file, 10, static_cast<std::uint32_t>(file.size()));
    file.resize(file.size() + 64);
    return file;
}

TEST(BmpReader, TellsSizesAndWhereRowsAre) {
    const auto reader = readerOf(wholeFile());
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader->width(), 3U);
    EXPECT_EQ(reader->height(), 2U);
    EXPECT_FALSE(reader->topDown());
    EXPECT_EQ(reader->rowsOffset(), 54U);
    EXPECT_EQ(reader->rowStride(), 12U);
    EXPECT_TRUE(readerOf(changed(22, static_cast<std::uint32_t>(-2)))->topDown());
}

TEST(BmpReader, TakesAFileWhoseLastRowLacksBytesButNoFileThatLacksMore) {
    FileBytes file = changed(18, 30);  // rows of 90 bytes and 2 of padding
    file.resize(54 + 2 * 92, 0x55);
    for (std::size_t size = 2; size < 54 + 90; ++size)
        EXPECT_TRUE(isRefused(std::span(file).first(size))) << size;
    for (std::size_t size = 54 + 90; size <= file.size(); ++size)
        EXPECT_TRUE(readerOf(std::span(file).first(size))) << size;
}

TEST(BmpReader, TakesAFileOfShortRowsThatEndsAFewBytesShort) {
    FileBytes file = changed(18, 1);  // rows of 4 bytes
    put(file, 22, 10);
    file.resize(54 + 40);
    EXPECT_TRUE(readerOf(std::span(file).first(file.size() - 17)));
    EXPECT_TRUE(isRefused(std::span(file).first(file.size() - 18)));
}

TEST(BmpReader, RefusesAFileWithoutAnyPixel) {
    const FileBytes file = fileOf(24, 1);
    EXPECT_TRUE(isRefused(std::span(file).first(54)));
}

TEST(BmpReader, FillsWhatARowLacksWithBlack) {
    const auto reader = readerOf(fileOf(24, 3));
    EXPECT_EQ(rowOf(*reader, {1, 2, 3, 4, 5, 6, 7, 8, 9}), FileBytes({1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(rowOf(*reader, {1, 2, 3, 4, 5, 6, 7, 8}), FileBytes({1, 2, 3, 4, 5, 6, 0, 0, 0}));
    EXPECT_EQ(rowOf(*reader, {}), FileBytes(9));
    const auto palette = readerOf(fileOf(4, 4, FileBytes(64, 9)));
    EXPECT_EQ(rowOf(*palette, {0x00}), FileBytes({9, 9, 9, 9, 9, 9, 0, 0, 0, 0, 0, 0}));
}

TEST(BmpReader, TakesAnyNumberOfColoursThatFilesOf24And32BitsClaim) {
    for (const std::uint32_t used : {1U, 256U, 257U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        EXPECT_TRUE(readerOf(changed(46, used))) << used;
        EXPECT_TRUE(readerOf(fileOf(32, 2, {}, 0, used))) << used;
    }
    // A palette that is there stands before the rows.
    const auto reader = readerOf(fileOf(24, 2, FileBytes(20, 1), 0, 5));
    EXPECT_EQ(reader->rowsOffset(), 74U);
}

TEST(BmpReader, RefusesSizesBeyondTheFile) {
    for (const std::uint32_t size : {9U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFF00U}) {
        EXPECT_TRUE(isRefused(changed(18, size))) << size;
        EXPECT_TRUE(isRefused(changed(22, size))) << size;
    }
    FileBytes file = changed(18, 0x7FFFFFFFU);
    put(file, 22, 0x80000000U);
    EXPECT_TRUE(isRefused(file));
}

TEST(BmpReader, RefusesPicturesWithoutPixelsAndNegativeWidths) {
    EXPECT_TRUE(isRefused(changed(18, 0)));
    EXPECT_TRUE(isRefused(changed(22, 0)));
    EXPECT_TRUE(isRefused(changed(18, static_cast<std::uint32_t>(-3))));
}

TEST(BmpReader, RefusesHeadersBeyondTheFile) {
    EXPECT_TRUE(isRefused(changed(10, 78)));           // pixels
    EXPECT_TRUE(isRefused(changed(10, 0xFFFFFFFFU)));  // pixels
    EXPECT_TRUE(isRefused(changed(14, 65)));           // the information header itself
    FileBytes file = wholeFile();
    file[28] = 8;
    EXPECT_TRUE(isRefused(file));  // a palette of 256 colours
    put(file, 46, 6);
    EXPECT_FALSE(isRefused(file));
    put(file, 46, 7);
    EXPECT_TRUE(isRefused(file));
    file = wholeFile();
    file[28] = 16;
    put(file, 30, 3);
    EXPECT_FALSE(isRefused(file));
    file.resize(65);
    EXPECT_TRUE(isRefused(file));  // masks
}

TEST(BmpReader, ReadsPixelsOfEveryDepth) {
    const FileBytes palette = {0, 0, 0, 0, 1, 2, 3, 0, 4, 5, 6, 0};
    EXPECT_EQ(rowOf(*readerOf(fileOf(1, 3, palette, 0, 2)), {0x40, 0, 0, 0}),
              FileBytes({0, 0, 0, 1, 2, 3, 0, 0, 0}));
    EXPECT_EQ(rowOf(*readerOf(fileOf(4, 3, palette, 0, 3)), {0x12, 0x00, 0, 0}),
              FileBytes({1, 2, 3, 4, 5, 6, 0, 0, 0}));
    EXPECT_EQ(rowOf(*readerOf(fileOf(8, 3, palette, 0, 3)), {2, 1, 0, 0}),
              FileBytes({4, 5, 6, 1, 2, 3, 0, 0, 0}));
    EXPECT_EQ(rowOf(*readerOf(fileOf(16, 2)), {0xFF, 0x7F, 0x01, 0x40}),
              FileBytes({255, 255, 255, 8, 0, 132}));  // 1 of 31, 16 of 31
    EXPECT_EQ(rowOf(*readerOf(fileOf(32, 2)), {1, 2, 3, 255, 4, 5, 6, 0}), FileBytes({1, 2, 3, 4, 5, 6}));
}

TEST(BmpReader, ShowsColoursThatThePaletteLacksBlack) {
    const auto reader = readerOf(fileOf(8, 2, {7, 8, 9, 0}, 0, 1));
    EXPECT_EQ(rowOf(*reader, {0, 200}), FileBytes({7, 8, 9, 0, 0, 0}));
}

TEST(BmpReader, ReadsPixelsByTheirMasks) {
    // Red, green, blue: 5, 6 and 5 bits.
    const FileBytes masks = {0, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0, 0, 0};
    EXPECT_EQ(rowOf(*readerOf(fileOf(16, 2, masks, 3)), {0xFF, 0xFF, 0x20, 0x00}),
              FileBytes({255, 255, 255, 0, 4, 0}));
    // Red in the lowest byte, no green, ten bits of blue.
    const FileBytes odd = {0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0xFF};
    EXPECT_EQ(rowOf(*readerOf(fileOf(32, 1, odd, 3)), {7, 0xFF, 0x3F, 0x80}), FileBytes({128, 0, 7}));
    // One bit is all or nothing.
    const FileBytes bits = {1, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0};
    EXPECT_EQ(rowOf(*readerOf(fileOf(16, 1, bits, 3)), {5, 0}), FileBytes({255, 0, 255}));
}

TEST(BmpReader, ReadsTheHeaderOfTheFirstVersion) {
    FileBytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 0, 0, 12, 0, 0, 0, 3, 0, 2, 0, 1, 0, 1, 0};
    file.insert(file.end(), {1, 2, 3, 4, 5, 6, 0x40, 0, 0, 0, 0x40, 0, 0, 0});
    const auto reader = readerOf(file);
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader->width(), 3U);
    EXPECT_EQ(reader->height(), 2U);
    EXPECT_EQ(rowOf(*reader, {0x40}), FileBytes({1, 2, 3, 4, 5, 6, 1, 2, 3}));
    EXPECT_TRUE(isRefused(std::span(file).first(31)));
}

TEST(BmpReader, LeavesRunsAndOtherFilesToOthers) {
    EXPECT_FALSE(readerOf(FileBytes{}));
    EXPECT_FALSE(readerOf(FileBytes{'G', 'I', 'F', '8', '9', 'a'}));
    EXPECT_FALSE(readerOf(changed(30, 1)));
    EXPECT_FALSE(readerOf(changed(26, 1 | 5U << 16)));
    EXPECT_FALSE(readerOf(changed(14, 16)));
}

}  // namespace
}  // namespace vrx::test
