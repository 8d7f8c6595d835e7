// Lengths in HiMetric units (0.01 mm), as picture objects tell their sizes, in pixels.
#pragma once

#include <cstdint>

#include "ground/rounding.h"

namespace vrx {

/// A length in whole pixels at a resolution in pixels per inch; error 6 where 16 bits do not hold it.
[[nodiscard]] inline std::int16_t pixelsOfHimetric(float himetric, int pixelsPerInch) {
    constexpr double kHimetricPerInch = 2540.0;
    // The scale conversion of a form gives a Single, which is rounded again.
    const auto pixels = static_cast<float>(himetric * (pixelsPerInch / kHimetricPerInch));
    return toInt16(pixels);
}

}  // namespace vrx
