// Picture files as picture objects, in every format that the platform's picture loading reads (BMP, JPEG and
// GIF among them), and the pixels of a picture object.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>
#include <string>

#include "com/com_ptr.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

/// The picture in a file. Fails with the platform's errors: those of reading a file (53, 75, 76, 70 ...), and
/// 481 for a file that is no picture.
[[nodiscard]] ComPtr<IPicture> loadPicture(const std::u16string& path);

/// The picture's own bitmap; null for a picture that holds something else.
[[nodiscard]] HBITMAP bitmapOf(IPicture& picture);

struct PictureSize {
    std::int32_t width;
    std::int32_t height;
};

/// The size in pixels of the screen; error 6 beyond 32767.
[[nodiscard]] PictureSize pixelSizeOf(IPicture& picture);

/// The bitmap of a picture in its size in pixels of the screen. Error 481 for a picture without a bitmap.
[[nodiscard]] Bitmap24 readPixels(IPicture& picture);

}  // namespace vrx
