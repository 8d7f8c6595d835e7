// Rows in blocks: colours are looked up one by one, then the arithmetic runs over the block in the compiler's
// vector types, with the instructions that this file is compiled for. VRX_ROWS names the namespace.
//
// The bytes are those of the steps (exposeSteps) in double precision. Faster forms take their place where
// they are sure to round to the same bytes; the reasons stand beside them.
#include "hdr/engine/auto_exposition_rows.h"

#include <algorithm>
#include <cstring>

#include "ground/lanes.h"
#include "hdr/engine/exposure_colours.h"
#include "hdr/engine/modHDR.h"

namespace vrx::VRX_ROWS {
namespace {

/// Blue, green and red in the low 24 bits.
using Packed = std::uint32_t[kBlock];

/// One row of the product of both matrices, RGB to XYZ and back, times 255. What is done to XYZ in between is
/// a factor that all three have in common, for the chromaticity stays: the product does for both.
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

// The combined form needs fewer divisions than the steps. How far both can be apart:
//
// Each rounding is off by e = 2^-53 of its result at most; squares of e are left out. A product or a quotient
// has the errors of both sides and its own e, a sum of positive terms the larger of their errors and its own
// e. X, Y, Z and W = X + Y + Z are the pixel's without any rounding, L is the luminance after the operator as
// the steps have it, and S = W L / Y, so that the new X, L and the new Z add up to S. The steps:
//
//     X, Y, Z: 3 e (product, two sums)        W: 5 e        1 / W: 6 e        x = X / W and y = Y / W: 10 e
//     new X = x L / y: 10 + 10 + 2 = 22 e of itself        new X / x: 22 + 10 + 1 = 33 e of S
//     new Z = new X / x - new X - L: 33 + 22 + 2 = 57 e of S at most
//     a row back: 100 e of S at most. Of red, the worst, |m| is 2.6, 1.2 and 0.4 for X, L and Z:
//         2.6 * 22 + 0.4 * 57 from X and Z, 3 * 2.6 for products and sums, 2.6 for 255: 91 e of S
//
// The combined form:
//
//     the constants: 4 e (product, two sums, 255), with products and sums of the colours 7 e of the sum of
//         |m| X, |m| Y and |m| Z, which is 2.6 W at most
//     factor L / Y: 4 e for Stretch (Y, quotient). For WhitePoint it is (1 + Y k) / (1 + Y), with the very
//         sums of which the steps make L by a product with Y and a quotient: 3 + 2 + 1 = 6 e
//     result: 7 + 6 + 1 = 14 e of 2.6 S, so 37 e of S
//
// W is at most 17 Y (of blue alone it is 16.7). L is at most 1 but for roundings with WhitePoint, and 2 with
// Stretch: the ends of the range are rounded to Singles, and the largest luminance can lie above its Single
// by as much as the two Singles are apart. So the results, times 255, are less than
// 255 * 17 * 2 * (100 + 37) e < 2^-32 apart. Where one lies closer than the guard to the middle between two
// integers, the steps themselves are taken.
constexpr double kGuard = 0x1p-30;

// Added to a value in 0 .. 255, leaves it rounded half to even in the lowest bits.
constexpr double kRounder = 0x1.8p52;

VRX_INLINE void hold(Doubles& value) {
    larger(value, value, Doubles{});
    smaller(value, value, Doubles{} + 255.0);
}

/// The bytes of pixels already held and rounded, blue, green and red in the low 24 bits.
VRX_INLINE void pack(Packed& packed, std::size_t i, const Pixels& rounded) {
    const auto r = reinterpret_cast<DoubleBits>(rounded.r) & 0xFF;
    const auto g = reinterpret_cast<DoubleBits>(rounded.g) & 0xFF;
    const auto b = reinterpret_cast<DoubleBits>(rounded.b) & 0xFF;
    const DoubleBits bgr = b | (g << 8) | (r << 16);
    for (std::size_t n = 0; n < kDoubleLanes; ++n) packed[i + n] = static_cast<std::uint32_t>(bgr[n]);
}

template <RowOperator op>
VRX_INLINE void operate(Doubles& luminance, const RowExposition& exposition) {
    if constexpr (op == RowOperator::WhitePoint) {
        luminance = luminance * (1.0 + luminance * exposition.whitePoint) / (1.0 + luminance);
    } else if constexpr (op == RowOperator::Stretch) {
        luminance = (luminance - exposition.minimum) / exposition.span;
    }
}

/// The steps themselves: RGB to Yxy, operator, Yxy to RGB.
template <RowOperator op>
VRX_INLINE void exposeSteps(Pixels& pixels, const RowExposition& exposition) {
    const Doubles zero{};
    Doubles bigX, bigY, bigZ;
    dot(bigX, kRgbToX, pixels.r, pixels.g, pixels.b);
    dot(bigY, kRgbToY, pixels.r, pixels.g, pixels.b);
    dot(bigZ, kRgbToZ, pixels.r, pixels.g, pixels.b);
    const Doubles sum = bigX + bigY + bigZ;
    const Doubles inverse = 1.0 / sum;
    const Doubles x = sum > 0.0 ? bigX * inverse : zero;
    const Doubles y = sum > 0.0 ? bigY * inverse : zero;
    Doubles luminance = sum > 0.0 ? bigY : zero;

    operate<op>(luminance, exposition);

    const auto coloured = (luminance > 0.0) & (x > 0.0) & (y > 0.0);
    bigX = coloured ? x * luminance / y : zero;
    bigZ = coloured ? bigX / x - bigX - luminance : zero;
    dot(pixels.r, kXyzToR, bigX, luminance, bigZ);
    dot(pixels.g, kXyzToG, bigX, luminance, bigZ);
    dot(pixels.b, kXyzToB, bigX, luminance, bigZ);
}

VRX_INLINE void round(Doubles& component) {
    component = component * 255.0;
    hold(component);
    component = component + kRounder;
}

template <RowOperator op>
void exposeBySteps(Packed& packed, const Colours& colours, const RowExposition& exposition,
                   std::size_t begin = 0, std::size_t end = kBlock) {
    for (std::size_t i = begin; i < end; i += kDoubleLanes) {
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
VRX_INLINE void factorOf(Doubles& factor, Doubles& lowest, const Doubles& luminance,
                         const RowExposition& exposition) {
    if constexpr (op == RowOperator::WhitePoint) {
        factor = (1.0 + luminance * exposition.whitePoint) / (1.0 + luminance);
    } else {
        Doubles after = luminance;
        operate<op>(after, exposition);
        smaller(lowest, after, lowest);
        Doubles divisor;
        larger(divisor, luminance, Doubles{} + 1.0e-300);
        factor = after / divisor;
    }
}

/// Rounds a component and raises `farthest` to how far it was from its integer.
VRX_INLINE void round(Doubles& component, Doubles& farthest) {
    hold(component);
    const Doubles rounded = component + kRounder;
    const Doubles distance = component - (rounded - kRounder);
    larger(farthest, distance, farthest);
    larger(farthest, -distance, farthest);
    component = rounded;
}

/// The same up to rounding; false where rounding could tell the difference, and where a luminance comes out
/// below 0, whose chromaticity the steps give up.
template <RowOperator op>
bool exposeCombined(Packed& packed, const Colours& colours, const RowExposition& exposition) {
    Doubles farthest{};
    Doubles lowest{};
    for (std::size_t i = 0; i < kBlock; i += kDoubleLanes) {
        Pixels in, out;
        Doubles luminance, factor;
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
    for (std::size_t i = 0; i < kDoubleLanes; ++i)
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
// nearer one are done again by the steps. Without values beyond 2^60 nothing overflows. What underflows is
// lost beside 1 in both sums of the factor, and as a result is far below the first middle, 0.5.
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

}  // namespace

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
