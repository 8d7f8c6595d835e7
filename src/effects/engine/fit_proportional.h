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

/// In whole units: a side is rounded before it is compared with the box, and so is the corner. The preview's
/// frame (proportionalFrame in dialogs/engine) does neither, and can be a unit apart from it. Error 11 for an
/// image without width or height, 6 for results beyond 32 bits.
[[nodiscard]] FittedRectangle fitProportional(std::int32_t boxWidth, std::int32_t boxHeight,
                                              std::int32_t imageWidth, std::int32_t imageHeight);

}  // namespace vrx
