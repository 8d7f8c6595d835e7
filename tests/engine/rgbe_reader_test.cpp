// Scanlines: run-length bytes to planes.
#include "hdr/engine/rgbe_reader.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "failure.h"
#include "radiance_file.h"

namespace vrx::test {
namespace {

using Plane = std::vector<int>;

/// One scanline of 2, 2, 0, 0 and the bytes given, decoded into row 0 of a store of the width given.
struct Scanline {
    OpenFile file;
    RgbeStore store;

    Scanline(int width, std::initializer_list<int> bytes) : file(fileOf(bytes)), store(width, 1) {}

    static FileBytes fileOf(std::initializer_list<int> bytes) {
        FileBytes file;
        append(file, {2, 2, 0, 0});
        append(file, bytes);
        return file;
    }

    ScanlineResult read(std::uint32_t maxRuns = kAllRuns) {
        return readScanline(file.cursor, store, 0, maxRuns);
    }

    /// A component's row with the extra column.
    [[nodiscard]] Plane plane(int c) const { return {store.row(c, 0), store.row(c, 0) + store.dimX() + 1}; }
};

TEST(Reader, FillsAPlaneFromARepeatRun) {
    Scanline line(3, {131, 7, 131, 8, 131, 9, 131, 10});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(0), (Plane{7, 7, 7, 0}));
}

TEST(Reader, TakesThePlanesInTheOrderRedGreenBlueExponent) {
    Scanline line(1, {129, 7, 129, 8, 129, 9, 129, 10});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(0), (Plane{7, 0}));
    EXPECT_EQ(line.plane(1), (Plane{8, 0}));
    EXPECT_EQ(line.plane(2), (Plane{9, 0}));
    EXPECT_EQ(line.plane(3), (Plane{10, 0}));
}

TEST(Reader, CopiesLiteralRuns) {
    Scanline line(4, {1, 5, 3, 6, 7, 8, 132, 0, 132, 0, 132, 0});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(0), (Plane{5, 6, 7, 8, 0}));
}

TEST(Reader, TakesACountOf128AsLiteralsAndOf129AsARepeat) {
    FileBytes bytes;
    append(bytes, {2, 2, 0, 129, 128});
    for (int i = 0; i < 128; ++i) append(bytes, {i});
    append(bytes, {129, 200});
    for (int c = 1; c < 4; ++c) append(bytes, {255, 1, 130, 2});  // 127 + 2 columns
    OpenFile file(bytes);
    RgbeStore store(129, 1);
    EXPECT_EQ(readScanline(file.cursor, store, 0), ScanlineResult::Decoded);
    EXPECT_EQ(store.row(0, 0)[0], 0);
    EXPECT_EQ(store.row(0, 0)[127], 127);
    EXPECT_EQ(store.row(0, 0)[128], 200);
    EXPECT_EQ(store.row(3, 0)[126], 1);
    EXPECT_EQ(store.row(3, 0)[127], 2);
    EXPECT_EQ(store.row(3, 0)[129], 0);
    EXPECT_EQ(file.cursor.position(), bytes.size());
}

TEST(Reader, ACountOfZeroConsumesOnlyItself) {
    Scanline line(2, {0, 0, 2, 5, 6, 0, 130, 1, 130, 1, 130, 1});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(0), (Plane{5, 6, 0}));
    EXPECT_EQ(line.plane(1), (Plane{1, 1, 0}));
}

TEST(Reader, ALiteralRunThatPassesTheEndOfTheRowCopiesOnlyUpToTheRowsEndButSkipsAllItsBytesInTheFile) {
    Scanline line(2, {5, 10, 11, 12, 13, 14, 130, 1, 130, 2, 130, 3});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(0), (Plane{10, 11, 0}));
    EXPECT_EQ(line.plane(1), (Plane{1, 1, 0}));
    EXPECT_EQ(line.plane(3), (Plane{3, 3, 0}));
}

TEST(Reader, ARepeatRunThatPassesTheEndOfTheRowIsCutOff) {
    Scanline line(2, {255, 10, 130, 1, 255, 2, 131, 3});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(0), (Plane{10, 10, 0}));
    EXPECT_EQ(line.plane(1), (Plane{1, 1, 0}));
    EXPECT_EQ(line.plane(2), (Plane{2, 2, 0}));
    EXPECT_EQ(line.plane(3), (Plane{3, 3, 0}));
}

TEST(Reader, WritesToNoOtherRow) {
    Scanline line(2, {255, 10, 255, 11, 255, 12, 255, 13});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_TRUE(isZeroRow(line.store, 1));
}

TEST(Reader, CanDecodeIntoTheExtraRow) {
    OpenFile file(Scanline::fileOf({130, 1, 130, 2, 130, 3, 130, 4}));
    RgbeStore store(2, 3);
    EXPECT_EQ(readScanline(file.cursor, store, 3), ScanlineResult::Decoded);
    EXPECT_EQ(store.row(0, 3)[1], 1);
    EXPECT_EQ(store.row(3, 3)[1], 4);
}

TEST(Reader, DoesNotLookAtTheSecondMarkAndTheWidth) {
    FileBytes bytes;
    append(bytes, {2, 99, 255, 255, 130, 1, 130, 2, 130, 3, 130, 4});
    OpenFile file(bytes);
    RgbeStore store(2, 1);
    EXPECT_EQ(readScanline(file.cursor, store, 0), ScanlineResult::Decoded);
    EXPECT_EQ(store.row(3, 0)[1], 4);
}

TEST(Reader, ReportsARowThatDoesNotBeginWithTwo) {
    FileBytes bytes;
    append(bytes, {1, 2, 0, 2, 130, 1, 130, 2, 130, 3, 130, 4});
    OpenFile file(bytes);
    RgbeStore store(2, 1);
    EXPECT_EQ(readScanline(file.cursor, store, 0), ScanlineResult::NotRunLength);
    EXPECT_EQ(file.cursor.position(), 4U);
    EXPECT_TRUE(isZeroRow(store, 0));
}

TEST(Reader, ReadsOnlyFourBytesOfAnEmptyRow) {
    Scanline line(0, {130, 1});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.file.cursor.position(), 4U);
}

TEST(Reader, TakesTheByteBehindTheFileAsZero) {
    Scanline repeat(2, {130, 1, 130, 2, 130, 3, 130});
    EXPECT_EQ(repeat.read(), ScanlineResult::Decoded);
    EXPECT_EQ(repeat.plane(3), (Plane{0, 0, 0}));

    Scanline literal(2, {130, 1, 130, 2, 130, 3, 2, 4});
    EXPECT_EQ(literal.read(), ScanlineResult::Decoded);
    EXPECT_EQ(literal.plane(3), (Plane{4, 0, 0}));
}

TEST(Reader, RefusesToReadBeyondTheByteBehindTheFile) {
    Scanline count(2, {130, 1, 130, 2, 130, 3});
    EXPECT_EQ(failureOf([&] { static_cast<void>(count.read()); }), kWrongFileType);
    Scanline literal(3, {131, 1, 131, 2, 131, 3, 3, 4});
    EXPECT_EQ(failureOf([&] { static_cast<void>(literal.read()); }), kWrongFileType);
}

TEST(Reader, KeepsWhatItDecodedBeforeAFailure) {
    Scanline line(2, {130, 1, 130, 2, 130, 3});
    EXPECT_EQ(failureOf([&] { static_cast<void>(line.read()); }), kWrongFileType);
    EXPECT_EQ(line.plane(0), (Plane{1, 1, 0}));
    EXPECT_EQ(line.plane(2), (Plane{3, 3, 0}));
}

TEST(Reader, UnreadBytesOfALiteralRunMayLieBehindTheFile) {
    Scanline line(1, {129, 1, 129, 2, 129, 3, 128, 4});
    EXPECT_EQ(line.read(), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(3), (Plane{4, 0}));
    EXPECT_EQ(failureOf([&] { static_cast<void>(line.read()); }), kWrongFileType);
}

TEST(Reader, ZeroCountsToTheEndOfTheFileAreRefused) {
    FileBytes bytes;
    append(bytes, {2, 2, 0, 2});
    bytes.resize(100000);
    OpenFile file(bytes);
    RgbeStore store(2, 1);
    EXPECT_EQ(failureOf([&] { static_cast<void>(readScanline(file.cursor, store, 0)); }), kWrongFileType);
}

TEST(Reader, LeavesARowAfterTheRunsThatItMayTake) {
    Scanline line(2, {1, 5, 1, 6, 1, 7, 1, 8, 130, 9, 130, 10});
    EXPECT_EQ(line.read(3), ScanlineResult::OutOfRuns);
    EXPECT_EQ(line.plane(0), (Plane{5, 6, 0}));
    EXPECT_EQ(line.plane(1), (Plane{7, 0, 0}));
    EXPECT_EQ(line.file.cursor.position(), 10U);  // 4 + 3 runs of 2 bytes
}

TEST(Reader, ARowOfFewerRunsIsDecodedWhole) {
    Scanline line(1, {129, 1, 129, 2, 129, 3, 129, 4});
    EXPECT_EQ(line.read(5), ScanlineResult::Decoded);
    EXPECT_EQ(line.plane(3), (Plane{4, 0}));
}

}  // namespace
}  // namespace vrx::test
