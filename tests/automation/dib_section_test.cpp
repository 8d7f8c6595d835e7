// The 24-bit section: its bytes, and what is drawn into and out of it.

#include "raster/cDIBSection.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <olectl.h>

#include <cstring>

#include "section_rows.h"

using host::errorOf;
using host::pictureOf;
using host::Row;
using host::rowOf;
using host::rowsOf;
using host::sectionOf;
using vrx::cDIBSection;

namespace {

/// Fills a section, padding included, with bytes that differ from place to place.
void fillWithPattern(cDIBSection& section) {
    const int size = section.BytesPerScanLine() * section.Height();
    for (int i = 0; i < size; ++i) section.DIBSectionBitsPtr()[i] = static_cast<std::uint8_t>(i * 7 + 1);
}

TEST(DibSection, Width1HasBytesPerScanLine4AndWidth2Has8AndWidth4Has12) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(1, 1));
    EXPECT_EQ(section.BytesPerScanLine(), 4);
    ASSERT_TRUE(section.Create(2, 1));
    EXPECT_EQ(section.BytesPerScanLine(), 8);
    ASSERT_TRUE(section.Create(4, 1));
    EXPECT_EQ(section.BytesPerScanLine(), 12);
}

TEST(DibSection, IsEmptyWhenItIsMade) {
    const cDIBSection section;
    EXPECT_EQ(section.hDC(), nullptr);
    EXPECT_EQ(section.hDib(), nullptr);
    EXPECT_EQ(section.DIBSectionBitsPtr(), nullptr);
    EXPECT_EQ(section.Width(), 0);
    EXPECT_EQ(section.Height(), 0);
}

TEST(DibSection, IsABlack24BitBottomUpBitmapSelectedIntoItsContext) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(5, 3));
    EXPECT_EQ(section.Width(), 5);
    EXPECT_EQ(section.Height(), 3);
    DIBSECTION made{};
    ASSERT_EQ(GetObjectW(section.hDib(), sizeof made, &made), static_cast<int>(sizeof made));
    EXPECT_EQ(made.dsBm.bmBits, section.DIBSectionBitsPtr());
    EXPECT_EQ(made.dsBmih.biWidth, 5);
    EXPECT_EQ(made.dsBmih.biHeight, 3);
    EXPECT_EQ(made.dsBmih.biBitCount, 24);
    EXPECT_EQ(made.dsBmih.biCompression, static_cast<DWORD>(BI_RGB));
    EXPECT_EQ(GetCurrentObject(section.hDC(), OBJ_BITMAP), section.hDib());
    EXPECT_EQ(rowsOf(section), std::vector<Row>(3, Row(15, 0)));
}

TEST(DibSection, HoldsBlueGreenRedWithTheBottomRowFirst) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(2, 2));
    SetPixel(section.hDC(), 0, 1, RGB(10, 20, 30));
    GdiFlush();
    EXPECT_EQ(rowOf(section, 0), (Row{30, 20, 10, 0, 0, 0}));
}

TEST(DibSection, RefusesSizesWithoutPixelsAndKeepsThemAsTheLastAttempted) {
    cDIBSection section;
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-5, 5}, {5, -5}, {0, 0}}) {
        ASSERT_TRUE(section.Create(4, 4));
        EXPECT_FALSE(section.Create(width, height)) << width << " x " << height;
        EXPECT_EQ(section.Width(), width);
        EXPECT_EQ(section.Height(), height);
        EXPECT_EQ(section.hDC(), nullptr);
        EXPECT_EQ(section.hDib(), nullptr);
        EXPECT_EQ(section.DIBSectionBitsPtr(), nullptr);
    }
}

TEST(DibSection, WhoseBytesCannotBeCountedIsAnOverflow) {
    cDIBSection section;
    EXPECT_EQ(errorOf([&] { section.Create(INT32_MAX, 1); }), 6);
    EXPECT_EQ(errorOf([&] { section.Create(715827882, 1); }), 6);
    EXPECT_EQ(errorOf([&] { section.Create(30000, 30000); }), 6);
    EXPECT_EQ(section.hDC(), nullptr);
    EXPECT_TRUE(section.Create(3, 3));
}

TEST(DibSection, KeepsItsSizesWhenItIsCleared) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(7, 5));
    section.ClearUp();
    EXPECT_EQ(section.hDC(), nullptr);
    EXPECT_EQ(section.hDib(), nullptr);
    EXPECT_EQ(section.DIBSectionBitsPtr(), nullptr);
    EXPECT_EQ(section.Width(), 7);
    EXPECT_EQ(section.Height(), 5);
}

TEST(DibSection, ClearUpOnAnEmptyObjectDoesNothingAndMayBeCalledAnyNumberOfTimes) {
    cDIBSection section;
    for (int i = 0; i < 3; ++i) section.ClearUp();
    EXPECT_EQ(section.hDC(), nullptr);
    ASSERT_TRUE(section.Create(2, 2));
    for (int i = 0; i < 3; ++i) section.ClearUp();
    EXPECT_EQ(section.hDib(), nullptr);
}

TEST(DibSection, IsCopiedWholeByDefault) {
    cDIBSection source;
    cDIBSection target;
    ASSERT_TRUE(source.Create(6, 4));
    ASSERT_TRUE(target.Create(6, 4));
    fillWithPattern(source);
    target.LoadPictureBlt(source.hDC(), 0, 0);
    EXPECT_EQ(rowsOf(target), rowsOf(source));
    cDIBSection painted;
    ASSERT_TRUE(painted.Create(6, 4));
    source.PaintPicture(painted.hDC(), 0, 0);
    GdiFlush();
    EXPECT_EQ(rowsOf(painted), rowsOf(source));
}

TEST(DibSection, IsCopiedInPartWhereSizesAreGiven) {
    const auto source = sectionOf({{1, 1, 1, 2, 2, 2}, {3, 3, 3, 4, 4, 4}});
    cDIBSection target;
    ASSERT_TRUE(target.Create(2, 2));
    target.LoadPictureBlt(source->hDC(), 1, 1, 1, 1);  // the lower right pixel, to the upper left
    EXPECT_EQ(rowsOf(target), (std::vector<Row>{{0, 0, 0, 0, 0, 0}, {2, 2, 2, 0, 0, 0}}));
    source->PaintPicture(target.hDC(), 1, 1, 1, 1, 0, 0);  // the upper left pixel, to the lower right
    EXPECT_EQ(rowsOf(target), (std::vector<Row>{{0, 0, 0, 3, 3, 3}, {2, 2, 2, 0, 0, 0}}));
    source->PaintPicture(target.hDC(), 0, 0, -1, -1, 0, 0, SRCINVERT);
    EXPECT_EQ(rowsOf(target), (std::vector<Row>{{1, 1, 1, 1, 1, 1}, {1, 1, 1, 4, 4, 4}}));
}

TEST(DibSection, WithoutASectionIsDrawnToNobodysHarm) {
    cDIBSection empty;
    cDIBSection target;
    ASSERT_TRUE(target.Create(2, 2));
    empty.LoadPictureBlt(target.hDC(), 0, 0);
    empty.PaintPicture(target.hDC(), 0, 0);
    empty.RandomiseBits();
    EXPECT_EQ(rowsOf(target), std::vector<Row>(2, Row(6, 0)));
    EXPECT_EQ(errorOf([&] { (void)empty.Resample(3, 3); }), 9);
    ASSERT_TRUE(empty.Create(4, 4));
    empty.ClearUp();
    EXPECT_EQ(errorOf([&] { (void)empty.Resample(3, 3); }), 9);
}

TEST(DibSection, BecomesACopyOfAPicture) {
    cDIBSection source;
    ASSERT_TRUE(source.Create(7, 5));
    fillWithPattern(source);
    cDIBSection copy;
    copy.CreateFromPicture(pictureOf(source).get());
    EXPECT_EQ(copy.Width(), 7);
    EXPECT_EQ(copy.Height(), 5);
    EXPECT_EQ(rowsOf(copy), rowsOf(source));
}

TEST(DibSection, IsEmptyForAPictureWithoutABitmap) {
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_NONE;
    vrx::ComPtr<IPictureDisp> none;
    OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(none.put()));
    ASSERT_TRUE(none);
    cDIBSection section;
    ASSERT_TRUE(section.Create(2, 2));
    section.CreateFromPicture(none.get());
    EXPECT_EQ(section.hDib(), nullptr);
    EXPECT_EQ(errorOf([&] { section.CreateFromPicture(nullptr); }), 91);
}

TEST(DibSection, RandomiseBitsWithoutGrayLeavesEveryBlueByteAt0) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(101, 50));
    fillWithPattern(section);
    section.RandomiseBits(false);
    int differing = 0;
    for (const Row& row : rowsOf(section)) {
        for (std::size_t x = 0; x < row.size(); x += 3) {
            ASSERT_EQ(row[x], 0);
            if (row[x + 1] != row[x + 2]) ++differing;
        }
    }
    EXPECT_GT(differing, 4000);
}

TEST(DibSection, RandomiseBitsWithGraySetsAllThreeBytesAlike) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(101, 50));
    section.RandomiseBits(true);
    double sum = 0.0;
    for (const Row& row : rowsOf(section)) {
        for (std::size_t x = 0; x < row.size(); x += 3) {
            ASSERT_EQ(row[x], row[x + 1]);
            ASSERT_EQ(row[x], row[x + 2]);
            sum += row[x];
        }
    }
    // 5050 numbers between 0 and 255, whose mean is 127.5 with a deviation of about 1.
    EXPECT_NEAR(sum / (101 * 50), 127.5, 8.0);
}

TEST(DibSection, RandomiseBitsLeavesThePaddingAsItIs) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(2, 3));
    std::memset(section.DIBSectionBitsPtr(), 0xEE, 24);
    section.RandomiseBits();
    for (const int offset : {6, 7, 14, 15, 22, 23}) EXPECT_EQ(section.DIBSectionBitsPtr()[offset], 0xEE);
}

TEST(DibSection, ResampleToAWidthOrHeightOf1FailsWithTheDivisionError) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(4, 4));
    EXPECT_EQ(errorOf([&] { (void)section.Resample(1, 4); }), 11);
    EXPECT_EQ(errorOf([&] { (void)section.Resample(4, 1); }), 11);
    EXPECT_EQ(errorOf([&] { (void)section.Resample(1, 1); }), 11);
}

TEST(DibSection, ResampleToTheSameSizeIsAPlainCopy) {
    const auto pixel = sectionOf({{9, 8, 7}});
    const auto copy = pixel->Resample(1, 1);
    ASSERT_TRUE(copy);
    EXPECT_EQ(rowOf(*copy, 0), (Row{9, 8, 7}));
}

TEST(DibSection, ResampleOfAPictureWhoseDestinationEqualsItsSizeLeavesThePixelsByteIdentical) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(37, 23));
    fillWithPattern(section);
    const auto copy = section.Resample(23, 37);
    ASSERT_TRUE(copy);
    EXPECT_EQ(rowsOf(*copy), rowsOf(section));
    EXPECT_NE(copy->hDib(), section.hDib());
}

TEST(DibSection, ResampleTakesTheHeightFirst) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(4, 4));
    const auto resampled = section.Resample(3, 9);
    ASSERT_TRUE(resampled);
    EXPECT_EQ(resampled->Height(), 3);
    EXPECT_EQ(resampled->Width(), 9);
}

TEST(DibSection, ResampleBlendsBetweenPixels) {
    const auto section = sectionOf({{0, 10, 1, 100, 20, 2}, {200, 30, 3, 100, 40, 4}});
    const auto resampled = section->Resample(3, 3);
    ASSERT_TRUE(resampled);
    // Halves go to the even number: 1.5, 2.5 and 3.5 become 2, 2 and 4.
    EXPECT_EQ(rowsOf(*resampled), (std::vector<Row>{{0, 10, 1, 50, 15, 2, 100, 20, 2},
                                                    {100, 20, 2, 100, 25, 2, 100, 30, 3},
                                                    {200, 30, 3, 150, 35, 4, 100, 40, 4}}));
}

TEST(DibSection, ResampleToASizeThatCannotBeGivesNoObject) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(4, 4));
    EXPECT_EQ(section.Resample(0, 4), nullptr);
    EXPECT_EQ(section.Resample(4, -1), nullptr);
}

}  // namespace
