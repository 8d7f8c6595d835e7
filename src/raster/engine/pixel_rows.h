// Rows of 24-bit pixels in a caller's memory, each padded to a multiple of 4 bytes, and their size.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ground/error.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

/// Whether there are pixels at all; a negative width or height means none. Error 9 where memory of `size`
/// bytes does not hold them.
[[nodiscard]] inline bool holdsPixels(std::size_t size, std::int32_t width, std::int32_t height) {
    if (width <= 0 || height <= 0) return false;
    if (strideOf(static_cast<std::uint32_t>(width)) > size / static_cast<std::uint32_t>(height)) {
        throw platformError(Platform::SubscriptOutOfRange);
    }
    return true;
}

/// The same as strideOf, for pixels that are there.
[[nodiscard]] constexpr std::size_t rowStride(std::int32_t width) {
    return static_cast<std::size_t>(strideOf(static_cast<std::uint32_t>(width)));
}

}  // namespace vrx
