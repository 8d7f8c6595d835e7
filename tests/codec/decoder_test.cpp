// What the codec reads, and how it takes files that lie or break off.

#include "jpeg/engine/decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "codec_run.h"
#include "foreign_reader.h"
#include "library_files.h"

namespace vrx::test {
namespace {

using jpeg::Color;
using jpeg::Status;
using jpeg::Subsampling;

/// The same file by both readers; they may round differently.
void expectAsTheOtherReader(const JpegFile& file, Color color, bool bottomUp) {
    const Picture other = readByAnother(file);
    HostPixels room = hostRoom(other.width, other.height, color, bottomUp);
    ASSERT_EQ(decodeStatus(file, room), Status::Ok);
    EXPECT_GT(peakSignalToNoise(other, pictureOf(room)), 40.0);
}

TEST(Decoder, ReadsUprightAndInColorsForEveryLayout) {
    const JpegFile file = encoded(landscape(97, 61), usualFormat(95));
    expectAsTheOtherReader(file, Color::Bgr, true);
    expectAsTheOtherReader(file, Color::Bgr, false);
    expectAsTheOtherReader(file, Color::Rgb, true);
    expectAsTheOtherReader(file, Color::Rgb, false);
}

TEST(Decoder, ReadsEverySubsampling) {
    for (const Subsampling subsampling : {Subsampling::None, Subsampling::TwoByTwo, Subsampling::TwoByOne}) {
        const JpegFile file = encoded(landscape(97, 61), {Color::YCbCr, subsampling, 95});
        EXPECT_EQ(jpeg::readHeader(file).subsampling, subsampling);
        expectAsTheOtherReader(file, Color::Bgr, true);
    }
}

TEST(Decoder, ReadsAProgressiveFile) {
    expectAsTheOtherReader(progressiveFile(landscape(97, 61)), Color::Bgr, true);
}

TEST(Decoder, ReadsAGreyFileIntoColorPixels) {
    const JpegFile file =
        encoded(hostPixels(landscape(33, 21), Color::Grey, true), {Color::Grey, Subsampling::None, 95});
    expectAsTheOtherReader(file, Color::Bgr, true);
}

TEST(Decoder, ReadsAColorFileIntoGreyPixels) {
    HostPixels room = hostRoom(64, 64, Color::Grey, true);
    ASSERT_EQ(decodeStatus(encoded(quarters(64)), room), Status::Ok);
    const Picture read = pictureOf(room);
    EXPECT_NEAR(read.pixel(8, 8)[0], 76, 3);
    EXPECT_NEAR(read.pixel(56, 8)[0], 150, 3);
    EXPECT_NEAR(read.pixel(8, 56)[0], 29, 3);
    EXPECT_NEAR(read.pixel(56, 56)[0], 255, 3);
}

TEST(Decoder, TellsTheSizesAndTheKindOfAFile) {
    const jpeg::JpegHeader header = jpeg::readHeader(encoded(landscape(97, 61)));
    EXPECT_EQ(header.width, 97U);
    EXPECT_EQ(header.height, 61U);
    EXPECT_EQ(header.color, Color::YCbCr);
    EXPECT_EQ(header.subsampling, Subsampling::TwoByTwo);
}

TEST(Decoder, LeavesThePaddingOfRowsAsItIs) {
    HostPixels room = hostRoom(33, 21, Color::Bgr, true);
    ASSERT_EQ(decodeStatus(encoded(landscape(33, 21)), room), Status::Ok);
    for (std::size_t row = 0; row < 20; ++row) EXPECT_EQ(room.bytes[row * 100 + 99], 0xEE) << "row " << row;
}

TEST(Decoder, RefusesRoomOfAnotherSizeAndLeavesItUntouched) {
    const JpegFile file = encoded(landscape(33, 21));
    for (const auto& [width, height] :
         {std::pair{32U, 21U}, {34U, 21U}, {33U, 20U}, {33U, 22U}, {21U, 33U}}) {
        HostPixels room = hostRoom(width, height, Color::Bgr, true);
        const HostPixels before = room;
        EXPECT_EQ(decodeStatus(file, room), Status::SizesDiffer);
        EXPECT_EQ(room.bytes, before.bytes);
    }
}

TEST(Decoder, RefusesLessRoomThanTheLayoutDescribes) {
    HostPixels room = hostRoom(33, 21, Color::Bgr, true);
    room.bytes.pop_back();
    EXPECT_EQ(decodeStatus(encoded(landscape(33, 21)), room), Status::BadSize);
}

/// Where the end of the picture is marked, in files that end with it.
constexpr std::size_t kEndSize = 2;

std::vector<JpegFile> filesOfEveryKind() {
    return {encoded(landscape(33, 21)), progressiveFile(landscape(33, 21)),
            fileOfRepeatedScans(landscape(33, 21), 1)};
}

TEST(Decoder, RefusesAFileThatIsCutAtAnyByteBeforeItsEndMark) {
    for (const JpegFile& file : filesOfEveryKind()) {
        for (std::size_t size = 0; size < file.size() - kEndSize; ++size) {
            const JpegFile cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
            HostPixels room = hostRoom(33, 21, Color::Bgr, true);
            ASSERT_NE(decodeStatus(cut, room), Status::Ok) << "cut at " << size;
        }
    }
}

TEST(Decoder, TakesAPictureThatLacksOnlyItsEndMark) {
    for (const JpegFile& file : filesOfEveryKind()) {
        HostPixels whole = hostRoom(33, 21, Color::Bgr, true);
        ASSERT_EQ(decodeStatus(file, whole), Status::Ok);
        for (std::size_t lacking = 1; lacking <= kEndSize; ++lacking) {
            const JpegFile cut(file.begin(), file.end() - static_cast<std::ptrdiff_t>(lacking));
            HostPixels room = hostRoom(33, 21, Color::Bgr, true);
            EXPECT_EQ(decodeStatus(cut, room), Status::Ok);
            EXPECT_EQ(room.bytes, whole.bytes);
        }
    }
}

TEST(Decoder, RefusesBytesBetweenTheScanAndTheEndMarkWhichDamagedScansLeaveOver) {
    JpegFile file = encoded(landscape(33, 21));
    // More than the library reads ahead.
    file.insert(file.end() - 2, 16, 0x12);
    HostPixels room = hostRoom(33, 21, Color::Bgr, true);
    EXPECT_EQ(decodeStatus(file, room), Status::DamagedJpeg);
}

TEST(Decoder, TakesBytesBetweenTheSegmentsBeforeThePicture) {
    JpegFile file = encoded(landscape(33, 21));
    file.insert(file.begin() + 20, {0, 0, 0, 0});  // behind the first segment, of 18 bytes
    ASSERT_EQ(file[24], 0xFF);
    HostPixels room = hostRoom(33, 21, Color::Bgr, true);
    EXPECT_EQ(decodeStatus(file, room), Status::Ok);
}

TEST(Decoder, SurvivesFlippedBytes) {
    std::mt19937 random(20011);
    for (const JpegFile& file : {encoded(landscape(65, 49)), progressiveFile(landscape(65, 49))}) {
        int refused = 0;
        for (int i = 0; i < 2000; ++i) {
            JpegFile damaged = file;
            for (unsigned flips = random() % 4 + 1; flips > 0; --flips) {
                damaged[random() % damaged.size()] ^= static_cast<std::uint8_t>(random() % 255 + 1);
            }
            HostPixels room = hostRoom(65, 49, Color::Bgr, true);
            if (decodeStatus(damaged, room) != Status::Ok) ++refused;
        }
        EXPECT_GT(refused, 100);
        EXPECT_LT(refused, 2000);
    }
}

TEST(Decoder, SurvivesRandomBytes) {
    std::mt19937 random(20012);
    for (int i = 0; i < 2000; ++i) {
        JpegFile noise(random() % 600 + 2);
        for (std::uint8_t& byte : noise) byte = static_cast<std::uint8_t>(random());
        noise[0] = 0xFF;
        noise[1] = 0xD8;
        EXPECT_NE(statusOf([&] { (void)jpeg::readHeader(noise); }), Status::Ok);
    }
}

TEST(Decoder, TakesBytesBehindTheEndOfThePicture) {
    JpegFile file = encoded(landscape(33, 21));
    file.insert(file.end(), 1000, 0xAA);
    HostPixels room = hostRoom(33, 21, Color::Bgr, true);
    EXPECT_EQ(decodeStatus(file, room), Status::Ok);
}

TEST(Decoder, RefusesFilesOfFourColors) {
    EXPECT_EQ(statusOf([&] { (void)jpeg::readHeader(fourColorFile()); }), Status::UnsupportedJpeg);
}

TEST(Decoder, RefusesAFileThatIsNoJpeg) {
    const JpegFile file = {'B', 'M', 0, 0, 0, 0};
    EXPECT_EQ(statusOf([&] { (void)jpeg::readHeader(file); }), Status::DamagedJpeg);
    EXPECT_EQ(statusOf([&] { (void)jpeg::readHeader({}); }), Status::DamagedJpeg);
}

TEST(Decoder, RefusesASizeBombByItsHeader) {
    JpegFile file = encoded(landscape(33, 21));
    setSizes(file, 65500, 65500);
    EXPECT_EQ(statusOf([&] { (void)jpeg::readHeader(file); }), Status::TooLarge);
}

TEST(Decoder, RefusesAProgressivePictureWhoseCoefficientsTakeTooMuchMemory) {
    JpegFile file = progressiveFile(landscape(33, 21));
    setSizes(file, 16384, 16384);
    // Untouched zero pages: nothing is written before the failure.
    std::unique_ptr<std::uint8_t[], decltype(&std::free)> room(
        static_cast<std::uint8_t*>(std::calloc(16384U * 3U, 16384U)), &std::free);
    const jpeg::PixelLayout layout{16384, 16384, Color::Bgr, 16384U * 3U, true};
    EXPECT_EQ(statusOf([&] { jpeg::decode(file, layout, {room.get(), layout.size()}); }), Status::TooLarge);
}

TEST(Decoder, RefusesAFileOfMoreScansThanAnyWriterMakes) {
    HostPixels room = hostRoom(33, 21, Color::Bgr, true);
    EXPECT_EQ(decodeStatus(fileOfRepeatedScans(landscape(33, 21), 50), room), Status::Ok);
    EXPECT_EQ(decodeStatus(fileOfRepeatedScans(landscape(33, 21), 5000), room), Status::TooLarge);
}

}  // namespace
}  // namespace vrx::test
