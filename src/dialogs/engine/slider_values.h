// What the positions of the file dialogs' sliders mean.
#pragma once

#include <cstdint>

#include "ground/rounding.h"

namespace vrx {

/// Positions of a slider and the distance of its ticks.
struct SliderScale {
    int lowest;
    int highest;
    int tick;
    int designed;
};

inline constexpr SliderScale kExposureScale{0, 320, 10, 160};
inline constexpr SliderScale kGammaScale{0, 200, 10, 100};
inline constexpr SliderScale kQualityScale{1, 20, 1, 17};

/// In stops: 0 to 32.
[[nodiscard]] inline float exposureOfSlider(int position) { return static_cast<float>(position / 10.0); }
/// 1 to 3.
[[nodiscard]] inline float gammaOfSlider(int position) { return static_cast<float>(position / 100.0 + 1); }

/// JPEG quality, 5 to 100.
[[nodiscard]] inline std::int32_t qualityOfSlider(int position) { return position * 5; }
/// Halves to even.
[[nodiscard]] inline int sliderOfQuality(std::int32_t quality) { return toInt32(quality / 5.0); }

}  // namespace vrx
