#include "hdr/engine/tone_tables.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "ground/error.h"
#include "ground/rounding.h"
#include "hdr/engine/exact_power.h"

namespace vrx {
namespace {

constexpr double kMaxSingle = std::numeric_limits<float>::max();

// v falls apart into a factor of the mantissa and one of the exponent, so 512 powers and 65,536 products give
// all entries. A product is a few units of the last place away from the power itself; only where that could
// decide a rounding is the power itself taken. The guard is far wider than any run-time library's error.
constexpr double kGuard = 0x1p-44;

struct Entry {
    std::uint8_t byte;
    float single;
};

struct Factors {
    std::array<double, 256> mantissa;
    std::array<double, 256> exponent;
};

Entry entryOf(double v) {
    return {static_cast<std::uint8_t>(roundHalfEven(std::clamp(v, 0.0, 255.0))),
            static_cast<float>(std::min(v / 255.0, kMaxSingle))};
}

/// The formula itself. `linear` is the exposed linear value of the entry.
Entry exactEntry(double linear, double inverseGamma) {
    if (linear == 0.0 && inverseGamma < 0.0) throw platformError(Platform::InvalidCall);
    const double v = linear > 0.0 ? exactPower(linear, inverseGamma) : (inverseGamma == 0.0 ? 1.0 : 0.0);
    if (std::isinf(v)) throw platformError(Platform::Overflow);
    return entryOf(v);
}

double linearOf(int exponent, int mantissa, double multiplier) {
    return (mantissa + 0.5) * (std::ldexp(1.0, exponent - 136) * multiplier);
}

/// (mantissa + 0.5) ^ power. By logarithms, which are there once: the power of some run-time libraries takes
/// long. A logarithm of 8 at most is 2^-50 off, the product twice that, so far within the guard.
double powerOfMantissa(int mantissa, double power) {
    static const auto logarithms = [] {
        std::array<double, 256> values;
        for (int i = 0; i < 256; ++i) values[static_cast<std::size_t>(i)] = std::log2(i + 0.5);
        return values;
    }();
    if (std::abs(power) > 1.0) return std::pow(mantissa + 0.5, power);
    return std::exp2(power * logarithms[static_cast<std::size_t>(mantissa)]);
}

Factors factorsOf(double multiplier, double inverseGamma) {
    Factors factors;
    const double ofMultiplier = std::pow(multiplier, inverseGamma);
    for (int i = 0; i < 256; ++i) {
        factors.mantissa[static_cast<std::size_t>(i)] = ofMultiplier * powerOfMantissa(i, inverseGamma);
        factors.exponent[static_cast<std::size_t>(i)] = std::exp2((i - 136) * inverseGamma);
    }
    return factors;
}

/// Whether every product is a normal number, so that its relative error is that of its factors.
bool productsAreNormal(const Factors& factors) {
    const auto [lowM, highM] = std::minmax_element(factors.mantissa.begin(), factors.mantissa.end());
    const auto [lowE, highE] = std::minmax_element(factors.exponent.begin(), factors.exponent.end());
    return *lowM > 0x1p-500 && *lowE > 0x1p-500 && *highM < 0x1p500 && *highE < 0x1p500;
}

/// v held to 255 and rounded half to even: adding 2^52 + 2^51 leaves the integer in the lowest bits.
std::uint64_t byteBits(double v) { return std::bit_cast<std::uint64_t>(std::min(v, 255.0) + 0x1.8p52); }

/// One exponent's bytes from the factors; false where one of them lies within the guard of a rounding. Most
/// exponents are black or white as a whole.
bool fillBytes(const Factors& factors, double exponentFactor, std::uint8_t* bytes) {
    const auto [least, most] = std::minmax(factors.mantissa.front(), factors.mantissa.back());
    const bool white = least * exponentFactor > 256.0;
    if (white || most * exponentFactor < 0.25) {
        std::memset(bytes, white ? 255 : 0, 256);
        return true;
    }
    std::uint64_t doubt = 0;
    for (std::size_t m = 0; m < 256; ++m) {
        const double v = factors.mantissa[m] * exponentFactor;
        const std::uint64_t byte = byteBits(v * (1.0 - kGuard));
        doubt |= byte ^ byteBits(v * (1.0 + kGuard));
        bytes[m] = static_cast<std::uint8_t>(byte);
    }
    return doubt == 0;
}

/// The same for the Singles. Products stand for quotients: the rounding that they add is nothing beside the
/// guard.
bool fillSingles(const Factors& factors, double exponentFactor, float* singles) {
    std::uint32_t doubt = 0;
    for (std::size_t m = 0; m < 256; ++m) {
        const double v = factors.mantissa[m] * exponentFactor;
        const auto below = static_cast<float>(std::min(v * ((1.0 - kGuard) / 255.0), kMaxSingle));
        const auto above = static_cast<float>(std::min(v * ((1.0 + kGuard) / 255.0), kMaxSingle));
        doubt |= std::bit_cast<std::uint32_t>(below) ^ std::bit_cast<std::uint32_t>(above);
        singles[m] = below;
    }
    return doubt == 0;
}

/// What a table is made of.
struct Formula {
    double multiplier;
    double inverseGamma;

    [[nodiscard]] Entry entry(int exponent, int mantissa) const {
        return exactEntry(linearOf(exponent, mantissa, multiplier), inverseGamma);
    }
};

/// One exponent's values of one kind, those that lie within the guard of a rounding by the formula itself.
template <class Value>
void settleDoubts(const Factors& factors, const Formula& formula, int exponent, Value Entry::*value,
                  Value* values) {
    for (int m = 0; m < 256; ++m) {
        const auto i = static_cast<std::size_t>(m);
        const double v = factors.mantissa[i] * factors.exponent[static_cast<std::size_t>(exponent)];
        const Value below = entryOf(v * (1.0 - kGuard)).*value;
        const Value above = entryOf(v * (1.0 + kGuard)).*value;
        values[i] = below == above ? below : formula.entry(exponent, m).*value;
    }
}

/// The same without factors to begin with.
template <class Value>
void fillExactly(const Formula& formula, int exponent, Value Entry::*value, Value* values) {
    for (int m = 0; m < 256; ++m) values[m] = formula.entry(exponent, m).*value;
}

}  // namespace

float exposureMultiplier(float exposure) {
    if (std::isnan(exposure)) return 0.0F;
    const double stops = std::clamp(static_cast<double>(exposure), -200.0, 200.0);
    return static_cast<float>(std::min(exactPower(2.0, stops), kMaxSingle));
}

void ToneTables::build(float multiplier, float inverseGamma, ToneParts parts) {
    const Formula formula{multiplier, inverseGamma};
    const Factors factors = factorsOf(formula.multiplier, formula.inverseGamma);
    const bool fast = multiplier > 0.0F && productsAreNormal(factors);
    if (!fast) {
        // Everything that can fail is in the largest linear value or, below 0, in the smallest.
        const int corner = inverseGamma < 0.0F ? 0 : 255;
        static_cast<void>(formula.entry(corner, corner));
    }
    if (!entries_) entries_ = std::make_unique_for_overwrite<Entries>();
    for (int e = 0; e < 256; ++e) {
        const double factor = factors.exponent[static_cast<std::size_t>(e)];
        std::uint8_t* bytes = entries_->bytes.data() + 256 * e;
        if (!fast) {
            fillExactly(formula, e, &Entry::byte, bytes);
        } else if (!fillBytes(factors, factor, bytes)) {
            settleDoubts(factors, formula, e, &Entry::byte, bytes);
        }
        if (parts == ToneParts::Bytes) continue;
        float* singles = entries_->singles.data() + 256 * e;
        if (!fast) {
            fillExactly(formula, e, &Entry::single, singles);
        } else if (!fillSingles(factors, factor, singles)) {
            settleDoubts(factors, formula, e, &Entry::single, singles);
        }
    }
}

}  // namespace vrx
