#include "raster/engine/bmp_check.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

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

TEST(BmpCheck, AcceptsAWholeFile) { EXPECT_FALSE(isBrokenBmp(wholeFile())); }

TEST(BmpCheck, FindsAFileThatIsCutAtAnyByteBeforeItsLastPadding) {
    const FileBytes file = wholeFile();
    for (std::size_t size = 2; size < 75; ++size)
        EXPECT_TRUE(isBrokenBmp(std::span(file).first(size))) << size;
    for (std::size_t size = 75; size <= 78; ++size)
        EXPECT_FALSE(isBrokenBmp(std::span(file).first(size))) << size;
}

TEST(BmpCheck, FindsSizesBeyondTheFile) {
    for (const std::uint32_t size : {5U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFF00U}) {
        EXPECT_TRUE(isBrokenBmp(changed(18, size))) << size;
        EXPECT_TRUE(isBrokenBmp(changed(22, size))) << size;
    }
    FileBytes file = changed(18, 0x80000000U);
    put(file, 22, 0x80000000U);
    file[28] = file[29] = 0xFF;
    EXPECT_TRUE(isBrokenBmp(file));
}

TEST(BmpCheck, FindsPicturesWithoutPixels) {
    EXPECT_TRUE(isBrokenBmp(changed(18, 0)));
    EXPECT_TRUE(isBrokenBmp(changed(22, 0)));
}

TEST(BmpCheck, FindsHeadersBeyondTheFile) {
    EXPECT_TRUE(isBrokenBmp(changed(10, 79)));           // pixels
    EXPECT_TRUE(isBrokenBmp(changed(10, 0xFFFFFFFFU)));  // pixels
    EXPECT_TRUE(isBrokenBmp(changed(14, 65)));           // the information header itself
    EXPECT_TRUE(isBrokenBmp(changed(46, 7)));            // a palette of 7 colours
    EXPECT_TRUE(isBrokenBmp(changed(46, 0xFFFFFFFFU)));
}

TEST(BmpCheck, AcceptsRowsFromTheTop) {
    EXPECT_FALSE(isBrokenBmp(changed(22, static_cast<std::uint32_t>(-2))));
}

TEST(BmpCheck, CountsThePaletteOfFewBits) {
    FileBytes file = wholeFile();
    file[28] = 8;
    EXPECT_TRUE(isBrokenBmp(file));  // 256 colours
    put(file, 46, 6);
    EXPECT_FALSE(isBrokenBmp(file));  // 6 colours end with the file; the rows are taken to lie before that
    put(file, 10, 78);
    EXPECT_TRUE(isBrokenBmp(file));
    file.resize(78 + 4 + 3);
    EXPECT_FALSE(isBrokenBmp(file));
}

TEST(BmpCheck, TakesTheSizeOfCompressedRowsFromTheHeader) {
    FileBytes file = wholeFile();
    put(file, 18, 5000);
    file[28] = 8;
    file[30] = 1;
    put(file, 46, 2);
    EXPECT_FALSE(isBrokenBmp(file));
    put(file, 34, 25);
    EXPECT_TRUE(isBrokenBmp(file));
}

TEST(BmpCheck, CountsTheMasksBehindAnOldHeader) {
    FileBytes file = wholeFile();
    file[28] = 16;
    file[30] = 3;
    put(file, 46, 3);
    EXPECT_FALSE(isBrokenBmp(file));  // 54 + 12 + 12
    put(file, 46, 4);
    EXPECT_TRUE(isBrokenBmp(file));
}

TEST(BmpCheck, ReadsTheHeaderOfTheFirstVersion) {
    FileBytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 0, 0, 12, 0, 0, 0, 3, 0, 2, 0, 1, 0, 1, 0};
    file.resize(26 + 6 + 8);
    EXPECT_FALSE(isBrokenBmp(file));
    file.resize(26 + 6 + 4);
    EXPECT_TRUE(isBrokenBmp(file));
    file.resize(26 + 5);
    EXPECT_TRUE(isBrokenBmp(file));
}

TEST(BmpCheck, DoesNotJudgeOtherFiles) {
    EXPECT_FALSE(isBrokenBmp({}));
    EXPECT_FALSE(isBrokenBmp(FileBytes{'B'}));
    EXPECT_FALSE(isBrokenBmp(FileBytes{'G', 'I', 'F', '8', '9', 'a'}));
}

}  // namespace
}  // namespace vrx::test
