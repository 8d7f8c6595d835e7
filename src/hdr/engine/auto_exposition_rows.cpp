// Rows in blocks: colours are looked up one by one, then the arithmetic runs over the block in the compiler's
// vector types, with the instructions that this file is compiled for. VRX_ROWS names the namespace.
//
// The bytes are those of the steps (exposeSteps) in double precision. Faster forms take their place where
// they are sure to round to the same bytes; the reasons stand beside them.
#include "hdr/engine/auto_exposition_rows.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

#include "ground/lanes.h"

namespace vrx::VRX_ROWS {
namespace {

#if defined(__AVX2__)
constexpr std::size_t kLanes = 4;
#else
constexpr std::size_t kLanes = 2;
#endif
constexpr std::size_t kBlock = 64;

using Lanes = double __attribute__((vector_size(kLanes * sizeof(double))));
using Words = std::uint64_t __attribute__((vector_size(kLanes * sizeof(std::uint64_t))));

// Vectors travel by reference only, so that no calling convention depends on the instructions.
#define VRX_INLINE [[gnu::always_inline]] inline

struct Colours {
    float r[kBlock], g[kBlock], b[kBlock];
};

struct Pixels {
    Lanes r, g, b;
};

/// Blue, green and red in the low 24 bits.
using Packed = std::uint32_t[kBlock];

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

// The combined form needs fewer divisions than the steps. How far both can be apart, with e = 2^-53 for each
// rounding, W = X + Y + Z of the pixel, L its luminance after the operator (computed by the same operations
// in both forms) and S = W L / Y; all terms up to the last matrix are positive:
//
//     steps: X, Y, Z: 3 e     W: 5 e     1 / W: 6 e     x, y: 10 e     new X = x L / y: 22 e
//            X / x: 33 e of S     new Z: 36 e of S     a row back, whose |m| are 4.2 at most: 100 e of S
//     combined: constants, products and sums: 10 e of 4.2 W     with the factor L / Y: 50 e of S
//
// W is at most 17 Y (of blue alone it is 16.7), and L at most 1.5: the ends of the range are rounded to
// Singles, whose distance is at least twice that rounding. So the results, times 255, are less than
// 255 * 17 * 1.5 * 150 e = 2^-33 apart. Where one lies closer than the guard to the middle between two
// integers, the steps themselves are taken.
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
    const auto r = reinterpret_cast<Words>(rounded.r) & 0xFF;
    const auto g = reinterpret_cast<Words>(rounded.g) & 0xFF;
    const auto b = reinterpret_cast<Words>(rounded.b) & 0xFF;
    const Words bgr = b | (g << 8) | (r << 16);
    for (std::size_t n = 0; n < kLanes; ++n) packed[i + n] = static_cast<std::uint32_t>(bgr[n]);
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
void exposeBySteps(Packed& packed, const Colours& colours, const RowExposition& exposition,
                   std::size_t begin = 0, std::size_t end = kBlock) {
    for (std::size_t i = begin; i < end; i += kLanes) {
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

#if defined(VRX_LANES)

// The compression by the white point in single precision. The factor from a luminance Y to what is made of
// it, (1 + Y k) / (1 + Y), keeps the chromaticity, so a result is 255 times this factor times one row of the
// product of both matrices, C = sum of m c. With u = 2^-24, each rounding of a Single and each constant held
// as one has a relative error of u at most, and all terms but some of C are positive:
//
//     Y: 3 u (product, two sums)     1 + Y k: 6 u     1 + Y: 4 u     factor: 11 u
//     C: 4 u A, with A = the sum of |m c| (constant, product, two sums)     result: 16 u A factor, and
//     squares of u
//
// The product of the matrices is all but the identity: a row's |m| add up to less than 1.002, and the
// diagonal is more than the rest of its row by 0.998 at least. So the largest colour times 255 times the
// factor is less than 1.003 of the largest result of the pixel, A factor less than 1.006 of it, and the error
// less than 17 u of it. The steps in double precision are within 2^-40 of it. Results farther than 20 u of
// the largest one from the middle between two integers are rounded to the same byte by both; groups with a
// nearer one are done again by the steps. Without values beyond 2^60 nothing overflows, and what underflows
// is lost beside 1.
constexpr float kSinglesGuard = 20 * 0x1p-24F;
constexpr float kMostLuminance = 0x1p60F;
constexpr std::size_t kGroup = 16;

struct Certainty {
    Floats farthest;   ///< from the nearest integer, of all results held to bytes
    Floats largest;    ///< result before it is held
    Floats brightest;  ///< luminance
};

VRX_INLINE Floats allOf(float value) { return VRX_LANES(set1_ps)(value); }

VRX_INLINE void dot(Floats& result, const double (&m)[3], const Floats& r, const Floats& g, const Floats& b) {
    const Floats first = VRX_LANES(mul_ps)(allOf(static_cast<float>(m[0])), r);
    const Floats second = VRX_LANES(mul_ps)(allOf(static_cast<float>(m[1])), g);
    const Floats third = VRX_LANES(mul_ps)(allOf(static_cast<float>(m[2])), b);
    result = VRX_LANES(add_ps)(VRX_LANES(add_ps)(first, second), third);
}

/// One component to integers 0 to 255.
VRX_INLINE void toByte(Integers& byte, const Floats& component, const Floats& factor, Certainty& certainty) {
    const Floats result = VRX_LANES(mul_ps)(component, factor);
    certainty.largest = VRX_LANES(max_ps)(result, certainty.largest);
    const Floats held = VRX_LANES(min_ps)(VRX_LANES(max_ps)(result, VRX_LANES(setzero_ps)()), allOf(255.0F));
    byte = VRX_LANES(cvtps_epi32)(held);
    certainty.farthest = VRX_LANES(max_ps)(restOf(held, byte), certainty.farthest);
}

VRX_INLINE void exposeSingles(std::uint32_t* packed, const Colours& colours, std::size_t i,
                              const Floats& whitePoint, Certainty& certainty) {
    const Floats one = allOf(1.0F);
    const Floats r = VRX_LANES(loadu_ps)(colours.r + i);
    const Floats g = VRX_LANES(loadu_ps)(colours.g + i);
    const Floats b = VRX_LANES(loadu_ps)(colours.b + i);
    Floats luminance;
    dot(luminance, kRgbToY, r, g, b);
    certainty.brightest = VRX_LANES(max_ps)(luminance, certainty.brightest);
    const Floats above = VRX_LANES(add_ps)(one, VRX_LANES(mul_ps)(luminance, whitePoint));
    const Floats factor = VRX_LANES(div_ps)(above, VRX_LANES(add_ps)(one, luminance));
    Floats component;
    Integers red, green, blue;
    dot(component, kToR.m, r, g, b);
    toByte(red, component, factor, certainty);
    dot(component, kToG.m, r, g, b);
    toByte(green, component, factor, certainty);
    dot(component, kToB.m, r, g, b);
    toByte(blue, component, factor, certainty);
    const Integers upper = VRX_LANES(slli_epi32)(red, 16);
    const Integers middle = VRX_LANES(slli_epi32)(green, 8);
    storeIntegers(packed + i, eitherOf(blue, eitherOf(middle, upper)));
}

/// Lane by lane: each holds some pixels, and its largest result is that of one of them.
VRX_INLINE bool isCertain(const Certainty& certainty) {
    const Floats error = VRX_LANES(mul_ps)(allOf(kSinglesGuard), certainty.largest);
    const Floats reach = VRX_LANES(add_ps)(certainty.farthest, error);
    const Integers doubt = eitherOf(bitsOf(notLess(reach, allOf(0.5F))),
                                    bitsOf(notLess(certainty.brightest, allOf(kMostLuminance))));
    return VRX_LANES(movemask_epi8)(doubt) == 0;
}

/// A block by groups; the exposition's white point is at most kMostLuminance.
void exposeBySingles(Packed& packed, const Colours& colours, const RowExposition& exposition) {
    const Floats whitePoint = allOf(static_cast<float>(exposition.whitePoint));
    for (std::size_t begin = 0; begin < kBlock; begin += kGroup) {
        Certainty certainty{VRX_LANES(setzero_ps)(), VRX_LANES(setzero_ps)(), VRX_LANES(setzero_ps)()};
        for (std::size_t i = begin; i < begin + kGroup; i += kFloatLanes) {
            exposeSingles(packed, colours, i, whitePoint, certainty);
        }
        if (!isCertain(certainty)) {
            exposeBySteps<RowOperator::WhitePoint>(packed, colours, exposition, begin, begin + kGroup);
        }
    }
}

#endif

/// 4 bytes at a time, of which the next pixel overwrites the last.
void write(const Packed& packed, std::size_t count, std::uint8_t* bgr) {
    for (std::size_t i = 0; i + 1 < count; ++i, bgr += 3) std::memcpy(bgr, &packed[i], 4);
    std::memcpy(bgr, &packed[count - 1], 3);
}

template <RowOperator op>
VRX_INLINE void expose(Packed& packed, const Colours& colours, const RowExposition& exposition) {
#if defined(VRX_LANES)
    if (op == RowOperator::WhitePoint && exposition.whitePoint <= double{kMostLuminance}) {
        return exposeBySingles(packed, colours, exposition);
    }
#endif
    if (op == RowOperator::Keep || !exposeCombined<op>(packed, colours, exposition)) {
        exposeBySteps<op>(packed, colours, exposition);
    }
}

template <RowOperator op>
void exposeRowWith(const ExposureRow& row, const RowExposition& exposition, std::uint8_t* bgr) {
    Colours colours;
    Packed packed;
    for (std::size_t x = 0; x < row.width; x += kBlock) {
        const std::size_t count = std::min(kBlock, row.width - x);
        fetch(colours, row, x, count);
        expose<op>(packed, colours, exposition);
        write(packed, count, bgr + 3 * x);
    }
}

/// Widens the range by the luminances of a block.
void widenByBlock(RowLuminance& luminance, const ExposureRow& row, std::size_t x, std::size_t count) {
    Colours colours;
    Lanes minimum = Lanes{} + luminance.minimum;
    Lanes maximum = Lanes{} + luminance.maximum;
    fetch(colours, row, x, count);
    for (std::size_t i = 0; i < kBlock; i += kLanes) {
        Pixels pixels;
        Lanes value;
        load(pixels, colours, i);
        // The table's values are never negative, so a pixel without luminance is black, and 0 here as well.
        dot(value, kRgbToY, pixels.r, pixels.g, pixels.b);
        smaller(minimum, value, minimum);
        larger(maximum, value, maximum);
    }
    for (std::size_t i = 0; i < kLanes; ++i) {
        luminance.minimum = std::min(luminance.minimum, static_cast<double>(minimum[i]));
        luminance.maximum = std::max(luminance.maximum, static_cast<double>(maximum[i]));
    }
}

#if defined(__SSE2__)

/// The least and the most bytes of a block of four planes.
struct Corners {
    std::uint8_t least[4];
    std::uint8_t most[4];
};

/// Two planes' bytes side by side, reduced to half by `reduce`, down to one of each plane.
template <class Reduce>
VRX_INLINE void reducePlanes(const __m128i (&planes)[4], std::uint8_t (&bytes)[4], Reduce reduce) {
    const __m128i rg =
        reduce(_mm_unpacklo_epi8(planes[0], planes[1]), _mm_unpackhi_epi8(planes[0], planes[1]));
    const __m128i be =
        reduce(_mm_unpacklo_epi8(planes[2], planes[3]), _mm_unpackhi_epi8(planes[2], planes[3]));
    __m128i all = reduce(_mm_unpacklo_epi16(rg, be), _mm_unpackhi_epi16(rg, be));
    all = reduce(all, _mm_srli_si128(all, 8));
    all = reduce(all, _mm_srli_si128(all, 4));
    const int four = _mm_cvtsi128_si32(all);
    std::memcpy(bytes, &four, sizeof four);
}

VRX_INLINE void findCorners(Corners& corners, const ExposureRow& row, std::size_t x) {
    const std::uint8_t* const planes[] = {row.r + x, row.g + x, row.b + x, row.e + x};
    __m128i least[4], most[4];
    for (std::size_t c = 0; c < 4; ++c) {
        const auto* bytes = reinterpret_cast<const __m128i*>(planes[c]);
        least[c] = most[c] = _mm_loadu_si128(bytes);
        for (std::size_t i = 1; i < kBlock / sizeof(__m128i); ++i) {
            const __m128i more = _mm_loadu_si128(bytes + i);
            least[c] = _mm_min_epu8(least[c], more);
            most[c] = _mm_max_epu8(most[c], more);
        }
    }
    reducePlanes(least, corners.least, [](__m128i a, __m128i b) { return _mm_min_epu8(a, b); });
    reducePlanes(most, corners.most, [](__m128i a, __m128i b) { return _mm_max_epu8(a, b); });
}

VRX_INLINE double luminanceOf(const ExposureRow& row, const std::uint8_t (&rgbe)[4]) {
    const float* singles = row.singles + (std::size_t{rgbe[3]} << 8);
    return kRgbToY[0] * singles[rgbe[0]] + kRgbToY[1] * singles[rgbe[1]] + kRgbToY[2] * singles[rgbe[2]];
}

/// Whether no pixel of a whole block can widen the range. The table rises with mantissas and exponents alike,
/// or falls with both, and products by positive factors, sums and roundings keep order: so no luminance is
/// outside those of the two colours made of the least and of the most bytes.
bool liesWithin(const RowLuminance& luminance, const ExposureRow& row, std::size_t x) {
    Corners corners;
    findCorners(corners, row, x);
    const double one = luminanceOf(row, corners.least);
    const double other = luminanceOf(row, corners.most);
    return std::min(one, other) >= luminance.minimum && std::max(one, other) <= luminance.maximum;
}

#else

bool liesWithin(const RowLuminance&, const ExposureRow&, std::size_t) { return false; }

#endif

}  // namespace

void widenLuminance(const ExposureRow& row, RowLuminance& luminance) {
    for (std::size_t x = 0; x < row.width; x += kBlock) {
        const std::size_t count = std::min(kBlock, row.width - x);
        if (count < kBlock || !liesWithin(luminance, row, x)) widenByBlock(luminance, row, x, count);
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
