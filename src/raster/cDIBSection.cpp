#include "raster/cDIBSection.h"

#include <olectl.h>

#include <cstdint>

#include "com/entry.h"
#include "common/device_context.h"
#include "common/message_box.h"
#include "ground/error.h"
#include "raster/drawing_surface.h"
#include "raster/engine/noise.h"
#include "raster/engine/resample.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

std::int32_t checked(std::int64_t value) {
    if (value < INT32_MIN || value > INT32_MAX) throw platformError(Platform::Overflow);
    return static_cast<std::int32_t>(value);
}

/// True when the clipboard took the bitmap, which is its own then.
bool putOnClipboard(Bitmap bitmap) {
    // Without an owner the emptied clipboard takes nothing.
    const Window owner(
        CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr));
    if (!OpenClipboard(owner.get())) return false;
    const bool taken = EmptyClipboard() && SetClipboardData(CF_BITMAP, bitmap.get());
    if (taken) static_cast<void>(bitmap.release());
    CloseClipboard();
    return taken;
}

float secondsSinceMidnight() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return static_cast<float>((now.wHour * 60 + now.wMinute) * 60 + now.wSecond) +
           static_cast<float>(now.wMilliseconds) / 1000.0F;
}

}  // namespace

bool cDIBSection::CopyToClipboard(bool bAsDIB) {
    if (bAsDIB) {
        showMessage(u"I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!", MB_OK);
        return false;
    }
    const WindowDc desktop(GetDesktopWindow());
    if (!desktop) return false;
    const MemoryDc dc(CreateCompatibleDC(desktop.get()));
    if (!dc) return false;
    Bitmap bitmap(CreateCompatibleBitmap(desktop.get(), Width(), Height()));
    if (!bitmap) return false;
    {
        const Selection selected(dc.get(), bitmap.get());
        if (!selected) return false;
        PaintPicture(dc.get(), 0, 0);
    }
    return putOnClipboard(std::move(bitmap));
}

bool cDIBSection::CreateDIB(HDC lhDC, std::int32_t lWidth, std::int32_t lHeight, HBITMAP& hDib) {
    header_ = header24(lWidth, lHeight);
    header_.biSizeImage = static_cast<DWORD>(checked(std::int64_t{BytesPerScanLine()} * lHeight));
    BITMAPINFO info{};
    info.bmiHeader = header_;
    void* bits = nullptr;
    // The system would take a negative height as a section that runs from the top down.
    hDib = lWidth > 0 && lHeight > 0 ? CreateDIBSection(lhDC, &info, DIB_RGB_COLORS, &bits, nullptr, 0)
                                     : nullptr;
    bits_ = static_cast<std::uint8_t*>(bits);
    return hDib != nullptr;
}

void cDIBSection::CreateFromPicture(IPictureDisp* picThis) {
    if (!picThis) throw platformError(Platform::ObjectNotSet);
    const HeldReference picture(interfaceOf<IPicture>(picThis));
    const HBITMAP bitmap = picture ? bitmapOf(*picture.get()) : nullptr;
    BITMAP size{};
    GetObjectA(bitmap, sizeof size, &size);
    if (!Create(size.bmWidth, size.bmHeight)) return;
    const BitmapDc dc(bitmap);
    // Without a source the section would be another picture than this one.
    if (!dc || !LoadPictureBlt(dc.get(), 0, 0)) ClearUp();
}

bool cDIBSection::Create(std::int32_t lWidth, std::int32_t lHeight) {
    ClearUp();
    SectionDc dc(CreateCompatibleDC(nullptr));
    if (!dc) return false;
    HBITMAP section = nullptr;
    if (!CreateDIB(dc.get(), lWidth, lHeight, section)) return false;
    hdc_ = std::move(dc);
    hDib_.reset(section);
    oldBitmap_ = SelectObject(hdc_.get(), section);
    if (!oldBitmap_) ClearUp();
    return oldBitmap_ != nullptr;
}

std::int32_t cDIBSection::BytesPerScanLine() const { return checked(std::int64_t{Width()} * 3 + 3) & ~3; }

bool cDIBSection::LoadPictureBlt(HDC lhDC, std::int32_t lSrcLeft, std::int32_t lSrcTop,
                                 std::int32_t lSrcWidth, std::int32_t lSrcHeight, DWORD eRop) {
    const BOOL drawn = BitBlt(hdc_.get(), 0, 0, lSrcWidth < 0 ? Width() : lSrcWidth,
                              lSrcHeight < 0 ? Height() : lSrcHeight, lhDC, lSrcLeft, lSrcTop, eRop);
    // The system may keep drawing back; whoever reads the bytes next is not to miss it.
    GdiFlush();
    return drawn != FALSE;
}

void cDIBSection::PaintPicture(HDC lhDC, std::int32_t lDestLeft, std::int32_t lDestTop,
                               std::int32_t lDestWidth, std::int32_t lDestHeight, std::int32_t lSrcLeft,
                               std::int32_t lSrcTop, DWORD eRop) const {
    BitBlt(lhDC, lDestLeft, lDestTop, lDestWidth < 0 ? Width() : lDestWidth,
           lDestHeight < 0 ? Height() : lDestHeight, hdc_.get(), lSrcLeft, lSrcTop, eRop);
    GdiFlush();
}

void cDIBSection::RandomiseBits(bool bGray) {
    if (bits_) randomisePixels(pixels(), Width(), Height(), bGray, secondsSinceMidnight());
}

void cDIBSection::ClearUp() {
    if (hdc_ && hDib_) SelectObject(hdc_.get(), oldBitmap_);
    hDib_.reset();
    hdc_.reset();
    oldBitmap_ = nullptr;
    bits_ = nullptr;
}

std::unique_ptr<cDIBSection> cDIBSection::Resample(std::int32_t lNewHeight, std::int32_t lNewWidth) const {
    auto resampled = std::make_unique<cDIBSection>();
    if (!resampled->Create(lNewWidth, lNewHeight)) return nullptr;
    if (lNewWidth == Width() && lNewHeight == Height()) {
        if (!resampled->LoadPictureBlt(hDC(), 0, 0)) return nullptr;
    } else {
        resample({pixels(), Width(), Height()}, {resampled->pixels(), lNewWidth, lNewHeight});
    }
    return resampled;
}

std::span<std::uint8_t> cDIBSection::pixels() const {
    if (!bits_) return {};
    GdiFlush();
    return {bits_, header_.biSizeImage};
}

}  // namespace vrx
