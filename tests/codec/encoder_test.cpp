// What the codec writes, seen by a reader of another library.

#include "jpeg/engine/encoder.h"

#include <gtest/gtest.h>

#include "codec_run.h"
#include "foreign_reader.h"

namespace vrx::test {
namespace {

using jpeg::Color;
using jpeg::Status;
using jpeg::Subsampling;

/// No component further off than a strong edge of colors nearby may put it.
::testing::AssertionResult looksLike(const std::uint8_t* pixel, int r, int g, int b) {
    if (std::abs(pixel[0] - r) <= 4 && std::abs(pixel[1] - g) <= 4 && std::abs(pixel[2] - b) <= 4) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << int{pixel[0]} << ' ' << int{pixel[1]} << ' ' << int{pixel[2]};
}

void expectQuarters(const Picture& read) {
    ASSERT_EQ(read.width, 64U);
    ASSERT_EQ(read.height, 64U);
    EXPECT_TRUE(looksLike(read.pixel(8, 8), 255, 0, 0));
    EXPECT_TRUE(looksLike(read.pixel(56, 8), 0, 255, 0));
    EXPECT_TRUE(looksLike(read.pixel(8, 56), 0, 0, 255));
    EXPECT_TRUE(looksLike(read.pixel(56, 56), 255, 255, 255));
}

TEST(Encoder, WritesABottomUpSectionUprightAndInItsColors) {
    expectQuarters(readByAnother(encoded(hostPixels(quarters(64), Color::Bgr, true))));
}

TEST(Encoder, WritesTopDownPixelsUprightAndInTheirColors) {
    expectQuarters(readByAnother(encoded(hostPixels(quarters(64), Color::Bgr, false))));
}

TEST(Encoder, TakesRedFirstPixels) {
    expectQuarters(readByAnother(encoded(hostPixels(quarters(64), Color::Rgb, true))));
}

TEST(Encoder, WritesEverySubsamplingInItsColors) {
    for (const Subsampling subsampling : {Subsampling::None, Subsampling::TwoByTwo, Subsampling::TwoByOne}) {
        expectQuarters(readByAnother(encoded(quarters(64), {Color::YCbCr, subsampling, 90})));
    }
}

TEST(Encoder, WritesGreyPixelsAsAGreyPicture) {
    const JpegFile file =
        encoded(hostPixels(quarters(64), Color::Grey, true), {Color::Grey, Subsampling::TwoByTwo, 90});
    EXPECT_EQ(jpeg::readHeader(file).color, Color::Grey);
    const Picture read = readByAnother(file);
    // 0.299 x 255, 0.587 x 255, 0.114 x 255
    EXPECT_TRUE(looksLike(read.pixel(8, 8), 76, 76, 76));
    EXPECT_TRUE(looksLike(read.pixel(56, 8), 150, 150, 150));
    EXPECT_TRUE(looksLike(read.pixel(8, 56), 29, 29, 29));
    EXPECT_TRUE(looksLike(read.pixel(56, 56), 255, 255, 255));
}

TEST(Encoder, WritesEveryWidthAndHeightUpToTwoBlocks) {
    for (std::uint32_t width = 1; width <= 33; ++width) {
        for (const std::uint32_t height : {1U, 2U, 7U, 8U, 9U, 16U, 17U, 33U}) {
            Picture picture = blankPicture(width, height);
            for (std::size_t i = 0; i < picture.rgb.size(); i += 3) picture.rgb[i] = 200;
            const Picture read = readByAnother(encoded(picture));
            ASSERT_EQ(read.width, width);
            ASSERT_EQ(read.height, height);
            ASSERT_TRUE(looksLike(read.pixel(width - 1, height - 1), 200, 0, 0)) << width << " x " << height;
        }
    }
}

TEST(Encoder, KeepsThePaddingOfRowsOutOfThePicture) {
    HostPixels plain = hostPixels(landscape(33, 21), Color::Bgr, true);
    HostPixels other = plain;
    for (std::uint32_t y = 0; y + 1 < 21; ++y) other.bytes[y * other.layout.stride + 99] = 0x11;
    EXPECT_NE(plain.bytes, other.bytes);
    EXPECT_EQ(encoded(plain), encoded(other));
}

TEST(Encoder, KeepsAPhotographWithin38DecibelsAtQuality90) {
    const Picture picture = landscape(640, 480);
    const JpegFile file = encoded(picture);
    const double decibels = peakSignalToNoise(picture, readByAnother(file));
    std::cout << decibels << " dB, " << file.size() << " bytes\n";
    EXPECT_GE(decibels, 38.0);
}

TEST(Encoder, GivesLargerFilesAndSmallerErrorsForHigherQualities) {
    const Picture picture = landscape(320, 240);
    std::size_t size = 0;
    double error = 1e9;
    for (int quality = 5; quality <= 100; quality += 5) {
        const JpegFile file = encoded(picture, usualFormat(quality));
        const double newError = meanSquareError(picture, readByAnother(file));
        EXPECT_GT(file.size(), size) << "quality " << quality;
        EXPECT_LT(newError, error) << "quality " << quality;
        size = file.size();
        error = newError;
    }
}

TEST(Encoder, WritesTheSameFileEveryTime) {
    const Picture picture = landscape(64, 64);
    EXPECT_EQ(encoded(picture), encoded(picture));
}

TEST(Encoder, ReplacesWhatTheFileHeldBefore) {
    const HostPixels large = hostPixels(landscape(640, 480), Color::Bgr, true);
    const HostPixels small = hostPixels(quarters(8), Color::Bgr, true);
    jpeg::GrowingFile file;
    jpeg::encode(large.bytes, large.layout, usualFormat(100), file);
    ASSERT_GT(file.span().size(), 65536U);
    jpeg::encode(small.bytes, small.layout, kUsualFormat, file);
    EXPECT_EQ(JpegFile(file.span().begin(), file.span().end()), encoded(small));
}

TEST(Encoder, RefusesFewerPixelsThanTheLayoutDescribes) {
    HostPixels pixels = hostPixels(quarters(8), Color::Bgr, true);
    pixels.bytes.pop_back();
    EXPECT_EQ(statusOf([&] { encoded(pixels); }), Status::BadSize);
}

TEST(Encoder, RefusesToMakeColorsOfGrey) {
    EXPECT_EQ(statusOf([&] { encoded(hostPixels(quarters(8), Color::Grey, true)); }),
              Status::UnsupportedJpeg);
}

}  // namespace
}  // namespace vrx::test
