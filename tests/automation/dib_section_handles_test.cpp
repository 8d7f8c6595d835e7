// What the 24-bit section hands to the clipboard, and that nothing of it is left behind.

#include <gtest/gtest.h>
#include <windows.h>

#include "gdi_handles.h"
#include "message_box_watcher.h"
#include "raster/cDIBSection.h"
#include "section_rows.h"

using host::errorOf;
using host::pictureOf;
using host::rowsOf;
using host::sectionOf;
using vrx::cDIBSection;

namespace {

TEST(DibSection, CopyToClipboardAsADibShowsTheMessageAndReturnsFalseWithoutTouchingTheClipboard) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(4, 4));
    const DWORD before = GetClipboardSequenceNumber();
    host::MessageBoxWatcher watcher;
    EXPECT_FALSE(section.CopyToClipboard(true));
    const auto boxes = watcher.boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].text, L"I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!");
    EXPECT_TRUE(boxes[0].onlyOk);
    EXPECT_FALSE(boxes[0].exclamation);
    EXPECT_EQ(GetClipboardSequenceNumber(), before);
}

TEST(DibSection, CopyToClipboardPutsABitmapOfItsPixelsThere) {
    const auto section = sectionOf({{0, 0, 255, 0, 255, 0}, {255, 0, 0, 255, 255, 255}});
    ASSERT_TRUE(section->CopyToClipboard());
    ASSERT_TRUE(OpenClipboard(nullptr));
    const auto bitmap = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
    BITMAP size{};
    EXPECT_NE(GetObjectW(bitmap, sizeof size, &size), 0);
    EXPECT_EQ(size.bmWidth, 2);
    EXPECT_EQ(size.bmHeight, 2);
    cDIBSection copy;
    ASSERT_TRUE(copy.Create(2, 2));
    const vrx::MemoryDc dc(CreateCompatibleDC(nullptr));
    const HGDIOBJ previous = SelectObject(dc.get(), bitmap);
    copy.LoadPictureBlt(dc.get(), 0, 0);
    SelectObject(dc.get(), previous);
    EXPECT_EQ(rowsOf(copy), rowsOf(*section));
    EmptyClipboard();
    CloseClipboard();
}

TEST(DibSection, TenThousandOfThemLeaveTheNumberOfHandlesAsItWas) {
    const std::size_t before = host::freeGdiHandles();
    ASSERT_GT(before, 1000U);
    for (int i = 0; i < 10000; ++i) {
        cDIBSection section;
        ASSERT_TRUE(section.Create(9, 5));
    }
    EXPECT_GE(host::freeGdiHandles(), before);
}

TEST(DibSection, MadeAgainOrInVainOrFromAPictureLeavesTheNumberOfHandlesAsItWas) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(8, 8));
    const auto picture = pictureOf(section);
    section.CreateFromPicture(picture.get());
    const std::size_t before = host::freeGdiHandles();
    for (int i = 0; i < 500; ++i) {
        ASSERT_TRUE(section.Create(9, 5));
        ASSERT_TRUE(section.Create(3, 3));
        ASSERT_FALSE(section.Create(0, 3));
        ASSERT_EQ(errorOf([&] { section.Create(30000, 30000); }), 6);
        section.CreateFromPicture(picture.get());
        ASSERT_EQ(section.Width(), 8);
    }
    EXPECT_GE(host::freeGdiHandles(), before);
}

TEST(DibSection, ResampledOrCopiedToTheClipboardLeavesTheNumberOfHandlesAsItWas) {
    cDIBSection section;
    ASSERT_TRUE(section.Create(8, 8));
    ASSERT_TRUE(section.CopyToClipboard());
    const std::size_t before = host::freeGdiHandles();
    for (int i = 0; i < 200; ++i) {
        (void)section.Resample(4, 4);
        EXPECT_EQ(errorOf([&] { (void)section.Resample(1, 4); }), 11);
        // What was on the clipboard before goes when the new bitmap comes.
        EXPECT_TRUE(section.CopyToClipboard());
    }
    EXPECT_GE(host::freeGdiHandles(), before);
}

}  // namespace
