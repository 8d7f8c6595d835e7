#include "raster/drawing_surface.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "com/win_resource.h"
#include "common/device_context.h"
#include "ground/error.h"

namespace vrx {
namespace {

// Bytes of a canvas that is kept for its turn.
constexpr std::size_t kMaxSpare = std::size_t{64} << 20;

/// Whether somebody beside the surface holds the picture. The system's picture objects count exactly, and a
/// host in another apartment holds one by its stub. A note that the picture was handed out would not tell
/// when it has come back, and take fresh memory for every refresh of a load.
bool isShared(IPictureDisp& picture) {
    picture.AddRef();
    return picture.Release() > 1;
}

std::size_t sizeOf(std::int32_t width, std::int32_t height) {
    return static_cast<std::size_t>(strideOf(static_cast<std::uint32_t>(width))) *
           static_cast<std::size_t>(height);
}

/// Whether a rectangle that is not empty lies wholly in a picture of this size.
bool isWithin(const PixelRect& rectangle, LONG width, LONG height) {
    return rectangle.left >= 0 && rectangle.top >= 0 && rectangle.width > 0 && rectangle.height > 0 &&
           rectangle.width <= width - rectangle.left && rectangle.height <= std::abs(height) - rectangle.top;
}

}  // namespace

void DrawingSurface::resize(std::int32_t width, std::int32_t height) {
    if (!prepare(width, height)) std::memset(canvas_.bits, 0, sizeOf(canvas_.width, canvas_.height));
    canvas_.painting = {};
}

/// A canvas of this size that nobody else holds; whether it is black, as it is when new.
bool DrawingSurface::prepare(std::int32_t width, std::int32_t height) {
    if (width < 0 || height < 0) throw platformError(Platform::InvalidCall);
    width = std::max(width, 1);
    height = std::max(height, 1);
    if (!canTake(canvas_, width, height) && canTake(spare_, width, height)) std::swap(canvas_, spare_);
    if (canTake(canvas_, width, height)) {
        // What its last user drew may not have been done yet.
        GdiFlush();
        return false;
    }
    Canvas fresh = create(width, height);
    const bool keep =
        canvas_.width == width && canvas_.height == height && sizeOf(width, height) <= kMaxSpare;
    spare_ = keep ? std::move(canvas_) : Canvas{};
    canvas_ = std::move(fresh);
    return true;
}

bool DrawingSurface::canTake(const Canvas& canvas, std::int32_t width, std::int32_t height) {
    return canvas.picture && canvas.width == width && canvas.height == height && !isShared(*canvas.picture);
}

DrawingSurface::Canvas DrawingSurface::create(std::int32_t width, std::int32_t height) {
    BitmapSection section = makeSection(width, height);
    const HBITMAP bitmap = section.bitmap.get();
    return {makePicture(std::move(section.bitmap)), bitmap, section.bits, width, height, {}};
}

/// One row of the bitmap, black where it ends before the canvas does.
void DrawingSurface::copyRow(const Canvas& canvas, std::uint32_t y, const Bitmap24& bitmap) {
    const std::size_t stride = sizeOf(canvas.width, 1);
    std::uint8_t* row = canvas.bits + (static_cast<std::size_t>(canvas.height) - 1 - y) * stride;
    const auto shown = std::min(bitmap.width(), static_cast<std::uint32_t>(canvas.width)) * std::size_t{3};
    std::memcpy(row, bitmap.rowFromTop(y), shown);
    std::memset(row + shown, 0, stride - shown);
}

void DrawingSurface::show(const Bitmap24& bitmap, PaintedRows painting) {
    if (bitmap.empty()) return resize(0, 0);
    show(bitmap, painting, static_cast<std::int32_t>(bitmap.width()),
         static_cast<std::int32_t>(bitmap.height()));
}

void DrawingSurface::show(const Bitmap24& bitmap, PaintedRows painting, std::int32_t width,
                          std::int32_t height) {
    if (bitmap.empty()) return resize(width, height);
    const bool isBlack = prepare(width, height);
    const auto rows = static_cast<std::uint32_t>(canvas_.height);
    const bool goesOn = canvas_.painting.number == painting.number && canvas_.painting.rows <= painting.rows;
    const std::uint32_t end = std::min({painting.rows, bitmap.height(), rows});
    for (std::uint32_t y = goesOn ? canvas_.painting.rows : 0; y < end; ++y) copyRow(canvas_, y, bitmap);
    if (!goesOn && !isBlack) std::memset(canvas_.bits, 0, (rows - end) * sizeOf(canvas_.width, 1));
    canvas_.painting = painting;
}

void DrawingSurface::stretch(const PixelRect& target, const PixelRect& source, const BITMAPINFO& info,
                             const void* bits) {
    const BitmapDc dc(canvas_.bitmap);
    if (!dc) throw platformError(Platform::OutOfMemory);
    canvas_.painting = {};
    SetStretchBltMode(dc.get(), COLORONCOLOR);
    const int lines =
        StretchDIBits(dc.get(), target.left, target.top, target.width, target.height, source.left, source.top,
                      source.width, source.height, bits, &info, DIB_RGB_COLORS, SRCCOPY);
    // No lines are copied of or to places beside the pictures either.
    if (lines <= 0 && isWithin(source, info.bmiHeader.biWidth, info.bmiHeader.biHeight) &&
        isWithin(target, canvas_.width, canvas_.height)) {
        throw platformError(Platform::OutOfMemory);
    }
    GdiFlush();
}

ComPtr<IPictureDisp> DrawingSurface::picture() {
    if (!canvas_.picture) canvas_ = create(1, 1);
    return canvas_.picture;
}

}  // namespace vrx
