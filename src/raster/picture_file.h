// Picture files as picture objects, in every format that the platform's picture loading reads (BMP, JPEG,
// GIF, icons and metafiles), and the pixels of a picture object. Of bitmap files, the platform's reader sees
// run-length-coded ones only.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>
#include <span>
#include <string>

#include "com/com_ptr.h"
#include "ground/bytes.h"

namespace vrx {

/// The picture in a file. Fails with the platform's errors: those of reading a file (53, 75, 76, 70 ...), and
/// 481 for a file that is no picture.
[[nodiscard]] ComPtr<IPicture> loadPicture(const std::u16string& path);

// A picture may be an object of the host's, which may leave our frames without returning: no call of it is
// made while something is owned there that is not held.

/// The picture's own bitmap; null for a picture that holds something else.
[[nodiscard]] HBITMAP bitmapOf(IPicture& picture);

struct PictureSize {
    std::int32_t width;
    std::int32_t height;
};

/// The size in pixels of the screen; error 6 beyond 32767.
[[nodiscard]] PictureSize pixelSizeOf(IPicture& picture);

/// 24-bit pixels, bottom-up with padded rows, and one zero byte behind them.
struct PicturePixels {
    std::int32_t width;
    std::int32_t height;
    Bytes bits;

    [[nodiscard]] std::span<std::uint8_t> rows() { return {bits.data(), bits.size() - 1}; }
};

/// The pixels of a picture of ours in its size in pixels of the screen. Icons and metafiles are drawn on
/// white.
[[nodiscard]] PicturePixels readPixels(IPicture& picture);
/// The pixels of a picture's bitmap, in the picture's size.
[[nodiscard]] PicturePixels readPixels(HBITMAP bitmap, PictureSize size);

/// The pixels of the picture in a file, as loadPicture and readPixels give them.
[[nodiscard]] PicturePixels loadPixels(const std::u16string& path);

}  // namespace vrx
