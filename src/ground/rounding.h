// Rounding as automation hosts do it: to nearest, halves to even.
#pragma once

#include <cmath>
#include <cstdint>

#include "ground/error.h"

namespace vrx {

/// The nearest integer, halves to even, whatever the processor's rounding mode.
[[nodiscard]] inline double roundHalfEven(double value) {
    const double floor = std::floor(value);
    const double rest = value - floor;
    if (rest < 0.5) return floor;
    if (rest > 0.5) return floor + 1.0;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

/// The same as a 32-bit integer; error 6 where it does not fit.
[[nodiscard]] inline std::int32_t toInt32(double value) {
    const double rounded = roundHalfEven(value);
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) throw platformError(Platform::Overflow);
    return static_cast<std::int32_t>(rounded);
}

/// The same as a 16-bit integer.
[[nodiscard]] inline std::int16_t toInt16(double value) {
    const double rounded = roundHalfEven(value);
    if (!(rounded >= -32768.0 && rounded <= 32767.0)) throw platformError(Platform::Overflow);
    return static_cast<std::int16_t>(rounded);
}

}  // namespace vrx
