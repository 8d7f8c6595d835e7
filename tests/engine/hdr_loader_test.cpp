// Loads that run undisturbed: what the host is told, and what is in the picture afterwards.
#include "hdr/engine/hdr_loader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "failure.h"
#include "recording_host.h"

namespace vrx::test {
namespace {

using Calls = std::vector<std::string>;

struct Loader : testing::Test, LoadingObject {
    Loader() {
        host.files[u"a"] = pictureFile(4, 3);
        host.files[u"empty"] = {};
        host.files[u"text"] = bytesOf("no picture\n");
        host.files[u"flat"] = headerFile(2, 1);
        append(host.files[u"flat"], {9, 9, 9, 136, 9, 9, 9, 136});
        host.files[u"short"] = pictureFile(4, 3);
        host.files[u"short"].resize(host.files[u"short"].size() - 5);
    }

    [[nodiscard]] bool holdsA() const {
        return picture.dimX() == 4 && picture.dimY() == 3 && picture.store().dimX() == 4 &&
               picture.store().dimY() == 3 && holdsScanline(picture.store(), 0, 0) &&
               holdsScanline(picture.store(), 1, 1) && holdsScanline(picture.store(), 2, 2) &&
               isZeroRow(picture.store(), 3);
    }
};

TEST_F(Loader, IsIdleAtFirst) {
    EXPECT_FALSE(loader.loading());
    EXPECT_EQ(loader.fileName(), u"");
}

TEST_F(Loader, ReadsAFileIntoThePicture) {
    load(u"a");
    EXPECT_TRUE(holdsA());
    EXPECT_EQ(loader.fileName(), u"a");
}

TEST_F(Loader, TellsAFullLoadWithoutYielding) {
    load(u"a");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "finished"}));
}

TEST_F(Loader, TellsAPreviewRowByRow) {
    preview(u"a");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3",       //
                                 "yield", "refresh", "yield",  // row 0
                                 "yield", "yield",             // row 1
                                 "yield", "yield",             // row 2
                                 "refresh", "finished"}));
}

TEST_F(Loader, IsLoadingFromTheReadingOfTheFileToTheFinish) {
    Calls idle;
    for (const char* kind : {"read", "header", "refresh", "yield", "finished"}) {
        host.at(kind, [this, kind, &idle] {
            if (!loader.loading()) idle.emplace_back(kind);
        });
    }
    preview(u"a");
    EXPECT_EQ(idle, Calls{});
    EXPECT_FALSE(loader.loading());
}

TEST_F(Loader, KnowsTheSizesAtTheHeaderAndHasReadNoPixelYet) {
    host.files[u"b"] = pictureFile(7, 5);
    load(u"a");
    host.at("header", 2, [this] {
        EXPECT_EQ(picture.dimX(), 7);
        EXPECT_EQ(picture.dimY(), 5);
        EXPECT_EQ(picture.store().dimX(), 4);
        EXPECT_TRUE(holdsScanline(picture.store(), 0, 0));
    });
    load(u"b");
    EXPECT_EQ(picture.store().dimX(), 7);
    EXPECT_TRUE(holdsScanline(picture.store(), 4, 4));
}

TEST_F(Loader, AFileWhoseResolutionLineIsPlusX640MinusY480GivesDimX640DimY480) {
    host.files[u"wide"] = headerFile("+X 640 -Y 480");
    for (int y = 0; y < 480; ++y) appendRow(host.files[u"wide"], 640, y);
    load(u"wide");
    EXPECT_EQ(picture.dimX(), 640);
    EXPECT_EQ(picture.dimY(), 480);
    EXPECT_TRUE(holdsScanline(picture.store(), 479, 479));
}

TEST_F(Loader, TheFirstByteOfAFileIsNeverRead) {
    host.files[u"bare"] = bytesOf("-Y 1 +X 2\n");
    appendRow(host.files[u"bare"], 2, 0);
    EXPECT_EQ(failureOf([this] { load(u"bare"); }), kWrongFileType);
    host.files[u"bare"].insert(host.files[u"bare"].begin(), '?');
    EXPECT_EQ(failureOf([this] { load(u"bare"); }), std::nullopt);
}

TEST_F(Loader, RefreshesAtEvery80thRowAndOnceMoreAtTheEnd) {
    host.files[u"high"] = pictureFile(2, 161);
    std::vector<int> yields;
    for (int nth = 1; nth <= 9; ++nth) {
        host.at("refresh", nth, [this, &yields] { yields.push_back(host.count("yield")); });
    }
    preview(u"high");
    // Two yields a row, and one before a row's refresh: rows 0, 80 and 160, then all 161 rows.
    EXPECT_EQ(yields, (std::vector<int>{1, 161, 321, 322}));
}

TEST_F(Loader, RefreshesTwiceForAPictureOfOneRow) {
    host.files[u"one"] = pictureFile(2, 1);
    preview(u"one");
    EXPECT_EQ(host.events(), (Calls{"read one", "header 2x1", "refresh", "refresh", "finished"}));
}

TEST_F(Loader, APictureWithoutRowsLoads) {
    host.files[u"rowless"] = headerFile(4, 0);
    load(u"a");
    preview(u"rowless");
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "finished",  //
                                    "read rowless", "header 4x0", "refresh", "finished"}));
    EXPECT_EQ(picture.store().dimX(), 4);
    EXPECT_EQ(picture.store().dimY(), 0);
    EXPECT_TRUE(isZeroRow(picture.store(), 0));
}

TEST_F(Loader, APictureWithoutColumnsLoads) {
    host.files[u"narrow"] = headerFile(0, 2);
    append(host.files[u"narrow"], {2, 2, 0, 0, 2, 2, 0, 0});
    preview(u"narrow");
    EXPECT_EQ(picture.dimX(), 0);
    EXPECT_EQ(picture.dimY(), 2);
    EXPECT_EQ(host.count("finished"), 1);
}

// Inversion.

TEST_F(Loader, WithBInvertTrueRow0OfTheStoreIsAllZerosAndTheFilesLastScanlineIsInRow1) {
    load(u"a", true);
    EXPECT_TRUE(isZeroRow(picture.store(), 0));
    EXPECT_TRUE(holdsScanline(picture.store(), 1, 2));
    EXPECT_TRUE(holdsScanline(picture.store(), 2, 1));
    EXPECT_TRUE(holdsScanline(picture.store(), 3, 0));
}

// The preview bitmap.

FileBytes twoByTwo() {
    FileBytes file = headerFile(2, 2);
    append(file, {2, 2, 0, 2, 130, 10, 130, 20, 130, 30, 130, 136});
    append(file, {2, 2, 0, 2, 2, 11, 13, 130, 21, 130, 31, 130, 136});
    return file;
}

// With exposure 0 and gamma 1 a mantissa M of exponent 136 is M + 0.5, rounded half to even.
const FileBytes kTopRow = {30, 20, 10, 30, 20, 10, 0, 0};
const FileBytes kBottomRow = {32, 22, 12, 32, 22, 14, 0, 0};

FileBytes pixelsOf(const Bitmap24& bitmap) { return {bitmap.data(), bitmap.data() + bitmap.size()}; }

FileBytes joined(FileBytes first, const FileBytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST_F(Loader, PaintsAPreviewBottomUpInBlueGreenRed) {
    host.files[u"p"] = twoByTwo();
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    preview(u"p");
    EXPECT_EQ(picture.preview().width(), 2U);
    EXPECT_EQ(picture.preview().height(), 2U);
    EXPECT_EQ(pixelsOf(picture.preview()), joined(kBottomRow, kTopRow));
}

TEST_F(Loader, APreviewIsBlackBelowTheRowsReadSoFar) {
    host.files[u"p"] = twoByTwo();
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    FileBytes atFirstRow;
    host.at("refresh", [&] { atFirstRow = pixelsOf(picture.preview()); });
    preview(u"p");
    EXPECT_EQ(atFirstRow, joined(FileBytes(8, 0), kTopRow));
}

TEST_F(Loader, APreviewIsPlainEvenWithAutoExposition) {
    host.files[u"p"] = twoByTwo();
    picture.setExposure(0.0F);
    picture.setGamma(1.0F);
    picture.setAutoExposition(true);
    preview(u"p");
    EXPECT_EQ(pixelsOf(picture.preview()), joined(kBottomRow, kTopRow));
}

TEST_F(Loader, AFullLoadPaintsNoPreviewAndBuildsNoTables) {
    load(u"a");
    EXPECT_TRUE(picture.preview().empty());
    EXPECT_FALSE(picture.tablesBuilt());
    preview(u"a");
    EXPECT_TRUE(picture.tablesBuilt());
}

// File names.

TEST_F(Loader, ABlankNameDoesNothing) {
    load(u"a");
    load(u"");
    preview(u"   ");
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "finished"}));
    EXPECT_EQ(loader.fileName(), u"a");
    EXPECT_TRUE(holdsA());
}

TEST_F(Loader, TheNameErrorFailsWithFileTypeWrong) {
    load(u"a");
    EXPECT_EQ(failureOf([this] { load(u"Error"); }), kWrongFileType);
    EXPECT_EQ(failureOf([this] { preview(u"Error"); }), kWrongFileType);
    EXPECT_EQ(host.calls, (Calls{"read a", "header 4x3", "finished"}));
    EXPECT_EQ(loader.fileName(), u"a");
    EXPECT_FALSE(loader.loading());
    EXPECT_TRUE(holdsA());
}

TEST_F(Loader, OnlyTheExactNameErrorIsRefusedUnread) {
    EXPECT_EQ(errorNumberOf([this] { load(u"error"); }), 53);
    EXPECT_EQ(errorNumberOf([this] { load(u" Error"); }), 53);
    EXPECT_EQ(errorNumberOf([this] { load(u"Error.hdr"); }), 53);
}

// Failures.

TEST_F(Loader, AFileThatCannotBeReadFailsWithTheHostsErrorAndChangesNothing) {
    load(u"a");
    host.calls.clear();
    const Error notFound{53, u"", u"File not found"};
    EXPECT_EQ(failureOf([this] { load(u"missing"); }), notFound);
    EXPECT_EQ(host.calls, Calls{"read missing"});
    EXPECT_FALSE(loader.loading());
    EXPECT_EQ(loader.fileName(), u"missing");
    EXPECT_TRUE(holdsA());
}

TEST_F(Loader, AnEmptyFileFailsBeforeTheHeader) {
    load(u"a");
    EXPECT_EQ(failureOf([this] { load(u"empty"); }), kWrongFileType);
    EXPECT_EQ(host.count("finished"), 1);
    EXPECT_TRUE(holdsA());
}

TEST_F(Loader, AFileWithoutAResolutionLineKeepsTheOldPicture) {
    load(u"a");
    EXPECT_EQ(failureOf([this] { load(u"text"); }), kWrongFileType);
    EXPECT_EQ(host.events(), (Calls{"read a", "header 4x3", "finished", "read text"}));
    EXPECT_FALSE(loader.loading());
    EXPECT_TRUE(holdsA());
}

TEST_F(Loader, AFileWhoseScanlinesAreStoredFlatFailsWithFileTypeWrongAfterOnHeaderLoadedHasBeenRaised) {
    EXPECT_EQ(failureOf([this] { load(u"flat"); }), kWrongFileType);
    EXPECT_EQ(host.calls, (Calls{"read flat", "header 2x1"}));
    EXPECT_EQ(picture.dimX(), 2);
    EXPECT_EQ(picture.dimY(), 1);
    EXPECT_FALSE(loader.loading());
}

TEST_F(Loader, AFailureInARowKeepsTheRowsBeforeAndTheParsedSizes) {
    EXPECT_EQ(failureOf([this] { load(u"short"); }), kWrongFileType);
    EXPECT_EQ(picture.dimX(), 4);
    EXPECT_EQ(picture.dimY(), 3);
    EXPECT_TRUE(holdsScanline(picture.store(), 0, 0));
    EXPECT_TRUE(holdsScanline(picture.store(), 1, 1));
    EXPECT_EQ(picture.store().row(0, 2)[3], valueOf(2, 0));
    EXPECT_EQ(picture.store().row(3, 2)[0], 0);
    EXPECT_EQ(host.count("finished"), 0);
}

TEST_F(Loader, AFailedPreviewRefreshesNoLastTime) {
    EXPECT_EQ(failureOf([this] { preview(u"short"); }), kWrongFileType);
    EXPECT_EQ(host.events(), (Calls{"read short", "header 4x3", "refresh"}));
}

TEST_F(Loader, SizesThatNoMemoryHoldsFailWithOutOfMemoryAfterTheHeader) {
    host.files[u"bomb"] = headerFile(40000, 40000);  // (40001 * 40001 * 4) bytes, 6.4 thousand million
    load(u"a");
    EXPECT_EQ(errorNumberOf([this] { load(u"bomb"); }), 7);
    EXPECT_EQ(host.calls.back(), "header 40000x40000");
    EXPECT_EQ(picture.dimX(), 40000);
    EXPECT_FALSE(loader.loading());
    load(u"a");
    EXPECT_TRUE(holdsA());
}

TEST_F(Loader, AFaultOfTheTablesEndsAPreviewBeforeTheFileIsRead) {
    picture.setExposure(100.0F);
    // 255.5 * 2^119 * 2^100 is about 2^227; to the power of 100 no double holds it.
    EXPECT_EQ(errorNumberOf([this] { static_cast<void>(picture.convert(-1.0F, 0.01F)); }), 6);
    EXPECT_EQ(errorNumberOf([this] { preview(u"a"); }), 6);
    EXPECT_EQ(host.calls, Calls{});
    EXPECT_FALSE(loader.loading());
    EXPECT_EQ(loader.fileName(), u"a");
}

}  // namespace
}  // namespace vrx::test
