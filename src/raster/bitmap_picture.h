// Picture objects around 24-bit bitmap sections, bottom-up, whose bytes can be read and written in place.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <cstdint>

#include "com/com_ptr.h"
#include "com/win_resource.h"

namespace vrx {

/// The header of a 24-bit bottom-up bitmap.
[[nodiscard]] BITMAPINFOHEADER header24(std::int32_t width, std::int32_t height);

struct BitmapSection {
    Bitmap bitmap;
    std::uint8_t* bits;  ///< as long as the bitmap exists
};

/// A black section. Error 7 for sizes that the system cannot hold.
[[nodiscard]] BitmapSection makeSection(std::int32_t width, std::int32_t height);

/// A picture object that owns the bitmap. Error 7 where there is none to be had.
[[nodiscard]] ComPtr<IPictureDisp> makePicture(Bitmap bitmap);

}  // namespace vrx
