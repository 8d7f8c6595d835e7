// The two ways through a scanline, many bytes at a time and code by code, give the same bytes, ends and
// failures.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <random>
#include <vector>

#include "failure.h"
#include "hdr/engine/rgbe_reader.h"
#include "plane_codes.h"
#include "radiance_file.h"
#include "sample_picture.h"

namespace vrx::test {
namespace {

/// A limit that no scanline of these tests reaches.
constexpr std::uint32_t kCodeByCode = kAllRuns - 1;

struct Outcome {
    std::vector<ScanlineResult> results;
    std::optional<Error> failure;
    std::size_t position = 0;
    std::vector<std::uint8_t> store;

    bool operator==(const Outcome&) const = default;
};

Outcome outcomeOf(const FileBytes& file, int width, int rows, std::uint32_t maxRuns) {
    // A copy of exactly the file's size, so that a read beyond it is found.
    const std::vector<std::uint8_t> bytes = withZeroByte(file);
    RgbeCursor cursor(bytes, 0);
    RgbeStore store(width, rows);
    Outcome outcome;
    outcome.failure = failureOf([&] {
        for (int y = 0; y < rows; ++y) outcome.results.push_back(readScanline(cursor, store, y, maxRuns));
    });
    if (!outcome.failure) outcome.position = cursor.position();
    outcome.store.assign(store.data(), store.data() + store.size());
    return outcome;
}

void expectSame(const FileBytes& file, int width, int rows) {
    ASSERT_TRUE(outcomeOf(file, width, rows, kAllRuns) == outcomeOf(file, width, rows, kCodeByCode))
        << file.size() << " bytes for " << width << " x " << rows;
}

FileBytes scanlines(const RgbeStore& store) {
    FileBytes file;
    for (int y = 0; y < store.dimY(); ++y) {
        append(file, {2, 2, store.dimX() >> 8, store.dimX() & 255});
        for (int c = 0; c < kRgbeComponents; ++c) {
            const FileBytes codes =
                codesBy(baseline::encodePlane, {store.row(c, y), static_cast<std::size_t>(store.dimX())});
            file.insert(file.end(), codes.begin(), codes.end());
        }
    }
    return file;
}

/// Rows of codes that `next` makes, each followed by the bytes that it wants, until every plane is full.
FileBytes codes(int width, int rows, std::mt19937& random, const std::function<int()>& next) {
    FileBytes file;
    for (int y = 0; y < rows; ++y) {
        append(file, {2, 2, 0, 0});
        for (int c = 0; c < kRgbeComponents; ++c) {
            for (int x = 0; x < width;) {
                const int code = next();
                append(file, {code});
                for (int i = 0; i < (code > 128 ? 1 : code); ++i)
                    append(file, {static_cast<int>(random() % 256)});
                x += code > 128 ? code - 128 : code;
            }
        }
    }
    return file;
}

TEST(ReaderWays, AreTheSameForPicturesLikePhotographs) {
    for (const int width : {8, 127, 128, 129, 1000, 1024}) {
        expectSame(scanlines(bench::samplePicture(width, 8, static_cast<unsigned>(width))), width, 8);
    }
}

TEST(ReaderWays, AreTheSameForRandomCodesOfEveryWidth) {
    std::mt19937 random(7);
    for (int width = 0; width <= 400; ++width) {
        expectSame(codes(width, 2, random, [&] { return static_cast<int>(random() % 256); }), width, 2);
        expectSame(
            codes(width, 2, random, [&] { return static_cast<int>(1 + random() % 9 + random() % 2 * 128); }),
            width, 2);
        if (HasFatalFailure()) return;
    }
}

TEST(ReaderWays, AreTheSameForEveryCodeAlone) {
    std::mt19937 random(8);
    for (int code = 1; code < 256; ++code) {
        for (const int width : {1, 64, 127, 128, 129, 255, 256, 257}) {
            expectSame(codes(width, 1, random, [&] { return code; }), width, 1);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(ReaderWays, AreTheSameForZeroCountsAmongTheCodes) {
    std::mt19937 random(9);
    for (int width = 1; width <= 300; width += 13) {
        expectSame(
            codes(width, 2, random, [&] { return static_cast<int>(random() % 3 == 0 ? 0 : random() % 256); }),
            width, 2);
    }
}

TEST(ReaderWays, AreTheSameWhereverTheFileIsCut) {
    const FileBytes whole = scanlines(bench::samplePicture(300, 2, 3));
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        expectSame({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}, 300, 2);
        if (HasFatalFailure()) return;
    }
}

TEST(ReaderWays, AreTheSameForBytesOfAnyKind) {
    std::mt19937 random(10);
    for (int i = 0; i < 3000; ++i) {
        FileBytes file;
        append(file, {2, 2, 0, 0});
        for (std::size_t n = random() % 1500; n > 0; --n) append(file, {static_cast<int>(random() % 256)});
        expectSame(file, static_cast<int>(random() % 500), 1);
        if (HasFatalFailure()) return;
    }
}

TEST(ReaderWays, LeaveTheExtraColumnAndOtherRowsAlone) {
    std::mt19937 random(11);
    const FileBytes file = codes(200, 1, random, [] { return 255; });
    RgbeStore store(200, 2);
    std::fill_n(store.data(), store.size(), std::uint8_t{99});
    for (int c = 0; c < 4; ++c) std::fill_n(store.row(c, 1), 200, std::uint8_t{0});
    const std::vector<std::uint8_t> bytes = withZeroByte(file);
    RgbeCursor cursor(bytes, 0);
    ASSERT_EQ(readScanline(cursor, store, 1), ScanlineResult::Decoded);
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(store.row(c, 1)[200], 99);
        for (const int y : {0, 2})
            EXPECT_TRUE(std::all_of(store.row(c, y), store.row(c, y) + 201, [](int b) { return b == 99; }));
    }
}

}  // namespace
}  // namespace vrx::test
