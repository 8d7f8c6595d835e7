// What the row kernels of automatic exposition begin with: the colours of a block of pixels, looked up one by
// one, and their luminance. For sources that are compiled for VRX_ROWS.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ground/lanes.h"
#include "hdr/engine/auto_exposition_rows.h"
#include "hdr/engine/modHDR.h"

namespace vrx::VRX_ROWS {

inline constexpr std::size_t kBlock = 64;

struct Colours {
    float r[kBlock], g[kBlock], b[kBlock];
};

struct Pixels {
    Doubles r, g, b;
};

VRX_INLINE void dot(Doubles& result, const double (&m)[3], const Doubles& a, const Doubles& b,
                    const Doubles& c) {
    result = m[0] * a + m[1] * b + m[2] * c;
}

VRX_INLINE void load(Pixels& pixels, const Colours& colours, std::size_t i) {
    load(pixels.r, colours.r + i);
    load(pixels.g, colours.g + i);
    load(pixels.b, colours.b + i);
}

VRX_INLINE void fetchPixel(Colours& colours, std::size_t i, const ExposureRow& row, std::size_t x,
                           const float* singles) {
    colours.r[i] = singles[row.r[x]];
    colours.g[i] = singles[row.g[x]];
    colours.b[i] = singles[row.b[x]];
}

VRX_INLINE const float* singlesAt(const ExposureRow& row, std::size_t x) {
    return row.singles + (std::size_t{row.e[x]} << 8);
}

/// Eight pixels, most often of one exponent.
VRX_INLINE void fetchEight(Colours& colours, std::size_t i, const ExposureRow& row, std::size_t x) {
    std::uint64_t exponents;
    std::memcpy(&exponents, row.e + x, sizeof exponents);
    const float* singles = singlesAt(row, x);
    if (exponents == row.e[x] * 0x0101010101010101U) {
        for (std::size_t n = 0; n < 8; ++n) fetchPixel(colours, i + n, row, x + n, singles);
    } else {
        for (std::size_t n = 0; n < 8; ++n) fetchPixel(colours, i + n, row, x + n, singlesAt(row, x + n));
    }
}

/// Looks up a block's colours; past the end of the row the last one again.
inline void fetch(Colours& colours, const ExposureRow& row, std::size_t x, std::size_t count) {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) fetchEight(colours, i, row, x + i);
    for (; i < count; ++i) fetchPixel(colours, i, row, x + i, singlesAt(row, x + i));
    for (; i < kBlock; ++i) fetchPixel(colours, i, row, x + count - 1, singlesAt(row, x + count - 1));
}

}  // namespace vrx::VRX_ROWS
