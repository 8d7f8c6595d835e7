// Colours of 24-bit pixels to light greys, or to black and white.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

struct GreyStyle {
    bool twoColor = false;         ///< black and white instead of the greys from 128 to 255
    std::uint8_t threshold = 128;  ///< the lightest grey that becomes black
};

/// Error 9 for a buffer that is shorter than the rows, which are padded to a multiple of 4 bytes.
void convertToGrey(std::span<std::uint8_t> buffer, std::int32_t dimX, std::int32_t dimY, GreyStyle style);

}  // namespace vrx
