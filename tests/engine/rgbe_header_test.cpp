// Header lines and the resolution line, from text to sizes.
#include "hdr/engine/rgbe_header.h"

#include <gtest/gtest.h>

#include <string>

#include "failure.h"
#include "radiance_file.h"

namespace vrx::test {
namespace {

/// The cursor begins at 1 as in a load, so each text here has one character that is never read.
Resolution readText(const std::string& text) {
    OpenFile file(text, 1);
    return readResolution(file.cursor);
}

std::string sizesOf(const std::string& text) {
    const Resolution resolution = readText(text);
    return std::to_string(resolution.dimX) + "x" + std::to_string(resolution.dimY);
}

bool isRefused(const std::string& text) {
    return failureOf([&] { static_cast<void>(readText(text)); }) == kWrongFileType;
}

/// `size` bytes of lines that are no resolution line, each shorter than 1000 characters.
std::string fillerLines(std::size_t size) {
    std::string text(size, 'c');
    for (std::size_t end = size; end > 0; end -= std::min<std::size_t>(end, 500)) text[end - 1] = '\n';
    return text;
}

TEST(Header, AFileWhoseResolutionLineIsPlusX640MinusY480GivesTheSizesOfMinusY480PlusX640) {
    EXPECT_EQ(sizesOf("#?RADIANCE\n\n+X 640 -Y 480\n"), "640x480");
    EXPECT_EQ(sizesOf("#?RADIANCE\n\n-Y 480 +X 640\n"), "640x480");
}

TEST(Header, MinusY480MinusY640IsAcceptedAsDimY480DimX640) {
    EXPECT_EQ(sizesOf("#?RADIANCE\n\n-Y 480 -Y 640\n"), "640x480");
}

TEST(Header, TheSecondAxisMayBeAnyWord) { EXPECT_EQ(sizesOf("#\n+X 7 banana 9\n"), "7x9"); }

TEST(Header, SignsOfTheAxesDoNotMatter) {
    EXPECT_EQ(sizesOf("#\n+Y 3 -X 4\n"), "4x3");
    EXPECT_EQ(sizesOf("#\n-X 4 +Y 3\n"), "4x3");
}

TEST(Header, AxesAreToldApartByCase) { EXPECT_EQ(sizesOf("#\n-y 8 +x 9\n-Y 3 +X 4\n"), "4x3"); }

TEST(Header, MagicFormatAndExposureLinesArePassedOverUnread) {
    EXPECT_EQ(sizesOf("no magic\nFORMAT=nonsense\nEXPOSURE=-1e99\n# -Y 1 +X 1\nx -Y 1 +X 1\n-Y 3 +X 4\n"),
              "4x3");
}

TEST(Header, TheFirstByteOfTheFileIsNeverRead) {
    EXPECT_EQ(sizesOf("?-Y 3 +X 4\n"), "4x3");
    EXPECT_TRUE(isRefused("-Y 3 +X 4\n"));
}

TEST(Header, TheFirstResolutionLineCounts) { EXPECT_EQ(sizesOf("#\n-Y 3 +X 4\n-Y 5 +X 6\n"), "4x3"); }

TEST(Header, BlanksAroundTokensAreSkipped) { EXPECT_EQ(sizesOf("#\n   -Y   3    +X  4   \n"), "4x3"); }

TEST(Header, TabsAreNoBlanks) {
    EXPECT_EQ(sizesOf("#\n-Y\t8 +X 9\n\t-Y 8 +X 9\n-Y 3 +X 4\n"), "4x3");
    EXPECT_TRUE(isRefused("#\n-Y 3\t+X 4\n-Y 3 +X 4\n"));
}

TEST(Header, LeavesTheCursorBehindTheLineEnd) {
    OpenFile file("#\n-Y 3 +X 4\nz", 1);
    static_cast<void>(readResolution(file.cursor));
    EXPECT_EQ(file.cursor.next(), 'z');
}

TEST(Header, OfCrLfTheLineFeedIsLeftAsTheFirstByteOfTheScanlines) {
    OpenFile file("#?RADIANCE\r\n\r\n-Y 3 +X 4\r\n\2", 1);
    const Resolution resolution = readResolution(file.cursor);
    EXPECT_EQ(resolution.dimX, 4);
    EXPECT_EQ(resolution.dimY, 3);
    EXPECT_EQ(file.cursor.next(), '\n');
}

TEST(Header, AHeaderWithNoResolutionLineWithinTheFirst10000BytesFailsWithFileTypeWrong) {
    EXPECT_TRUE(isRefused(fillerLines(20000) + "-Y 3 +X 4\n"));
}

TEST(Header, AResolutionLineAtReadPosition10000IsFound) {
    EXPECT_EQ(sizesOf(fillerLines(10000) + "-Y 3 +X 4\n"), "4x3");
}

TEST(Header, AResolutionLineAtReadPosition10001IsNotFound) {
    EXPECT_TRUE(isRefused(fillerLines(10001) + "-Y 3 +X 4\n"));
}

TEST(Header, ALineOf999CharactersIsPassedOver) {
    EXPECT_EQ(sizesOf("#\n" + std::string(999, 'c') + "\n-Y 3 +X 4\n"), "4x3");
}

TEST(Header, ALineOf1000CharactersEndsTheSearch) {
    EXPECT_TRUE(isRefused("#\n" + std::string(1000, 'c') + "\n-Y 3 +X 4\n"));
}

TEST(Header, AResolutionLineOf1000CharactersIsNotTaken) {
    EXPECT_EQ(sizesOf("#\n-Y 3 +X 4" + std::string(990, ' ') + "\n"), "4x3");  // 9 + 990 = 999
    EXPECT_TRUE(isRefused("#\n-Y 3 +X 4" + std::string(991, ' ') + "\n"));
}

TEST(Header, AFileThatEndsInsideItsHeaderIsRefused) {
    EXPECT_TRUE(isRefused("#"));
    EXPECT_TRUE(isRefused("#?RADIANCE\n"));
    EXPECT_TRUE(isRefused("#?RADIANCE\n\n-Y 3 +X 4"));
}

TEST(Header, SizesMayBeZero) {
    EXPECT_EQ(sizesOf("#\n-Y 0 +X 4\n"), "4x0");
    EXPECT_EQ(sizesOf("#\n-Y 3 +X 0\n"), "0x3");
}

TEST(Header, NumbersAreConvertedAsVisualBasicConvertsTextToALong) {
    EXPECT_EQ(sizesOf("#\n-Y 480.0 +X 2e0\n"), "2x480");
    EXPECT_EQ(sizesOf("#\n-Y 2.5 +X 3.5\n"), "4x2");
    EXPECT_EQ(sizesOf("#\n+X 1,024 -Y &H1E0\n"), "1024x480");
    EXPECT_EQ(sizesOf("#\n-Y 3\t +X \t4\n"), "4x3");
    EXPECT_EQ(sizesOf("#\n-Y -0.5 +X 0.4\n"), "0x0");
}

TEST(Header, WhatVisualBasicRefusesIsRefused) {
    for (const std::string size : {"1.2.3", "2e", "0x10", "2147483647.5", "1e10", "-0.6", "(3)", "3-"}) {
        EXPECT_TRUE(isRefused("#\n-Y " + size + " +X 4\n-Y 3 +X 4\n")) << size;
    }
}

TEST(Header, SizesMayHaveAPlusSign) { EXPECT_EQ(sizesOf("#\n-Y +3 +X +4\n"), "4x3"); }

TEST(Header, SizesMayBeTheLargest32BitInteger) {
    EXPECT_EQ(sizesOf("#\n-Y 2147483647 +X 2147483647\n"), "2147483647x2147483647");
}

class HostileSize : public testing::TestWithParam<const char*> {};

TEST_P(HostileSize, IsRefusedOnEitherAxis) {
    const std::string size = GetParam();
    EXPECT_TRUE(isRefused("#\n-Y " + size + " +X 4\n-Y 3 +X 4\n"));
    EXPECT_TRUE(isRefused("#\n-Y 3 +X " + size + "\n-Y 3 +X 4\n"));
    EXPECT_TRUE(isRefused("#\n+X " + size + " +Y 4\n-Y 3 +X 4\n"));
}

// "2147483648" is 2^31, "18446744073709551616" is 2^64, the one after it 2^64 + 5.
INSTANTIATE_TEST_SUITE_P(Header, HostileSize,
                         testing::Values("", "-1", "-2147483648", "-2147483649", "2147483648", "4294967296",
                                         "18446744073709551616", "18446744073709551621", "x", "3x", "\xFF",
                                         "NaN", "--3"));

}  // namespace
}  // namespace vrx::test
