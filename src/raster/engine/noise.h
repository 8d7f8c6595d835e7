// Noise in place of a picture.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

/// Fills 24-bit pixels with random greens and reds and no blue, or with random greys; a seed gives the same
/// noise each time. Error 9 for a buffer that is shorter than the rows, whose padding stays.
void randomisePixels(std::span<std::uint8_t> buffer, std::int32_t width, std::int32_t height, bool grey,
                     float seed);

}  // namespace vrx
