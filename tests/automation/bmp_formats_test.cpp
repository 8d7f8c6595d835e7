// CVrxImage.Load_BMP with every kind of BMP file, and with GIF and JPEG files; hand-made, byte by byte.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "VrxCommon.h"
#include "failure.h"
#include "host.h"
#include "picture_bytes.h"
#include "throwaway_folder.h"

using host::FileBytes;
using vrx::Bstr;

namespace {

constexpr std::uint32_t kRgb = 0;
constexpr std::uint32_t kRle8 = 1;
constexpr std::uint32_t kRle4 = 2;
constexpr std::uint32_t kBitFields = 3;

// Entries as files hold them: blue, green, red, 0.
const FileBytes kBlackRed = {0, 0, 0, 0, 0, 0, 255, 0};
const FileBytes kBlackRedGreenBlue = {0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};

// Three by two pixels: red, green, blue above black, red, black; bottom-up with padding.
const FileBytes kPixels = {0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 255, 0, 255, 0, 0, 0, 0, 0};
// In two colours: red, black, red above black, red, black.
const FileBytes kTwoColourPixels = {0, 0, 0,   0, 0, 255, 0, 0, 0,   0, 0, 0,
                                    0, 0, 255, 0, 0, 0,   0, 0, 255, 0, 0, 0};

void put(FileBytes& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void append(FileBytes& bytes, const FileBytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

struct Bmp {
    int bitCount;
    FileBytes colours;  ///< palette or masks
    FileBytes bits;
    std::uint32_t compression = kRgb;
    int height = 2;
    int width = 3;

    [[nodiscard]] FileBytes file() const {
        const auto offset = static_cast<std::uint32_t>(54 + colours.size());
        FileBytes bytes = {'B', 'M'};
        put(bytes, offset + static_cast<std::uint32_t>(bits.size()), 4);
        put(bytes, 0, 4);
        put(bytes, offset, 4);
        put(bytes, 40, 4);
        put(bytes, static_cast<std::uint32_t>(width), 4);
        put(bytes, static_cast<std::uint32_t>(height), 4);
        put(bytes, 1, 2);
        put(bytes, static_cast<std::uint32_t>(bitCount), 2);
        put(bytes, compression, 4);
        put(bytes, static_cast<std::uint32_t>(bits.size()), 4);
        put(bytes, 2835, 4);
        put(bytes, 2835, 4);
        put(bytes, compression == kBitFields ? 0 : static_cast<std::uint32_t>(colours.size() / 4), 4);
        put(bytes, 0, 4);
        append(bytes, colours);
        append(bytes, bits);
        return bytes;
    }
    /// The same picture with its rows from the top.
    [[nodiscard]] Bmp topDown() const {
        Bmp turned = *this;
        const auto half = static_cast<std::ptrdiff_t>(bits.size() / 2);
        turned.bits.assign(bits.begin() + half, bits.end());
        turned.bits.insert(turned.bits.end(), bits.begin(), bits.begin() + half);
        turned.height = -height;
        return turned;
    }
};

class BmpFormats : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const vrx::ComPtr<_CVrxImage> image_ = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();

    HRESULT load(const FileBytes& file) const {
        const std::wstring path = folder_.write(L"picture.bmp", file);
        return image_->Load_BMP(Bstr(SysAllocString(path.c_str())).get());
    }
    /// The pixels that are held, without the byte behind them.
    [[nodiscard]] FileBytes pixels() const {
        BmpInfo info{};
        SAFEARRAY* typed = nullptr;
        EXPECT_EQ(image_->Get_BMP(&typed, &info), S_OK);
        const vrx::SafeArray owned(typed);
        const auto bytes = vrx::ByteArrayView(typed).bytes();
        EXPECT_EQ(info.biBitCount, 24);
        EXPECT_FALSE(bytes.empty());
        return bytes.empty() ? FileBytes{} : FileBytes(bytes.begin(), bytes.end() - 1);
    }
    void expectPixels(const Bmp& bmp, const FileBytes& expected) const {
        ASSERT_EQ(load(bmp.file()), S_OK);
        EXPECT_EQ(pixels(), expected);
    }
    void expectPixelsEitherWayUp(const Bmp& bmp, const FileBytes& expected) const {
        expectPixels(bmp, expected);
        expectPixels(bmp.topDown(), expected);
    }
    /// A system may read a file that breaks the rules, but nothing else than 481 may come of it.
    void expectRefusedIfAtAll(const Bmp& bmp) const {
        const HRESULT result = load(bmp.file());
        if (FAILED(result)) {
            EXPECT_EQ(host::failureOf(result).number, 481);
        }
    }
};

TEST_F(BmpFormats, Of1BitAreRead) {
    expectPixelsEitherWayUp({1, kBlackRed, {0x40, 0, 0, 0, 0xA0, 0, 0, 0}}, kTwoColourPixels);
}

TEST_F(BmpFormats, Of4BitsAreRead) {
    expectPixelsEitherWayUp({4, kBlackRedGreenBlue, {0x01, 0x00, 0, 0, 0x12, 0x30, 0, 0}}, kPixels);
}

TEST_F(BmpFormats, Of8BitsAreRead) {
    expectPixelsEitherWayUp({8, kBlackRedGreenBlue, {0, 1, 0, 0, 1, 2, 3, 0}}, kPixels);
}

TEST_F(BmpFormats, Of16BitsAreRead) {
    const FileBytes bits = {0, 0, 0, 0x7C, 0, 0, 0, 0, 0, 0x7C, 0xE0, 0x03, 0x1F, 0, 0, 0};
    expectPixelsEitherWayUp({16, {}, bits}, kPixels);
}

TEST_F(BmpFormats, Of16BitsWithMasksAreRead) {
    const FileBytes masks = {0, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0, 0, 0};
    const FileBytes bits = {0, 0, 0, 0xF8, 0, 0, 0, 0, 0, 0xF8, 0xE0, 0x07, 0x1F, 0, 0, 0};
    expectPixelsEitherWayUp({16, masks, bits, kBitFields}, kPixels);
}

TEST_F(BmpFormats, Of24BitsAreRead) { expectPixelsEitherWayUp({24, {}, kPixels}, kPixels); }

TEST_F(BmpFormats, Of32BitsAreRead) {
    const FileBytes bits = {0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};
    expectPixelsEitherWayUp({32, {}, bits}, kPixels);
}

TEST_F(BmpFormats, Of24And32BitsWithBiClrUsedOtherThan0AreLoaded) {
    const FileBytes bits32 = {0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};
    for (const std::uint32_t used : {1U, 2U, 256U, 16777216U, 0xFFFFFFFFU}) {
        for (const Bmp& bmp : {Bmp{24, {}, kPixels}, Bmp{32, {}, bits32}}) {
            FileBytes file = bmp.file();
            for (int i = 0; i < 4; ++i) file[46U + i] = static_cast<std::uint8_t>(used >> (8 * i));
            ASSERT_EQ(load(file), S_OK) << used;
            EXPECT_EQ(pixels(), kPixels);
        }
    }
    expectPixels({24, kBlackRedGreenBlue, kPixels}, kPixels);  // the palette is there
}

TEST_F(BmpFormats, ThatEndAFewBytesShortAreLoadedWithMissingPixelsBlack) {
    for (Bmp bmp : {Bmp{24, {}, kPixels}, Bmp{24, {}, kPixels}.topDown()}) {
        bmp.bits.resize(bmp.bits.size() - 4);  // padding and the last pixel
        FileBytes expected = kPixels;
        const std::size_t last = bmp.height < 0 ? 6 : 18;
        std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(last), 3, std::uint8_t{0});
        expectPixels(bmp, expected);
    }
    expectPixels({8, kBlackRedGreenBlue, {0, 1, 0, 0, 1, 2}},
                 {0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0, 0, 0, 0, 0});
}

TEST_F(BmpFormats, OfRunsOf8BitsAreRead) {
    // Three runs of one pixel and the end of the row; three pixels as they are, and the end of the picture.
    const FileBytes bits = {1, 0, 1, 1, 1, 0, 0, 0, 0, 3, 1, 2, 3, 0, 0, 1};
    expectPixels({8, kBlackRedGreenBlue, bits, kRle8}, kPixels);
}

TEST_F(BmpFormats, OfRunsOf4BitsAreRead) {
    // A run of two colours in turn; three pixels as they are.
    const FileBytes bits = {3, 0x01, 0, 0, 0, 3, 0x12, 0x30, 0, 1};
    expectPixels({4, kBlackRedGreenBlue, bits, kRle4}, kPixels);
}

TEST_F(BmpFormats, ThatAreGifOrJpegFilesAreRead) {
    ASSERT_EQ(load(host::gifFile()), S_OK);
    EXPECT_EQ(pixels(), (FileBytes{0, 0, 255, 255, 0, 0, 0, 0}));
    ASSERT_EQ(load(host::jpegFile()), S_OK);
    EXPECT_EQ(pixels(), FileBytes(8 * 24, 128));
}

TEST_F(BmpFormats, WithRunsThatLeaveTheirPictureDoNoHarm) {
    const std::vector<FileBytes> runs = {
        {255, 1, 255, 1, 0, 1},               // beyond the row
        {0, 0, 0, 0, 0, 0, 0, 0, 9, 9},       // more rows than there are
        {0, 2, 255, 255, 9, 9, 0, 1},         // a jump out of the picture
        {0, 255, 1, 2, 3, 0, 0, 1},           // more pixels than the file has
        {1, 200, 1, 255, 0, 0, 3, 77, 0, 1},  // colours that the palette has not
        {0},                                  // half a code
    };
    for (const FileBytes& bits : runs) {
        expectRefusedIfAtAll({8, kBlackRedGreenBlue, bits, kRle8});
        expectRefusedIfAtAll({4, kBlackRedGreenBlue, bits, kRle4});
        expectRefusedIfAtAll({8, kBlackRedGreenBlue, bits, kRle8, -2});
    }
}

TEST_F(BmpFormats, ThatNoSystemKnowsDoNoHarm) {
    for (const int bitCount : {0, 2, 3, 5, 31, 48, 64, 255, 65535})
        expectRefusedIfAtAll({bitCount, kBlackRedGreenBlue, FileBytes(64, 1)});
    for (const std::uint32_t compression : {4U, 5U, 6U, 11U, 0xFFFFFFFFU})
        expectRefusedIfAtAll({24, {}, kPixels, compression});
    expectRefusedIfAtAll({24, {}, kPixels, kRgb, 0});
    expectRefusedIfAtAll({24, {}, kPixels, kRgb, 2, 0});
    expectRefusedIfAtAll({24, {}, kPixels, kRgb, 2, -3});
    expectRefusedIfAtAll({24, {}, kPixels, kRgb, static_cast<int>(0x80000000)});
}

TEST_F(BmpFormats, ThatAreRefusedLeaveWhatWasHeld) {
    ASSERT_EQ(load(Bmp{24, {}, kPixels}.file()), S_OK);
    EXPECT_EQ(host::failureOf(load({'B', 'M', 0, 0})),
              (host::Failure{481, L"CVrxImage", L"Invalid picture"}));
    EXPECT_EQ(pixels(), kPixels);
}

}  // namespace
