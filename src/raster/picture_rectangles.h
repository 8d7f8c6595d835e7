// The rectangles of a Get_Picture call, as hosts give them.
#pragma once

#include <optional>

#include "ground/rounding.h"
#include "raster/drawing_surface.h"

namespace vrx {

/// The part of a picture that is stretched into a part of the new one.
struct PictureRectangles {
    PixelRect source;
    PixelRect target;
};

/// Nothing where the first coordinate is -1, which stands for the whole picture. Error 6 beyond 32 bits.
[[nodiscard]] inline std::optional<PictureRectangles> rectanglesOf(float srcPX, long srcPY, float srcDX,
                                                                   long srcDY, float destPX, long destPY,
                                                                   float destDX, long destDY) {
    if (srcPX == -1.0F) return std::nullopt;
    return PictureRectangles{{toInt32(srcPX), srcPY, toInt32(srcDX), srcDY},
                             {toInt32(destPX), destPY, toInt32(destDX), destDY}};
}

}  // namespace vrx
