// An off-screen 24-bit canvas with a picture object. A picture that was handed out stays as it is when the
// surface is painted again: the surface then goes on with another bitmap. A host that keeps the newest
// picture only, as windows that follow a load do, has given the one before back by then, and the surface
// takes that one's bitmap again: fresh memory would take longer than the painting.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>

#include "com/com_ptr.h"
#include "raster/bitmap_picture.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

/// A rectangle in pixels as StretchDIBits takes it. In a bottom-up bitmap the source's top counts from the
/// bottom.
struct PixelRect {
    int left;
    int top;
    int width;
    int height;
};

class DrawingSurface {
  public:
    /// Makes the surface black in a size of its own, 1 x 1 at least. Error 5 for a negative size, 7 for one
    /// that the system cannot hold.
    void resize(std::int32_t width, std::int32_t height);

    /// A bitmap in its own size: of an empty one, black. The rows that the surface has of the bitmap's
    /// painting already stay. Errors as for resize().
    void show(const Bitmap24& bitmap, PaintedRows painting);
    /// The same at the top left corner of a surface of this size, which is black around it.
    void show(const Bitmap24& bitmap, PaintedRows painting, std::int32_t width, std::int32_t height);

    /// Draws bits of any format into the surface, eliminating rows and columns where it shrinks.
    void stretch(const PixelRect& target, const PixelRect& source, const BITMAPINFO& info, const void* bits);

    /// What is painted now, as a picture object that owns its bitmap.
    [[nodiscard]] ComPtr<IPictureDisp> picture();

    [[nodiscard]] std::int32_t width() const { return canvas_.width; }
    [[nodiscard]] std::int32_t height() const { return canvas_.height; }
    /// The pixels, bottom-up with padded rows.
    [[nodiscard]] const std::uint8_t* bits() const { return canvas_.bits; }

  private:
    struct Canvas {
        ComPtr<IPictureDisp> picture;
        HBITMAP bitmap = nullptr;  // the picture's
        std::uint8_t* bits = nullptr;
        std::int32_t width = 0;
        std::int32_t height = 0;
        PaintedRows painting;
    };

    static Canvas create(std::int32_t width, std::int32_t height);
    static bool canTake(const Canvas& canvas, std::int32_t width, std::int32_t height);
    static void copyRow(const Canvas& canvas, std::uint32_t y, const Bitmap24& bitmap);
    bool prepare(std::int32_t width, std::int32_t height);

    Canvas canvas_;
    Canvas spare_;  // the one before, when it is of the same size
};

}  // namespace vrx
