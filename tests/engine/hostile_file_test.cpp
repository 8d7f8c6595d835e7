// Files that are cut, damaged or made to hurt: every one ends with a picture or with "File Type Wrong!", and
// leaves an object that goes on working.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "failure.h"
#include "recording_host.h"
#include "reference_reader.h"
#include "resident_memory.h"

namespace vrx::test {
namespace {

enum class Mode { Full, Inverted, Preview };
constexpr Mode kModes[] = {Mode::Full, Mode::Inverted, Mode::Preview};

struct HostileFile : testing::Test, LoadingObject {
    HostileFile() {
        host.files[u"old"] = pictureFile(6, 2);
        picture.setExposure(0.0F);
        picture.setGamma(1.0F);
    }

    /// Loads the file into a picture that holds "old".
    std::optional<Error> loadHostile(const FileBytes& file, Mode mode = Mode::Full) {
        load(u"old");
        host.files[u"hostile"] = file;
        host.calls.clear();
        return failureOf([&] {
            if (mode == Mode::Preview) return preview(u"hostile");
            load(u"hostile", mode == Mode::Inverted);
        });
    }

    [[nodiscard]] bool holdsOld() const {
        return picture.dimX() == 6 && picture.dimY() == 2 && picture.store().dimX() == 6 &&
               holdsScanline(picture.store(), 0, 0) && holdsScanline(picture.store(), 1, 1);
    }

    void expectNothingRuns() {
        EXPECT_FALSE(loader.loading());
        const int before = host.count("read hostile");
        loader.parameterChanged();
        EXPECT_EQ(host.count("read hostile"), before);
    }

    /// The outcome of a load that failed with "File Type Wrong!" before or after its header.
    void expectRefused(const std::optional<Error>& failure, bool headerRead) {
        EXPECT_EQ(failure, kWrongFileType);
        EXPECT_EQ(host.count("finished"), 0);
        EXPECT_TRUE(headerRead || holdsOld());
        expectNothingRuns();
    }
};

// Cut files.

/// Rows of literal runs.
FileBytes literalFile() {
    FileBytes file = headerFile(3, 2);
    for (int y = 0; y < 2; ++y) {
        append(file, {2, 2, 0, 3});
        for (int c = 0; c < 4; ++c) append(file, {3, 10 + y, 20 + c, 30});
    }
    return file;
}

// The byte behind the file reads as zero: with one byte missing, the last value of the file is 0. With two
// missing the last run lacks a byte, or its count reads as 0 and no run follows.
TEST_F(HostileFile, AGoodFileCutAnywhereFailsWithFileTypeWrongUnlessOnlyItsLastByteIsMissing) {
    for (const FileBytes& good : {pictureFile(4, 3), literalFile()}) {
        const std::size_t headerSize =
            good == literalFile() ? headerFile(3, 2).size() : headerFile(4, 3).size();
        for (std::size_t size = 0; size < good.size(); ++size) {
            const FileBytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
            for (const Mode mode : kModes) {
                SCOPED_TRACE(size);
                const auto failure = loadHostile(cut, mode);
                if (size + 1 == good.size()) {
                    EXPECT_EQ(failure, std::nullopt);
                } else {
                    expectRefused(failure, size >= headerSize);
                }
            }
        }
    }
}

TEST_F(HostileFile, TheMissingLastByteOfAFileReadsAsZero) {
    FileBytes file = literalFile();
    file.pop_back();
    EXPECT_EQ(loadHostile(file), std::nullopt);
    EXPECT_EQ(picture.store().row(3, 1)[1], 23);
    EXPECT_EQ(picture.store().row(3, 1)[2], 0);
}

TEST_F(HostileFile, BytesBehindTheLastRowDoNotMatter) {
    FileBytes file = literalFile();
    append(file, "trailing bytes");
    EXPECT_EQ(loadHostile(file), std::nullopt);
    EXPECT_EQ(picture.store().row(3, 1)[2], 30);
}

// Headers.

TEST_F(HostileFile, ResolutionLinesWithoutTwoSizesAreRefusedBeforeTheHeaderIsTold) {
    for (const char* resolution : {"-Y",
                                   "-Y ",
                                   "-Y 3",
                                   "-Y 3 +X",
                                   "-Y 3 +X ",
                                   "-Y 3 4",
                                   "-Y -3 +X 4",
                                   "-Y 3 +X -4",
                                   "-Y 2147483648 +X 4",
                                   "-Y 3 +X 2147483648",
                                   "-Y 3 +X 18446744073709551620",
                                   "-Y 3 +X -2147483648",
                                   "-Y three +X 4",
                                   "-Y 3 +X 4x",
                                   "-Y 3\t+X 4",
                                   "-Y\t3 +X 4",
                                   "\t-Y 3 +X 4",
                                   "",
                                   "   "}) {
        SCOPED_TRACE(resolution);
        FileBytes file = headerFile(resolution);
        for (int y = 0; y < 3; ++y) appendRow(file, 4, y);
        expectRefused(loadHostile(file), false);
        EXPECT_EQ(host.calls, std::vector<std::string>{"read hostile"});
    }
}

TEST_F(HostileFile, SizesThatNoMemoryHoldsAreOutOfMemory) {
    for (const char* resolution : {"-Y 40000 +X 40000", "-Y 2147483647 +X 2147483647", "-Y 0 +X 2147483647",
                                   "-Y 2147483647 +X 0", "-Y 65536 +X 65536", "-Y 536870911 +X 0"}) {
        for (const Mode mode : kModes) {
            SCOPED_TRACE(resolution);
            const auto failure = loadHostile(headerFile(resolution), mode);
            EXPECT_EQ(failure, (Error{7, u"", u"Out of memory"}));
            EXPECT_TRUE(picture.store().empty());
            EXPECT_EQ(host.count("finished"), 0);
            expectNothingRuns();
        }
    }
}

TEST_F(HostileFile, ASizeBombCostsNoResidentMemory) {
    const FileBytes bomb = headerFile(12000, 12000);  // 576 MB of pixels
    const long before = residentMegabytes();
    expectRefused(loadHostile(bomb), true);
    EXPECT_EQ(picture.dimX(), 12000);
    EXPECT_EQ(picture.store().row(3, 12000)[12000], 0);
    EXPECT_LT(residentMegabytes() - before, 50);
}

TEST_F(HostileFile, ASizeBombLoadedAgainCostsNoResidentMemory) {
    host.files[u"bomb"] = headerFile(12000, 12000);
    const long before = residentMegabytes();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(errorNumberOf([this] { preview(u"bomb"); }), 1);
    EXPECT_LT(residentMegabytes() - before, 300);
}

TEST_F(HostileFile, AMegabyteWithoutALineEndIsRefused) {
    expectRefused(loadHostile(FileBytes(1 << 20, 'a')), false);
}

TEST_F(HostileFile, AMegabyteOfLineEndsIsRefused) {
    expectRefused(loadHostile(FileBytes(1 << 20, '\n')), false);
}

TEST_F(HostileFile, AResolutionLineCountsUpToReadPosition10000) {
    const FileBytes picture4x3 = pictureFile(4, 3);
    const std::string text(picture4x3.begin(), picture4x3.end());
    const std::size_t line = text.find("-Y");
    for (const std::size_t position : {10000U, 10001U}) {
        FileBytes file = picture4x3;
        std::string filler(position - line, 'c');
        for (std::size_t i = 99; i < filler.size(); i += 100) filler[i] = '\n';
        filler.back() = '\n';
        file.insert(file.begin() + static_cast<std::ptrdiff_t>(line), filler.begin(), filler.end());
        const auto failure = loadHostile(file);
        if (position == 10000) {
            EXPECT_EQ(failure, std::nullopt);
            EXPECT_TRUE(holdsScanline(picture.store(), 2, 2));
        } else {
            expectRefused(failure, false);
        }
    }
}

TEST_F(HostileFile, ALineOf1000CharactersEndsTheSearchForTheResolution) {
    for (const std::size_t length : {999U, 1000U}) {
        FileBytes file = bytesOf("#\n" + std::string(length, 'c') + "\n");
        const FileBytes good = pictureFile(4, 3);
        file.insert(file.end(), good.begin(), good.end());
        const auto failure = loadHostile(file);
        if (length == 999) {
            EXPECT_EQ(failure, std::nullopt);
        } else {
            expectRefused(failure, false);
        }
    }
}

TEST_F(HostileFile, AFileWithCrLfLineEndsFailsAfterItsHeader) {
    FileBytes file = bytesOf("#?RADIANCE\r\nFORMAT=32-bit_rle_rgbe\r\n\r\n-Y 1 +X 4\r\n");
    appendRow(file, 4, 0);
    expectRefused(loadHostile(file), true);
    EXPECT_EQ(host.count("header 4x1"), 1);
    EXPECT_EQ(picture.dimX(), 4);
}

// Rows.

TEST_F(HostileFile, RunsPastTheRowAreCutOffThere) {
    FileBytes file = headerFile(2, 2);
    for (int y = 0; y < 2; ++y) {
        append(file, {2, 2, 0, 2, 255, 1 + y, 4, 3, 4, 99, 99, 255, 5});
        append(file, {128, 6, 7});
        file.insert(file.end(), 126, 99);
    }
    EXPECT_EQ(loadHostile(file), std::nullopt);
    for (int y = 0; y < 2; ++y) {
        EXPECT_EQ(picture.store().row(0, y)[1], 1 + y);
        EXPECT_EQ(picture.store().row(1, y)[1], 4);
        EXPECT_EQ(picture.store().row(2, y)[1], 5);
        EXPECT_EQ(picture.store().row(3, y)[1], 7);
        EXPECT_EQ(picture.store().row(3, y)[2], 0);
    }
    EXPECT_TRUE(isZeroRow(picture.store(), 2));
}

TEST_F(HostileFile, AMegabyteOfEmptyRunsIsRefused) {
    FileBytes file = headerFile(4, 3);
    append(file, {2, 2, 0, 4});
    file.insert(file.end(), 1 << 20, 0);
    for (const Mode mode : kModes) expectRefused(loadHostile(file, mode), true);
}

// Damaged files, beside a reader that goes byte by byte.

struct DamagedFile : HostileFile {
    void expectLikeReference(const FileBytes& file, Mode mode) {
        const ReferenceReader reference(file);
        const auto failure = loadHostile(file, mode);
        ASSERT_EQ(failure, reference.good ? std::nullopt : std::optional(kWrongFileType));
        ASSERT_FALSE(loader.loading());
        ASSERT_EQ(host.count("finished"), reference.good ? 1 : 0);
        if (!reference.sizesKnown) {
            ASSERT_TRUE(holdsOld());
            return;
        }
        ASSERT_EQ(picture.dimX(), reference.dimX);
        ASSERT_EQ(picture.dimY(), reference.dimY);
        for (int y = 0; y < reference.rows; ++y) {
            const int row = mode == Mode::Inverted ? reference.dimY - y : y;
            for (int c = 0; c < 4; ++c) {
                for (int x = 0; x < reference.dimX; ++x) {
                    ASSERT_EQ(picture.store().row(c, row)[x], reference.at(x, y, c));
                }
            }
        }
    }
};

/// Every 20th load is a preview, as these take the time to build tables.
Mode modeOf(int number) {
    if (number % 20 == 0) return Mode::Preview;
    return number % 2 == 0 ? Mode::Full : Mode::Inverted;
}

FileBytes mixedFile() {
    FileBytes file = headerFile(7, 3);
    append(file, {2, 2, 0, 7, 135, 1, 7, 1, 2, 3, 4, 5, 6, 7, 132, 8, 3, 9, 10, 11, 135, 136});
    append(file, {2, 2, 0, 7, 1, 1, 134, 2, 2, 3, 4, 133, 5, 131, 6, 132, 7, 3, 1, 2, 3, 132, 136});
    append(file, {2, 2, 0, 7, 135, 9, 0, 135, 10, 255, 11, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    return file;
}

TEST_F(DamagedFile, TheFileItselfLoads) {
    ASSERT_TRUE(ReferenceReader(mixedFile()).good);
    for (const Mode mode : kModes) expectLikeReference(mixedFile(), mode);
}

TEST_F(DamagedFile, WithAnyByteReplacedByAnyOtherLoadsOrFailsAsTheFormatSays) {
    const FileBytes good = mixedFile();
    const std::string text(good.begin(), good.end());
    for (std::size_t i = text.find("-Y"); i < good.size(); ++i) {
        for (int value = 0; value < 256; ++value) {
            FileBytes file = good;
            file[i] = static_cast<std::uint8_t>(value);
            expectLikeReference(file, modeOf(value));
            if (HasFatalFailure()) FAIL() << "byte " << i << " is " << value;
        }
    }
}

TEST_F(DamagedFile, WithManyBytesReplacedInsertedOrRemovedLoadsOrFailsAsTheFormatSays) {
    const FileBytes good = mixedFile();
    std::mt19937 random(31);
    const long before = residentMegabytes();
    for (int i = 0; i < 5000; ++i) {
        FileBytes file = good;
        for (auto changes = 1 + random() % 6; changes > 0; --changes) {
            const auto place = file.begin() + static_cast<std::ptrdiff_t>(random() % file.size());
            const auto value = static_cast<std::uint8_t>(random());
            if (random() % 3 == 0) {
                file.insert(place, value);
            } else if (random() % 2 == 0) {
                file.erase(place);
            } else {
                *place = value;
            }
        }
        expectLikeReference(file, modeOf(i));
        if (HasFatalFailure()) FAIL() << "variant " << i;
    }
    EXPECT_LT(residentMegabytes() - before, 200);
}

TEST_F(DamagedFile, OfRandomRowsLoadsOrFailsAsTheFormatSays) {
    std::mt19937 random(32);
    for (int i = 0; i < 5000; ++i) {
        FileBytes file = headerFile(static_cast<int>(random() % 30), static_cast<int>(random() % 4));
        append(file, {2, 2, 0, 0});
        for (auto size = random() % 300; size > 0; --size) {
            append(file, {static_cast<int>(random() % (random() % 2 == 0 ? 4 : 256))});
        }
        expectLikeReference(file, modeOf(i));
        if (HasFatalFailure()) FAIL() << "variant " << i;
    }
}

}  // namespace
}  // namespace vrx::test
