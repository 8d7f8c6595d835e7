// Planes and pictures to Radiance files, byte by byte.
#include "hdr/engine/rgbe_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "failure.h"
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"
#include "memory_sink.h"
#include "plane_codes.h"
#include "radiance_file.h"
#include "run_length_definition.h"

namespace vrx::test {
namespace {

using Codes = std::vector<int>;

/// The codes of a plane, the same by every kernel.
Codes codesOf(const FileBytes& plane) {
    const FileBytes codes = codesBy(baseline::encodePlane, plane);
    for (const EncodePlane encode : planeEncoders()) EXPECT_EQ(codesBy(encode, plane), codes);
    return {codes.begin(), codes.end()};
}

FileBytes countingBytes(int size) {
    FileBytes plane;
    for (int i = 0; i < size; ++i) append(plane, {i % 256});
    return plane;
}

FileBytes repeated(int size, int value) {
    return FileBytes(static_cast<std::size_t>(size), std::uint8_t(value));
}

// Golden planes.

TEST(Writer, APlaneOf200EqualBytesIsWrittenAsARunOf127AndARunOf73) {
    EXPECT_EQ(codesOf(repeated(200, 9)), (Codes{255, 9, 201, 9}));
}

TEST(Writer, APlane117777IsWrittenAs130And1And132And7) {
    EXPECT_EQ(codesOf({1, 1, 7, 7, 7, 7}), (Codes{130, 1, 132, 7}));
}

TEST(Writer, APlane11567777IsWrittenAs4And1And1And5And6And132And7) {
    EXPECT_EQ(codesOf({1, 1, 5, 6, 7, 7, 7, 7}), (Codes{4, 1, 1, 5, 6, 132, 7}));
}

TEST(Writer, AShortRunAloneBeforeALongRunIsWrittenAsARun) {
    EXPECT_EQ(codesOf({1, 1, 1, 7, 7, 7, 7}), (Codes{131, 1, 132, 7}));
    EXPECT_EQ(codesOf({7, 7, 7, 7, 1, 1, 8, 8, 8, 8}), (Codes{132, 7, 130, 1, 132, 8}));
}

TEST(Writer, AShortRunThatIsNotAloneIsWrittenAsLiterals) {
    EXPECT_EQ(codesOf({2, 3, 3, 3, 4, 4, 4, 4}), (Codes{4, 2, 3, 3, 3, 132, 4}));
    EXPECT_EQ(codesOf({6, 6, 7, 7}), (Codes{4, 6, 6, 7, 7}));
}

TEST(Writer, AShortRunAloneBeforeTheEndIsWrittenAsARun) {
    EXPECT_EQ(codesOf({5, 5}), (Codes{130, 5}));
    EXPECT_EQ(codesOf({5, 5, 5}), (Codes{131, 5}));
    EXPECT_EQ(codesOf({7, 7, 7, 7, 5, 5}), (Codes{132, 7, 130, 5}));
}

TEST(Writer, APlaneOf300DistinctBytesIsWrittenAsLiteralChunksOf128And128And44) {
    const FileBytes plane = countingBytes(300);
    Codes expected{128};
    expected.insert(expected.end(), plane.begin(), plane.begin() + 128);
    expected.push_back(128);
    expected.insert(expected.end(), plane.begin() + 128, plane.begin() + 256);
    expected.push_back(44);
    expected.insert(expected.end(), plane.begin() + 256, plane.end());
    EXPECT_EQ(codesOf(plane), expected);
}

TEST(Writer, RunsAreCutAt127) {
    EXPECT_EQ(codesOf(repeated(127, 3)), (Codes{255, 3}));
    EXPECT_EQ(codesOf(repeated(128, 3)), (Codes{255, 3, 1, 3}));
    EXPECT_EQ(codesOf(repeated(130, 3)), (Codes{255, 3, 131, 3}));
    EXPECT_EQ(codesOf(repeated(131, 3)), (Codes{255, 3, 132, 3}));
    EXPECT_EQ(codesOf(repeated(254, 3)), (Codes{255, 3, 255, 3}));
}

TEST(Writer, TheSmallestPlanes) {
    EXPECT_EQ(codesOf(FileBytes{}), Codes{});
    EXPECT_EQ(codesOf({9}), (Codes{1, 9}));
    EXPECT_EQ(codesOf({9, 8}), (Codes{2, 9, 8}));
    EXPECT_EQ(codesOf({9, 9, 9, 9}), (Codes{132, 9}));
}

// Planes of every size against the definition.

class PlaneMaker {
  public:
    /// Bytes of `values` different ones in runs of up to `longest`.
    FileBytes make(std::size_t size, unsigned values, unsigned longest) {
        FileBytes plane;
        while (plane.size() < size) {
            const auto value = static_cast<std::uint8_t>(random_() % values);
            const std::size_t length = std::min<std::size_t>(1 + random_() % longest, size - plane.size());
            plane.insert(plane.end(), length, value);
        }
        return plane;
    }

  private:
    std::mt19937 random_{20};
};

class WriterPlanes : public testing::TestWithParam<std::pair<unsigned, unsigned>> {};

TEST_P(WriterPlanes, OfEverySizeAreEncodedAsDefined) {
    const auto [values, longest] = GetParam();
    PlaneMaker maker;
    for (std::size_t size = 0; size <= 1000; ++size) {
        const FileBytes plane = maker.make(size, values, longest);
        const FileBytes expected = definedCodes(plane);
        ASSERT_EQ(codesOf(plane), Codes(expected.begin(), expected.end())) << size;
    }
}

// How many different bytes, and the longest run made of one of them at a time.
INSTANTIATE_TEST_SUITE_P(Writer, WriterPlanes,
                         testing::Values(std::pair{1U, 1U}, std::pair{2U, 1U}, std::pair{2U, 5U},
                                         std::pair{3U, 2U}, std::pair{256U, 1U}, std::pair{256U, 4U},
                                         std::pair{256U, 8U}, std::pair{256U, 300U}));

TEST(Writer, PlanesOfTheGreatestSizesAreEncodedAsDefined) {
    PlaneMaker maker;
    for (std::size_t size = 65'470; size <= 65'535; ++size) {
        const FileBytes plane = maker.make(size, 256, 8);
        const FileBytes expected = definedCodes(plane);
        ASSERT_EQ(codesOf(plane), Codes(expected.begin(), expected.end())) << size;
    }
}

// Files.

const std::string kHeader =
    "#?RADIANCE\n"
    "SOFTWARE=QUILB\n"
    "FORMAT=32-bit_rle_rgbe\n"
    "EXPOSURE=1.0000000000000\n"
    "\n";

FileBytes encoded(const RgbeStore& store) {
    MemorySink sink;
    encodeRgbe(store, sink);
    return sink.bytes;
}

TEST(Writer, WritesASmallPictureByteByByte) {
    RgbeStore store(2, 2);
    const std::uint8_t rows[2][4][2] = {{{1, 2}, {3, 3}, {4, 5}, {136, 136}},
                                        {{6, 6}, {7, 8}, {9, 9}, {136, 137}}};
    for (int y = 0; y < 2; ++y) {
        for (int c = 0; c < 4; ++c) std::copy_n(rows[y][c], 2, store.row(c, y));
    }
    FileBytes expected = bytesOf(kHeader + "-Y 2 +X 2\n");
    append(expected, {2, 2, 0, 2, 2, 1, 2, 130, 3, 2, 4, 5, 130, 136});
    append(expected, {2, 2, 0, 2, 130, 6, 2, 7, 8, 130, 9, 2, 136, 137});
    EXPECT_EQ(encoded(store), expected);
}

TEST(Writer, A640x480ImageProducesTheHeaderLinesAndScanlinesThatEachBeginWith2And2And2And128) {
    const FileBytes file = encoded(RgbeStore(640, 480));
    FileBytes expected = bytesOf(kHeader + "-Y 480 +X 640\n");
    for (int y = 0; y < 480; ++y) {
        append(expected, {2, 2, 2, 128});
        for (int c = 0; c < 4; ++c) appendRun(expected, 640, 0);  // 5 * 127 + 5
    }
    EXPECT_EQ(file, expected);
}

TEST(Writer, LeavesOutTheExtraColumnAndRow) {
    RgbeStore store(3, 2);
    const FileBytes expected = encoded(store);
    for (int c = 0; c < 4; ++c) {
        store.row(c, 0)[3] = 99;
        store.row(c, 2)[0] = 99;
    }
    EXPECT_EQ(encoded(store), expected);
}

TEST(Writer, AnEmptyPictureIsAHeader) { EXPECT_EQ(encoded(RgbeStore{}), bytesOf(kHeader + "-Y 0 +X 0\n")); }

TEST(Writer, APictureWithoutRowsNeedsNoRoomForARow) {
    RgbeStore store;
    EXPECT_EQ(errorNumberOf([&] { store.reset(2000000000, 0); }), 7);
    MemorySink sink;
    encodeRgbe(store, sink);
    EXPECT_EQ(sink.bytes, bytesOf(kHeader + "-Y 0 +X 2000000000\n"));
}

TEST(Writer, APictureWithoutColumnsHasEmptyScanlines) {
    FileBytes expected = bytesOf(kHeader + "-Y 2 +X 0\n");
    append(expected, {2, 2, 0, 0, 2, 2, 0, 0});
    EXPECT_EQ(encoded(RgbeStore(0, 2)), expected);
}

TEST(Writer, AWidthOf65535IsWritten) {
    const FileBytes file = encoded(RgbeStore(65535, 1));
    FileBytes expected = bytesOf(kHeader + "-Y 1 +X 65535\n");
    append(expected, {2, 2, 255, 255});
    for (int c = 0; c < 4; ++c) appendRun(expected, 65535, 0);  // 516 * 127 + 3
    EXPECT_EQ(file, expected);
}

TEST(Writer, AWidthOf65536FailsTheSave) {
    MemorySink sink;
    const RgbeStore store(65536, 1);
    EXPECT_EQ(failureOf([&] { encodeRgbe(store, sink); }), kFileError);
    EXPECT_TRUE(sink.bytes.empty());
}

TEST(Writer, RowsWithoutTheirBytesFailTheSave) {
    RgbeStore store;
    EXPECT_EQ(errorNumberOf([&] { store.reset(65535, 65535); }), 7);
    MemorySink sink;
    EXPECT_EQ(failureOf([&] { encodeRgbe(store, sink); }), kFileError);
    EXPECT_TRUE(sink.bytes.empty());
}

TEST(Writer, AFailureOfTheSinkLeavesUnchanged) {
    struct FullDisk final : ByteSink {
        void write(std::span<const std::uint8_t>) override { throw platformError(Platform::DiskFull); }
    } sink;
    EXPECT_EQ(errorNumberOf([&] { encodeRgbe(RgbeStore(3, 2), sink); }), 61);
}

/// The store that the engine's reader makes of a file.
RgbeStore decoded(const FileBytes& bytes) {
    OpenFile file(bytes, 1);
    const Resolution size = readResolution(file.cursor);
    RgbeStore store(size.dimX, size.dimY);
    for (int y = 0; y < size.dimY; ++y) {
        EXPECT_EQ(readScanline(file.cursor, store, y), ScanlineResult::Decoded);
    }
    EXPECT_EQ(file.cursor.position(), bytes.size());
    return store;
}

TEST(Writer, WhatIsWrittenReadsBackTheSame) {
    PlaneMaker maker;
    const std::pair<int, int> sizes[] = {{1, 1}, {2, 3}, {7, 5}, {127, 4}, {128, 4}, {129, 4}, {1500, 300}};
    for (const auto& [dimX, dimY] : sizes) {
        RgbeStore store(dimX, dimY);
        for (int c = 0; c < 4; ++c) {
            for (int y = 0; y < dimY; ++y) {
                const FileBytes plane = maker.make(static_cast<std::size_t>(dimX), 256, 1U << (2 * c));
                std::copy(plane.begin(), plane.end(), store.row(c, y));
            }
        }
        const RgbeStore again = decoded(encoded(store));
        ASSERT_EQ(again.size(), store.size());
        EXPECT_TRUE(std::equal(store.data(), store.data() + store.size(), again.data())) << dimX;
    }
}

}  // namespace
}  // namespace vrx::test
