#include "effects/engine/grey.h"

#include <cstring>

#include "raster/engine/pixel_rows.h"

namespace vrx {
namespace {

std::uint8_t greyOf(const std::uint8_t* pixel, GreyStyle style) {
    // A third never lies halfway between two integers.
    const int mean = (pixel[0] + pixel[1] + pixel[2] + 1) / 3;
    if (!style.twoColor) return static_cast<std::uint8_t>(mean / 2 + 128);
    return mean <= style.threshold ? 0 : 255;
}

}  // namespace

void convertToGrey(std::span<std::uint8_t> buffer, std::int32_t dimX, std::int32_t dimY, GreyStyle style) {
    if (!holdsPixels(buffer.size(), dimX, dimY)) return;
    std::uint8_t* row = buffer.data();
    for (std::int32_t y = 0; y < dimY; ++y, row += rowStride(dimX)) {
        std::uint8_t* pixel = row;
        for (std::int32_t x = 0; x < dimX; ++x, pixel += 3) std::memset(pixel, greyOf(pixel, style), 3);
    }
}

}  // namespace vrx
