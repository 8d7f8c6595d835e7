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

}  // namespace vrx
