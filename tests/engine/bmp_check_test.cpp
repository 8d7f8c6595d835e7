#include "raster/engine/bmp_check.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace vrx::test {
namespace {

using FileBytes = std::vector<std::uint8_t>;

/// 5 x 2 pixels of 8 bits in runs; a palette of two colours; 12 bytes of codes at 62.
FileBytes wholeFile() {
    FileBytes file = {'B', 'M', 74, 0, 0, 0, 0, 0, 0, 0, 62, 0, 0, 0,                    // codes at 62
                      40,  0,   0,  0, 5, 0, 0, 0, 2, 0, 0,  0, 1, 0, 8, 0, 1, 0, 0, 0,  // runs of 8 bits
                      12,  0,   0,  0, 0, 0, 0, 0, 0, 0, 0,  0, 2, 0, 0, 0, 0, 0, 0, 0};
    file.resize(74, 0x55);
    return file;
}

FileBytes changed(std::size_t offset, std::uint32_t value) {
    FileBytes file = wholeFile();
    for (std::size_t i = 0; i < 4; ++i) file[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    return file;
}

TEST(BmpCheck, AcceptsAWholeFileOfRunLengthCodedRows) { EXPECT_FALSE(isBrokenBmp(wholeFile())); }

TEST(BmpCheck, FindsAFileThatIsCutAtAnyByte) {
    const FileBytes file = wholeFile();
    for (std::size_t size = 2; size < file.size(); ++size)
        EXPECT_TRUE(isBrokenBmp(std::span(file).first(size))) << size;
}

TEST(BmpCheck, FindsPicturesWithoutPixels) {
    EXPECT_TRUE(isBrokenBmp(changed(18, 0)));
    EXPECT_TRUE(isBrokenBmp(changed(22, 0)));
}

TEST(BmpCheck, FindsPartsBeyondTheFile) {
    EXPECT_TRUE(isBrokenBmp(changed(10, 63)));           // the codes
    EXPECT_TRUE(isBrokenBmp(changed(10, 0xFFFFFFFFU)));  // the codes
    EXPECT_TRUE(isBrokenBmp(changed(34, 13)));           // the codes
    EXPECT_TRUE(isBrokenBmp(changed(34, 0xFFFFFFFFU)));  // the codes
    EXPECT_TRUE(isBrokenBmp(changed(14, 53)));           // the information header
    EXPECT_TRUE(isBrokenBmp(changed(14, 0xFFFFFFFFU)));  // the information header
    EXPECT_TRUE(isBrokenBmp(changed(46, 6)));            // a palette of 6 colours
    EXPECT_TRUE(isBrokenBmp(changed(46, 0)));            // a palette of 256 colours
    EXPECT_TRUE(isBrokenBmp(changed(46, 0xFFFFFFFFU)));
}

TEST(BmpCheck, KeepsEveryOtherBitmapFileFromTheSystemsReader) {
    for (const std::uint32_t compression : {0U, 2U, 3U, 4U, 5U, 6U, 0xFFFFFFFFU})
        EXPECT_TRUE(isBrokenBmp(changed(30, compression))) << compression;
    for (const std::uint32_t bitCount : {0U, 1U, 4U, 16U, 24U, 32U, 65535U})
        EXPECT_TRUE(isBrokenBmp(changed(26, 1 | bitCount << 16))) << bitCount;
    for (const std::uint32_t headerSize : {0U, 12U, 16U, 39U})
        EXPECT_TRUE(isBrokenBmp(changed(14, headerSize))) << headerSize;
}

TEST(BmpCheck, DoesNotJudgeOtherFiles) {
    EXPECT_FALSE(isBrokenBmp({}));
    EXPECT_FALSE(isBrokenBmp(FileBytes{'B'}));
    EXPECT_FALSE(isBrokenBmp(FileBytes{'G', 'I', 'F', '8', '9', 'a'}));
}

}  // namespace
}  // namespace vrx::test
