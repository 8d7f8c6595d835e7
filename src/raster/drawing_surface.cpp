#include "raster/drawing_surface.h"

#include <olectl.h>

#include <algorithm>
#include <cstring>

#include "common/engine/error.h"
#include "common/win_resource.h"

namespace vrx {
namespace {

/// Whether somebody beside the surface holds the picture.
bool isShared(IPictureDisp& picture) {
    picture.AddRef();
    return picture.Release() > 1;
}

std::size_t sizeOf(std::int32_t width, std::int32_t height) {
    return static_cast<std::size_t>(strideOf(static_cast<std::uint32_t>(width))) *
           static_cast<std::size_t>(height);
}

/// A memory device context with a bitmap selected into it for as long as it exists.
class BitmapDc {
  public:
    explicit BitmapDc(HBITMAP bitmap) : dc_(CreateCompatibleDC(nullptr)) {
        if (!dc_) throw platformError(Platform::OutOfMemory);
        previous_ = SelectObject(dc_.get(), bitmap);
        if (!previous_) throw platformError(Platform::OutOfMemory);
    }
    BitmapDc(const BitmapDc&) = delete;
    BitmapDc& operator=(const BitmapDc&) = delete;
    ~BitmapDc() {
        if (previous_) SelectObject(dc_.get(), previous_);
    }

    [[nodiscard]] HDC get() const { return dc_.get(); }

  private:
    MemoryDc dc_;
    HGDIOBJ previous_ = nullptr;
};

}  // namespace

BITMAPINFOHEADER header24(std::int32_t width, std::int32_t height) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biCompression = BI_RGB;
    return header;
}

void DrawingSurface::resize(std::int32_t width, std::int32_t height) {
    if (width < 0 || height < 0) throw platformError(Platform::InvalidCall);
    width = std::max(width, 1);
    height = std::max(height, 1);
    if (picture_ && width == width_ && height == height_ && !isShared(*picture_)) {
        std::memset(bits_, 0, sizeOf(width, height));
    } else {
        create(width, height);
    }
}

void DrawingSurface::create(std::int32_t width, std::int32_t height) {
    if (strideOf(static_cast<std::uint32_t>(width)) > kMaxByteCount / static_cast<std::uint32_t>(height)) {
        throw platformError(Platform::OutOfMemory);
    }
    BITMAPINFO info{};
    info.bmiHeader = header24(width, height);
    void* bits = nullptr;
    Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap) throw platformError(Platform::OutOfMemory);

    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap = bitmap.get();
    ComPtr<IPictureDisp> picture;
    if (FAILED(OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE,
                                        reinterpret_cast<void**>(picture.put())))) {
        throw platformError(Platform::OutOfMemory);
    }
    picture_ = std::move(picture);
    bitmap_ = bitmap.release();
    bits_ = static_cast<std::uint8_t*>(bits);
    width_ = width;
    height_ = height;
}

void DrawingSurface::paint(const Bitmap24& bitmap) {
    if (bitmap.empty()) return;
    resize(static_cast<std::int32_t>(bitmap.width()), static_cast<std::int32_t>(bitmap.height()));
    std::memcpy(bits_, bitmap.data(), bitmap.size());
}

void DrawingSurface::stretch(const PixelRect& target, const PixelRect& source, const BITMAPINFO& info,
                             const void* bits) {
    const BitmapDc dc(bitmap_);
    SetStretchBltMode(dc.get(), COLORONCOLOR);
    StretchDIBits(dc.get(), target.left, target.top, target.width, target.height, source.left, source.top,
                  source.width, source.height, bits, &info, DIB_RGB_COLORS, SRCCOPY);
    GdiFlush();
}

ComPtr<IPictureDisp> DrawingSurface::picture() {
    if (!picture_) create(1, 1);
    return picture_;
}

}  // namespace vrx
