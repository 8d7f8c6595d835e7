// Lengths in HiMetric units (0.01 mm), as picture objects tell their sizes, in pixels.
#pragma once

#include <cstdint>

#include "ground/rounding.h"

namespace vrx {

inline constexpr int kHimetricPerInch = 2540;

/// A length in pixels at a resolution in pixels per inch: a Single, as the scale conversion of a form gives
/// it, which is then rounded to whole pixels.
[[nodiscard]] inline float pixelLengthOf(double himetric, int pixelsPerInch) {
    return static_cast<float>(himetric * (pixelsPerInch / double{kHimetricPerInch}));
}

/// The same in whole pixels; error 6 where 16 bits do not hold it.
[[nodiscard]] inline std::int16_t pixelsOfHimetric(float himetric, int pixelsPerInch) {
    return toInt16(pixelLengthOf(himetric, pixelsPerInch));
}

}  // namespace vrx
