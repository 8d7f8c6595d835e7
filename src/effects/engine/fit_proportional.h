// The centred rectangle that an image fills in a box when it keeps its proportions.
#pragma once

#include <cstdint>

namespace vrx {

struct FittedRectangle {
    std::int32_t left;
    std::int32_t top;
    std::int32_t width;
    std::int32_t height;
};

/// Error 11 for an image without width or height, 6 for results beyond 32 bits.
[[nodiscard]] FittedRectangle fitProportional(std::int32_t boxWidth, std::int32_t boxHeight,
                                              std::int32_t imageWidth, std::int32_t imageHeight);

}  // namespace vrx
