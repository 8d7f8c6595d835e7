// contact_sheet PICTURE.hdr OUT.bmp [FIRST [STEP [COUNT]]]
// Writes one BMP file with several exposures of a picture side by side, each at a quarter of its size: COUNT
// exposures from FIRST stops on, STEP apart. Nothing is written in between: the pictures go from object to
// object.
#include <cstdlib>

#include "sample.h"

namespace {

constexpr long kShrink = 4;
constexpr long kGap = 8;

struct Range {
    float first = 13;
    float step = 2;
    long count = 4;
};

/// Pictures tell their handles as numbers of 32 bits, in 64-bit programs too.
HBITMAP bitmapOf(OLE_HANDLE handle) {
    return reinterpret_cast<HBITMAP>(static_cast<INT_PTR>(static_cast<LONG>(handle)));
}

long strideOf(long width) { return (width * 3 + 3) & ~3; }

/// The bits of the sheet, as CVrxImage takes them: blue, green, red, rows from the bottom up.
class Sheet {
  public:
    Sheet(long width, long height) {
        info_.biSize = sizeof(BITMAPINFOHEADER);
        info_.biWidth = width;
        info_.biHeight = height;
        info_.biPlanes = 1;
        info_.biBitCount = 24;
        const auto size = static_cast<ULONG>(strideOf(width) * height);
        bits_ = SafeArrayCreateVector(VT_UI1, 0, size);
        if (!bits_) check(E_OUTOFMEMORY);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    ~Sheet() { SafeArrayDestroy(bits_); }

    /// Copies a picture's pixels to the column `left`.
    void put(IPictureDisp& picture, long left, long width) {
        Pointer<IPicture> bitmap;
        check(picture.QueryInterface(IID_IPicture, reinterpret_cast<void**>(bitmap.put())));
        OLE_HANDLE handle = 0;
        check(bitmap->get_Handle(&handle));
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, width, info_.biHeight, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        std::string pixels(static_cast<std::size_t>(strideOf(width) * info_.biHeight), '\0');
        HDC dc = CreateCompatibleDC(nullptr);
        GetDIBits(dc, bitmapOf(handle), 0, static_cast<UINT>(info_.biHeight), pixels.data(), &info,
                  DIB_RGB_COLORS);
        DeleteDC(dc);

        char* sheet = nullptr;
        check(SafeArrayAccessData(bits_, reinterpret_cast<void**>(&sheet)));
        for (long y = 0; y < info_.biHeight; ++y) {
            pixels.copy(sheet + y * strideOf(info_.biWidth) + left * 3, static_cast<std::size_t>(width * 3),
                        static_cast<std::size_t>(y * strideOf(width)));
        }
        SafeArrayUnaccessData(bits_);
    }

    void save(const wchar_t* path) {
        Pointer<_CVrxImage> image;
        create(CLSID_CVrxImage, image);
        check(image->Set_BMP(&bits_, &info_));
        Text target(path);
        Text written;
        check(image->Save_BMP(target.put(), written.put()));
        std::printf("wrote %ls: %ld x %ld pixels\n", written.c_str(), info_.biWidth, info_.biHeight);
    }

  private:
    BmpInfo info_{};
    SAFEARRAY* bits_ = nullptr;
};

void makeSheet(const wchar_t* source, const wchar_t* target, const Range& range) {
    Pointer<_CVrxHDR> hdr;
    create(CLSID_CVrxHDR, hdr);
    VARIANT_BOOL invert = VARIANT_FALSE;
    check(hdr->Load_HDR(Text(source).get(), &invert));
    long dimX = 0;
    long dimY = 0;
    check(hdr->get_DimX(&dimX));
    check(hdr->get_DimY(&dimY));
    check(hdr->put_Gamma(2.2F));

    const long width = dimX / kShrink;
    const long height = dimY / kShrink;
    Sheet sheet(range.count * (width + kGap) - kGap, height);
    for (long i = 0; i < range.count; ++i) {
        check(hdr->put_Exposure(range.first + range.step * static_cast<float>(i)));
        check(hdr->Get_BMP());
        Pointer<IPictureDisp> picture;
        check(hdr->Get_Picture(0, 0, static_cast<float>(dimX), dimY, 0, 0, static_cast<float>(width), height,
                               picture.put()));
        sheet.put(*picture.get(), i * (width + kGap), width);
    }
    sheet.save(target);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    Range range;
    if (count > 3) range.first = static_cast<float>(_wtof(arguments[3]));
    if (count > 4) range.step = static_cast<float>(_wtof(arguments[4]));
    if (count > 5) range.count = _wtol(arguments[5]);
    if (count < 3 || count > 6 || range.count < 1) {
        std::fputs("usage: contact_sheet PICTURE.hdr OUT.bmp [FIRST [STEP [COUNT]]]\n", stderr);
        return 2;
    }
    return runSample("contact_sheet", [&] { makeSheet(arguments[1], arguments[2], range); });
}
