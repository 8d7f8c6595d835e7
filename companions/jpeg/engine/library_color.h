// The JPEG library's names for kinds of pixels.
#pragma once

#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

#include "jpeg/engine/picture_format.h"

namespace vrx::jpeg {

[[nodiscard]] inline J_COLOR_SPACE libraryColorOf(Color color) {
    switch (color) {
        case Color::Rgb:
            return JCS_RGB;
        case Color::Bgr:
            return JCS_EXT_BGR;
        case Color::YCbCr:
            return JCS_YCbCr;
        case Color::Grey:
            return JCS_GRAYSCALE;
    }
    return JCS_UNKNOWN;
}

}  // namespace vrx::jpeg
