// ImageFX.ColorToBN: a picture file on a device context, in grey or in black and white.

#include <gtest/gtest.h>

#include <cstring>

#include "VrxCommon.h"
#include "com/win_resource.h"
#include "failure.h"
#include "gdi_handles.h"
#include "host.h"
#include "picture_bytes.h"

using host::call;
using host::FileBytes;
using host::integer;
using host::omitted;
using host::Text;
using host::truth;
using host::typedReference;
using vrx::ComPtr;

namespace {

constexpr std::uint8_t kBlank = 0x33;

/// A 24-bit surface to draw on, filled with kBlank.
class Canvas {
  public:
    Canvas(int width, int height) : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        bitmap_.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        bits_ = static_cast<std::uint8_t*>(bits);
        std::memset(bits_, kBlank, stride() * static_cast<std::size_t>(height));
        previous_ = SelectObject(dc_.get(), bitmap_.get());
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() { SelectObject(dc_.get(), previous_); }

    [[nodiscard]] HDC dc() const { return dc_.get(); }
    [[nodiscard]] long handle() const { return static_cast<long>(reinterpret_cast<LONG_PTR>(dc_.get())); }
    /// A pixel's grey; -1 for one whose bytes differ.
    [[nodiscard]] int at(int x, int y) const {
        GdiFlush();
        const std::uint8_t* pixel =
            bits_ + static_cast<std::size_t>(height_ - 1 - y) * stride() + static_cast<std::size_t>(x) * 3;
        return pixel[0] == pixel[1] && pixel[1] == pixel[2] ? pixel[0] : -1;
    }
    /// Whether the pixels of a rectangle, and only these, have this grey.
    [[nodiscard]] bool shows(int grey, int left, int top, int width, int height) const {
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                const bool inside = x >= left && x < left + width && y >= top && y < top + height;
                if (at(x, y) != (inside ? grey : kBlank)) return false;
            }
        }
        return true;
    }
    [[nodiscard]] bool isBlank() const { return shows(kBlank, 0, 0, width_, height_); }

  private:
    [[nodiscard]] std::size_t stride() const { return static_cast<std::size_t>((width_ * 3 + 3) / 4 * 4); }

    int width_;
    int height_;
    vrx::MemoryDc dc_;
    vrx::Bitmap bitmap_;
    std::uint8_t* bits_ = nullptr;
    HGDIOBJ previous_ = nullptr;
};

class ColorToBn : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const ComPtr<IDispatch> fx_ = host::create(L"VrxCommon.ImageFX");
    const std::wstring white_ = folder_.write(L"white.bmp", host::bmpFile(5, 3, host::Colour{255, 255, 255}));
    /// One row: black, nearly black, middle, white.
    const std::wstring mixed_ = folder_.write(
        L"mixed.bmp", host::bmpFile({{{0, 0, 0}, {2, 0, 0}, {128, 128, 129}, {255, 255, 255}}}));

    void SetUp() override { ASSERT_TRUE(fx_); }

    /// The call with its further arguments; it must succeed and return False.
    void draw(const Canvas& canvas, const std::wstring& path, VARIANT twoColor = omitted(),
              VARIANT threshold = omitted(), VARIANT hold = omitted(), VARIANT width = omitted(),
              VARIANT height = omitted()) const {
        const host::Outcome outcome = call(*fx_, L"ColorToBN",
                                           {Text(path.c_str()), integer(canvas.handle()), integer(0),
                                            twoColor, threshold, hold, width, height});
        EXPECT_EQ(failureOf(outcome), host::kNone);
        EXPECT_EQ(V_VT(&outcome.result.get()), VT_BOOL);
        EXPECT_EQ(V_BOOL(&outcome.result.get()), VARIANT_FALSE);
    }
};

TEST_F(ColorToBn, WithTwoColorAndThreshold255PaintsTheWholePictureBlack) {
    const Canvas canvas(8, 6);
    draw(canvas, white_, truth(true), integer(255));
    EXPECT_TRUE(canvas.shows(0, 0, 0, 5, 3));
}

TEST_F(ColorToBn, WithTwoColorAndThreshold0LeavesOnlyPureBlackPixelsBlack) {
    const Canvas canvas(4, 1);
    draw(canvas, mixed_, truth(true), integer(0));
    EXPECT_EQ(canvas.at(0, 0), 0);
    EXPECT_EQ(canvas.at(1, 0), 255);  // a mean of two thirds is 1
    EXPECT_EQ(canvas.at(2, 0), 255);
    EXPECT_EQ(canvas.at(3, 0), 255);
}

TEST_F(ColorToBn, WithoutTwoColorMapsBlackTo128AndWhiteTo255) {
    const Canvas canvas(4, 1);
    draw(canvas, mixed_, truth(false));
    EXPECT_EQ(canvas.at(0, 0), 128);
    EXPECT_EQ(canvas.at(1, 0), 128);
    EXPECT_EQ(canvas.at(2, 0), 192);
    EXPECT_EQ(canvas.at(3, 0), 255);
}

TEST_F(ColorToBn, TakesOmittedArgumentsForGreyInFullSize) {
    const Canvas canvas(8, 6);
    draw(canvas, white_);
    EXPECT_TRUE(canvas.shows(255, 0, 0, 5, 3));
}

TEST_F(ColorToBn, TakesAnOmittedThresholdFor128) {
    const Canvas canvas(4, 1);
    draw(canvas, mixed_, truth(true));
    EXPECT_EQ(canvas.at(2, 0), 0);
    EXPECT_EQ(canvas.at(3, 0), 255);
}

TEST_F(ColorToBn, KeepsRowsAndColumnsInPlace) {
    const std::wstring path = folder_.write(
        L"corners.bmp", host::bmpFile({{{0, 0, 0}, {255, 255, 255}}, {{255, 255, 255}, {255, 255, 255}}}));
    const Canvas canvas(2, 2);
    draw(canvas, path);
    EXPECT_EQ(canvas.at(0, 0), 128);
    EXPECT_EQ(canvas.at(1, 0), 255);
    EXPECT_EQ(canvas.at(0, 1), 255);
    EXPECT_EQ(canvas.at(1, 1), 255);
}

TEST_F(ColorToBn, FitsASquareInto200x100As100x100AtLeft50) {
    const std::wstring square =
        folder_.write(L"square.bmp", host::bmpFile(4, 4, host::Colour{255, 255, 255}));
    const Canvas canvas(210, 110);
    draw(canvas, square, truth(false), omitted(), truth(true), integer(200), integer(100));
    EXPECT_TRUE(canvas.shows(255, 50, 0, 100, 100));
}

TEST_F(ColorToBn, IgnoresTheBoxUnlessProportionsAreToBeHeld) {
    const Canvas canvas(30, 30);
    draw(canvas, white_, truth(false), omitted(), truth(false), integer(30), integer(30));
    EXPECT_TRUE(canvas.shows(255, 0, 0, 5, 3));
}

TEST_F(ColorToBn, DrawsNothingIntoAnEmptyBox) {
    const Canvas canvas(10, 10);
    draw(canvas, white_, truth(false), omitted(), truth(true));
    EXPECT_TRUE(canvas.isBlank());
}

TEST_F(ColorToBn, RendersAnIconOnWhite) {
    const Canvas canvas(32, 32);
    draw(canvas, folder_.write(L"a.ico", host::iconFile()));
    EXPECT_EQ(canvas.at(0, 0), 170);  // red: a third of 255, halved, and 128
    EXPECT_EQ(canvas.at(15, 31), 170);
    EXPECT_EQ(canvas.at(16, 0), 255);
    EXPECT_EQ(canvas.at(31, 31), 255);
}

TEST_F(ColorToBn, RendersAMetafileOnWhite) {
    const Canvas canvas(40, 40);
    draw(canvas, folder_.write(L"a.wmf", host::metafile()));
    EXPECT_EQ(canvas.at(10, 10), 170);  // blue
    const Canvas large(200, 200);
    draw(large, folder_.write(L"a.wmf", host::metafile()), truth(true));
    EXPECT_EQ(large.at(10, 10), 0);
    EXPECT_EQ(large.at(80, 80), 255);
}

TEST_F(ColorToBn, LeavesTheStretchModeAtColorOnColor) {
    const Canvas canvas(8, 6);
    SetStretchBltMode(canvas.dc(), HALFTONE);
    draw(canvas, white_);
    EXPECT_EQ(GetStretchBltMode(canvas.dc()), COLORONCOLOR);
}

TEST_F(ColorToBn, ReadsGifAndJpegFiles) {
    const Canvas gif(4, 4);
    draw(gif, folder_.write(L"red_blue.gif", host::gifFile()), truth(true), integer(84));
    EXPECT_TRUE(gif.shows(255, 0, 0, 2, 1));  // a third of 255 is 85
    const Canvas jpeg(10, 9);
    draw(jpeg, folder_.write(L"grey.jpg", host::jpegFile()));
    EXPECT_TRUE(jpeg.shows(192, 0, 0, 8, 8));  // half of 128, plus 128
}

TEST_F(ColorToBn, ReadsFilesWithNamesInAnyScript) {
    const Canvas canvas(8, 6);
    draw(canvas, folder_.write(L"grün \x65E5\x672C #%20.bmp", host::bmpFile(5, 3, host::Colour{0, 0, 0})));
    EXPECT_TRUE(canvas.shows(128, 0, 0, 5, 3));
}

TEST_F(ColorToBn, EndsQuietlyAtAnyError) {
    const Canvas canvas(8, 6);
    FileBytes cut = host::readBytes(white_);
    cut.resize(60);
    const std::wstring bad = folder_.write(L"bad.bmp", {1, 2, 3});
    for (const std::wstring& path : {folder_ / L"missing.bmp", folder_ / L"no folder\\x.bmp", folder_.path(),
                                     bad, folder_.write(L"cut.bmp", cut), std::wstring()}) {
        draw(canvas, path);
    }
    EXPECT_TRUE(canvas.isBlank());
}

TEST_F(ColorToBn, EndsQuietlyWithoutADeviceContext) {
    const host::Outcome outcome = call(*fx_, L"ColorToBN", {Text(white_.c_str()), integer(0), integer(0)});
    EXPECT_EQ(failureOf(outcome), host::kNone);
    EXPECT_EQ(V_BOOL(&outcome.result.get()), VARIANT_FALSE);
}

TEST_F(ColorToBn, TakesReferencesAndLeavesThem) {
    VARIANT_BOOL twoColor = VARIANT_TRUE;
    BYTE threshold = 255;
    VARIANT hold = truth(true);
    long width = 10;
    VARIANT height = integer(6);
    const Canvas canvas(12, 12);
    draw(canvas, white_, typedReference(VT_BOOL, &twoColor), typedReference(VT_UI1, &threshold),
         host::reference(hold), typedReference(VT_I4, &width), host::reference(height));
    EXPECT_TRUE(canvas.shows(0, 0, 0, 10, 6));
    EXPECT_EQ(twoColor, VARIANT_TRUE);
    EXPECT_EQ(threshold, 255);
    EXPECT_EQ(width, 10);
    EXPECT_EQ(V_I4(&height), 6);
}

TEST_F(ColorToBn, WorksEarlyBoundWithAndWithoutItsOptionalArguments) {
    const ComPtr<_ImageFX> early = fx_.as<_ImageFX>();
    const vrx::Bstr path(SysAllocString(white_.c_str()));
    VARIANT_BOOL result = VARIANT_TRUE;
    const Canvas grey(8, 6);
    EXPECT_EQ(
        early->ColorToBN(path.get(), grey.handle(), 0, nullptr, nullptr, nullptr, nullptr, nullptr, &result),
        S_OK);
    EXPECT_EQ(result, VARIANT_FALSE);
    EXPECT_TRUE(grey.shows(255, 0, 0, 5, 3));

    VARIANT_BOOL yes = VARIANT_TRUE;
    unsigned char threshold = 254;
    long side = 5;
    const Canvas white(8, 6);
    EXPECT_EQ(early->ColorToBN(path.get(), white.handle(), 0, &yes, &threshold, &yes, &side, &side, &result),
              S_OK);
    EXPECT_TRUE(white.shows(255, 0, 1, 5, 3));
    EXPECT_EQ(early->ColorToBN(nullptr, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              E_POINTER);
}

TEST_F(ColorToBn, LeaksNoHandles) {
    const Canvas canvas(8, 6);
    const std::wstring bad = folder_.write(L"bad.bmp", {1, 2, 3});
    const auto drawBoth = [&] {
        draw(canvas, white_);
        draw(canvas, bad);
    };
    drawBoth();
    const std::size_t before = host::freeGdiHandles();
    for (int i = 0; i < 50; ++i) drawBoth();
    EXPECT_EQ(host::freeGdiHandles(), before);
}

}  // namespace
