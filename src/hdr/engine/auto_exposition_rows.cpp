// Rows in blocks: colours are looked up one by one, then the arithmetic runs over the block in the compiler's
// vector types, with the instructions that this file is compiled for. VRX_ROWS names the namespace.
#include "hdr/engine/auto_exposition_rows.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace vrx::VRX_ROWS {
namespace {

#if defined(__AVX2__)
constexpr std::size_t kLanes = 4;
#else
constexpr std::size_t kLanes = 2;
#endif
constexpr std::size_t kBlock = 64;

using Lanes = double __attribute__((vector_size(kLanes * sizeof(double))));
using Integers = std::uint64_t __attribute__((vector_size(kLanes * sizeof(std::uint64_t))));

// Vectors travel by reference only, so that no calling convention depends on the instructions.
#define VRX_INLINE [[gnu::always_inline]] inline

struct Colours {
    float r[kBlock], g[kBlock], b[kBlock];
};

struct Pixels {
    Lanes r, g, b;
};

using Packed = std::uint64_t[kBlock];

// Primaries of the picture to CIE XYZ and back, as Singles.
constexpr double kRgbToX[] = {0.5141364F, 0.32387858F, 0.16036376F};
constexpr double kRgbToY[] = {0.265068F, 0.67023426F, 0.06409157F};
constexpr double kRgbToZ[] = {0.0241188F, 0.1228178F, 0.84442663F};
constexpr double kXyzToR[] = {2.5651F, -1.1665F, -0.3986F};
constexpr double kXyzToG[] = {-1.0217F, 1.9777F, 0.0439F};
constexpr double kXyzToB[] = {0.0753F, -0.2543F, 1.1892F};

/// One row of the product of both, times 255, for colours whose chromaticity stays: RGB to XYZ, a common
/// factor, XYZ to RGB.
struct CombinedRow {
    double m[3];

    constexpr explicit CombinedRow(const double (&back)[3]) : m{} {
        for (int i = 0; i < 3; ++i) {
            m[i] = 255.0 * (back[0] * kRgbToX[i] + back[1] * kRgbToY[i] + back[2] * kRgbToZ[i]);
        }
    }
};
constexpr CombinedRow kToR(kXyzToR);
constexpr CombinedRow kToG(kXyzToG);
constexpr CombinedRow kToB(kXyzToB);

// The combined form needs fewer divisions than the steps and comes out within some 50 units of the last place
// of X + Y + Z, which is at most 17 luminances; luminances are at most 1 after both operators. Where 255
// times this much could decide a rounding, the steps themselves are taken.
constexpr double kGuard = 0x1p-30;

// Added to a value in 0 .. 255, leaves it rounded half to even in the lowest bits.
constexpr double kRounder = 0x1.8p52;

VRX_INLINE void dot(Lanes& result, const double (&m)[3], const Lanes& a, const Lanes& b, const Lanes& c) {
    result = m[0] * a + m[1] * b + m[2] * c;
}

// The three operations for which the compiler does not find the instruction by itself. Of two values that do
// not compare, the second is taken.
VRX_INLINE void load(Lanes& lanes, const float* values) {
#if defined(__AVX2__)
    lanes = _mm256_cvtps_pd(_mm_loadu_ps(values));
#elif defined(__SSE2__)
    lanes = _mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(values))));
#else
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = values[i];
#endif
}

VRX_INLINE void smaller(Lanes& result, const Lanes& a, const Lanes& b) {
#if defined(__AVX2__)
    result = _mm256_min_pd(a, b);
#elif defined(__SSE2__)
    result = _mm_min_pd(a, b);
#else
    result = a < b ? a : b;
#endif
}

VRX_INLINE void larger(Lanes& result, const Lanes& a, const Lanes& b) {
#if defined(__AVX2__)
    result = _mm256_max_pd(a, b);
#elif defined(__SSE2__)
    result = _mm_max_pd(a, b);
#else
    result = a > b ? a : b;
#endif
}

VRX_INLINE void hold(Lanes& value) {
    larger(value, value, Lanes{});
    smaller(value, value, Lanes{} + 255.0);
}

VRX_INLINE void load(Pixels& pixels, const Colours& colours, std::size_t i) {
    load(pixels.r, colours.r + i);
    load(pixels.g, colours.g + i);
    load(pixels.b, colours.b + i);
}

/// The bytes of pixels already held and rounded, blue, green and red in the low 24 bits.
VRX_INLINE void pack(Packed& packed, std::size_t i, const Pixels& rounded) {
    const auto r = reinterpret_cast<Integers>(rounded.r) & 0xFF;
    const auto g = reinterpret_cast<Integers>(rounded.g) & 0xFF;
    const auto b = reinterpret_cast<Integers>(rounded.b) & 0xFF;
    const Integers bgr = b | (g << 8) | (r << 16);
    std::memcpy(&packed[i], &bgr, sizeof bgr);
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
void fetch(Colours& colours, const ExposureRow& row, std::size_t x, std::size_t count) {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) fetchEight(colours, i, row, x + i);
    for (; i < count; ++i) fetchPixel(colours, i, row, x + i, singlesAt(row, x + i));
    for (; i < kBlock; ++i) fetchPixel(colours, i, row, x + count - 1, singlesAt(row, x + count - 1));
}

template <RowOperator op>
VRX_INLINE void operate(Lanes& luminance, const RowExposition& exposition) {
    if constexpr (op == RowOperator::WhitePoint) {
        luminance = luminance * (1.0 + luminance * exposition.whitePoint) / (1.0 + luminance);
    } else if constexpr (op == RowOperator::Stretch) {
        luminance = (luminance - exposition.minimum) / exposition.span;
    }
}

/// The steps themselves: RGB to Yxy, operator, Yxy to RGB.
template <RowOperator op>
VRX_INLINE void exposeSteps(Pixels& pixels, const RowExposition& exposition) {
    const Lanes zero{};
    Lanes bigX, bigY, bigZ;
    dot(bigX, kRgbToX, pixels.r, pixels.g, pixels.b);
    dot(bigY, kRgbToY, pixels.r, pixels.g, pixels.b);
    dot(bigZ, kRgbToZ, pixels.r, pixels.g, pixels.b);
    const Lanes sum = bigX + bigY + bigZ;
    const Lanes inverse = 1.0 / sum;
    const Lanes x = sum > 0.0 ? bigX * inverse : zero;
    const Lanes y = sum > 0.0 ? bigY * inverse : zero;
    Lanes luminance = sum > 0.0 ? bigY : zero;

    operate<op>(luminance, exposition);

    const auto coloured = (luminance > 0.0) & (x > 0.0) & (y > 0.0);
    bigX = coloured ? x * luminance / y : zero;
    bigZ = coloured ? bigX / x - bigX - luminance : zero;
    dot(pixels.r, kXyzToR, bigX, luminance, bigZ);
    dot(pixels.g, kXyzToG, bigX, luminance, bigZ);
    dot(pixels.b, kXyzToB, bigX, luminance, bigZ);
}

VRX_INLINE void round(Lanes& component) {
    component = component * 255.0;
    hold(component);
    component = component + kRounder;
}

template <RowOperator op>
void exposeBySteps(Packed& packed, const Colours& colours, const RowExposition& exposition) {
    for (std::size_t i = 0; i < kBlock; i += kLanes) {
        Pixels pixels;
        load(pixels, colours, i);
        exposeSteps<op>(pixels, exposition);
        round(pixels.r);
        round(pixels.g);
        round(pixels.b);
        pack(packed, i, pixels);
    }
}

/// The factor from a luminance to what the operator makes of it, and in `lowest` the least result so far.
template <RowOperator op>
VRX_INLINE void factorOf(Lanes& factor, Lanes& lowest, const Lanes& luminance,
                         const RowExposition& exposition) {
    if constexpr (op == RowOperator::WhitePoint) {
        factor = (1.0 + luminance * exposition.whitePoint) / (1.0 + luminance);
    } else {
        Lanes after = luminance;
        operate<op>(after, exposition);
        smaller(lowest, after, lowest);
        Lanes divisor;
        larger(divisor, luminance, Lanes{} + 1.0e-300);
        factor = after / divisor;
    }
}

/// Rounds a component and raises `farthest` to how far it was from its integer.
VRX_INLINE void round(Lanes& component, Lanes& farthest) {
    hold(component);
    const Lanes rounded = component + kRounder;
    const Lanes distance = component - (rounded - kRounder);
    larger(farthest, distance, farthest);
    larger(farthest, -distance, farthest);
    component = rounded;
}

/// The same up to rounding; false where rounding could tell the difference, as it always could below 0.
template <RowOperator op>
bool exposeCombined(Packed& packed, const Colours& colours, const RowExposition& exposition) {
    Lanes farthest{};
    Lanes lowest{};
    for (std::size_t i = 0; i < kBlock; i += kLanes) {
        Pixels in, out;
        Lanes luminance, factor;
        load(in, colours, i);
        dot(luminance, kRgbToY, in.r, in.g, in.b);
        factorOf<op>(factor, lowest, luminance, exposition);
        dot(out.r, kToR.m, in.r, in.g, in.b);
        dot(out.g, kToG.m, in.r, in.g, in.b);
        dot(out.b, kToB.m, in.r, in.g, in.b);
        out = {out.r * factor, out.g * factor, out.b * factor};
        round(out.r, farthest);
        round(out.g, farthest);
        round(out.b, farthest);
        pack(packed, i, out);
    }
    bool certain = true;
    for (std::size_t i = 0; i < kLanes; ++i)
        certain = certain && lowest[i] >= 0.0 && farthest[i] < 0.5 - kGuard;
    return certain;
}

/// 4 bytes at a time, of which the next pixel overwrites the last.
void write(const Packed& packed, std::size_t count, std::uint8_t* bgr) {
    for (std::size_t i = 0; i + 1 < count; ++i, bgr += 3) std::memcpy(bgr, &packed[i], 4);
    std::memcpy(bgr, &packed[count - 1], 3);
}

template <RowOperator op>
void exposeRowWith(const ExposureRow& row, const RowExposition& exposition, std::uint8_t* bgr) {
    Colours colours;
    Packed packed;
    for (std::size_t x = 0; x < row.width; x += kBlock) {
        const std::size_t count = std::min(kBlock, row.width - x);
        fetch(colours, row, x, count);
        if (op == RowOperator::Keep || !exposeCombined<op>(packed, colours, exposition)) {
            exposeBySteps<op>(packed, colours, exposition);
        }
        write(packed, count, bgr + 3 * x);
    }
}

}  // namespace

void widenLuminance(const ExposureRow& row, RowLuminance& luminance) {
    Colours colours;
    Lanes minimum = Lanes{} + luminance.minimum;
    Lanes maximum = Lanes{} + luminance.maximum;
    for (std::size_t x = 0; x < row.width; x += kBlock) {
        fetch(colours, row, x, std::min(kBlock, row.width - x));
        for (std::size_t i = 0; i < kBlock; i += kLanes) {
            Pixels pixels;
            Lanes value;
            load(pixels, colours, i);
            // The table's values are never negative, so a pixel without luminance is black, and 0 here as
            // well.
            dot(value, kRgbToY, pixels.r, pixels.g, pixels.b);
            smaller(minimum, value, minimum);
            larger(maximum, value, maximum);
        }
    }
    for (std::size_t i = 0; i < kLanes; ++i) {
        luminance.minimum = std::min(luminance.minimum, static_cast<double>(minimum[i]));
        luminance.maximum = std::max(luminance.maximum, static_cast<double>(maximum[i]));
    }
}

void exposeRow(const ExposureRow& row, const RowExposition& exposition, std::uint8_t* bgr) {
    switch (exposition.op) {
        case RowOperator::WhitePoint:
            return exposeRowWith<RowOperator::WhitePoint>(row, exposition, bgr);
        case RowOperator::Stretch:
            return exposeRowWith<RowOperator::Stretch>(row, exposition, bgr);
        case RowOperator::Keep:
            return exposeRowWith<RowOperator::Keep>(row, exposition, bgr);
    }
}

}  // namespace vrx::VRX_ROWS
