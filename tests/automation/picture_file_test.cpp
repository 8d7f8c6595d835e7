// Picture files as picture objects.
#include "raster/picture_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "com/win_resource.h"
#include "ground/error.h"
#include "picture_bytes.h"

using host::FileBytes;
using vrx::ComPtr;

namespace {

std::u16string nameOf(const std::wstring& path) { return {path.begin(), path.end()}; }

int errorOfLoading(const std::wstring& path) {
    try {
        (void)vrx::loadPicture(nameOf(path));
    } catch (const vrx::Error& error) {
        return error.number;
    }
    return 0;
}

FileBytes pixelsIn(const std::wstring& path) {
    vrx::PicturePixels pixels = vrx::loadPixels(nameOf(path));
    EXPECT_EQ(pixels.bits.data()[pixels.rows().size()], 0);
    vrx::PicturePixels drawn = vrx::readPixels(*vrx::loadPicture(nameOf(path)));
    EXPECT_TRUE(std::ranges::equal(drawn.bits.span(), pixels.bits.span())) << "by way of a picture object";
    return {pixels.rows().begin(), pixels.rows().end()};
}

class PictureFile : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
};

TEST_F(PictureFile, GivesItsPixelsBottomUpWithPaddedRows) {
    const std::wstring path =
        folder_.write(L"a.bmp", host::bmpFile({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}, {10, 11, 12}}}));
    EXPECT_EQ(pixelsIn(path), (FileBytes{7, 8, 9, 10, 11, 12, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0}));
    EXPECT_EQ(pixelsIn(folder_.write(L"a.gif", host::gifFile())), (FileBytes{0, 0, 255, 255, 0, 0, 0, 0}));
    EXPECT_EQ(pixelsIn(folder_.write(L"a.jpg", host::jpegFile())), FileBytes(8 * 24, 128));
}

TEST_F(PictureFile, TellsItsSizeInPixels) {
    const auto picture = vrx::loadPicture(nameOf(folder_.write(L"a.bmp", host::bmpFile(257, 3, {1, 2, 3}))));
    const vrx::PictureSize size = vrx::pixelSizeOf(*picture);
    EXPECT_EQ(size.width, 257);
    EXPECT_EQ(size.height, 3);
    EXPECT_TRUE(picture.as<IPictureDisp>());
}

TEST_F(PictureFile, OfEveryWidthKeepsItsSize) {
    for (int width = 1; width < 130; ++width) {
        const std::wstring path = folder_.write(L"a.bmp", host::bmpFile(width, 1, {9, 9, 9}));
        EXPECT_EQ(pixelsIn(path).size(), static_cast<std::size_t>((width * 3 + 3) / 4 * 4)) << width;
    }
}

TEST_F(PictureFile, ThatIsNotThereHasThePlatformsErrors) {
    EXPECT_EQ(errorOfLoading(folder_ / L"missing.bmp"), 53);
    EXPECT_EQ(errorOfLoading(folder_ / L"no folder\\a.bmp"), 76);
    EXPECT_EQ(errorOfLoading(folder_.path()), 75);
    EXPECT_EQ(errorOfLoading(folder_ / std::wstring(L"a\0b", 3)), 52);
}

TEST_F(PictureFile, ThatIsLockedIsDenied) {
    const std::wstring path = folder_.write(L"a.bmp", host::bmpFile(1, 1, {1, 2, 3}));
    const auto lock =
        vrx::validHandle(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_EQ(errorOfLoading(path), 70);
}

TEST_F(PictureFile, ThatIsNoPictureIsInvalid) {
    EXPECT_EQ(errorOfLoading(folder_.write(L"empty.bmp", {})), 481);
    EXPECT_EQ(errorOfLoading(folder_.write(L"text.bmp", FileBytes(300, 'x'))), 481);
}

TEST_F(PictureFile, ThatIsCutIsInvalidAtEveryLengthBeforeItsLastRow) {
    const FileBytes whole = host::bmpFile(30, 2, {1, 2, 3});  // rows of 90 bytes and 2 of padding
    for (std::size_t size = 0; size < 54 + 90; ++size) {
        const FileBytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(errorOfLoading(folder_.write(L"cut.bmp", cut)), 481) << size;
    }
}

TEST_F(PictureFile, ThatEndsAFewBytesShortIsLoadedWithItsMissingPixelsBlack) {
    const FileBytes whole = host::bmpFile({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}, {10, 11, 12}}});
    const FileBytes pixels = {7, 8, 9, 10, 11, 12, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0};
    for (std::size_t lacking = 1; lacking <= 8; ++lacking) {
        FileBytes expected = pixels;
        if (lacking > 2) std::fill(expected.begin() + 11, expected.end(), std::uint8_t{0});
        if (lacking > 5) std::fill(expected.begin() + 8, expected.end(), std::uint8_t{0});
        const FileBytes cut(whole.begin(), whole.end() - static_cast<std::ptrdiff_t>(lacking));
        EXPECT_EQ(pixelsIn(folder_.write(L"short.bmp", cut)), expected) << lacking;
    }
}

TEST_F(PictureFile, ThatClaimsManyPixelsIsInvalid) {
    FileBytes bomb = host::bmpFile(3, 2, {1, 2, 3});
    bomb[20] = 1;  // 65539 columns
    EXPECT_EQ(errorOfLoading(folder_.write(L"wide.bmp", bomb)), 481);
    bomb[25] = 0x7F;  // 2130706434 rows
    EXPECT_EQ(errorOfLoading(folder_.write(L"high.bmp", bomb)), 481);
}

TEST_F(PictureFile, ThatIsTooWideForItsSizeInPixelsOverflows) {
    const auto picture =
        vrx::loadPicture(nameOf(folder_.write(L"a.bmp", host::bmpFile(33000, 1, {1, 2, 3}))));
    try {
        (void)vrx::readPixels(*picture);
        FAIL();
    } catch (const vrx::Error& error) {
        EXPECT_EQ(error.number, 6);
    }
}

}  // namespace
