// The size of pictures on the screen: HiMetric units in pixels at the screen's resolution.
#pragma once

#include <cstdint>

namespace vrx {

/// A width or height in whole pixels; error 6 where 16 bits do not hold it.
[[nodiscard]] std::int16_t scaleX(float himetric);
[[nodiscard]] std::int16_t scaleY(float himetric);

}  // namespace vrx
