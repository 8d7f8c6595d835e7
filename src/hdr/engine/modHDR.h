// The numbers that all high-dynamic-range pictures share.
#pragma once

#include <array>

namespace vrx {

/// The shared exponent of an RGBE pixel as a scale: a component's linear value is (mantissa + 0.5) * 2^(E -
/// 136). Ward, "Real Pixels", Graphics Gems II. E = 0 gets no special treatment: its scale is 2^-136.
inline constexpr std::array<float, 256> kExponentTable = [] {
    std::array<float, 256> table{};
    double scale = 0x1p-136;
    for (float& entry : table) {
        entry = static_cast<float>(scale);
        scale *= 2.0;
    }
    return table;
}();

// Primaries of the picture to CIE XYZ and back, as Singles. Not inline: a row kernel for other processors
// must not share them.
constexpr double kRgbToX[] = {0.5141364F, 0.32387858F, 0.16036376F};
constexpr double kRgbToY[] = {0.265068F, 0.67023426F, 0.06409157F};
constexpr double kRgbToZ[] = {0.0241188F, 0.1228178F, 0.84442663F};
constexpr double kXyzToR[] = {2.5651F, -1.1665F, -0.3986F};
constexpr double kXyzToG[] = {-1.0217F, 1.9777F, 0.0439F};
constexpr double kXyzToB[] = {0.0753F, -0.2543F, 1.1892F};

}  // namespace vrx
