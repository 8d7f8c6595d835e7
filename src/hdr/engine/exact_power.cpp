#include "hdr/engine/exact_power.h"

#include <cmath>
#include <limits>

namespace vrx {
namespace {

/// An unevaluated sum high + low, about 106 bits.
struct Wide {
    double high;
    double low;
};

Wide quickSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

Wide exactSum(double a, double b) {
    const double sum = a + b;
    const double part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

Wide exactProduct(double a, double b) {
    constexpr double kSplit = 134217729.0;  // 2^27 + 1
    const double product = a * b;
    const double aBig = kSplit * a - (kSplit * a - a);
    const double bBig = kSplit * b - (kSplit * b - b);
    const double aSmall = a - aBig;
    const double bSmall = b - bBig;
    return {product, ((aBig * bBig - product) + aBig * bSmall + aSmall * bBig) + aSmall * bSmall};
}

Wide operator+(Wide a, Wide b) {
    const Wide high = exactSum(a.high, b.high);
    const Wide low = exactSum(a.low, b.low);
    const Wide sum = quickSum(high.high, high.low + low.high);
    return quickSum(sum.high, sum.low + low.low);
}

Wide operator*(Wide a, Wide b) {
    const Wide product = exactProduct(a.high, b.high);
    return quickSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

Wide operator-(Wide a) { return {-a.high, -a.low}; }

Wide operator/(Wide a, Wide b) {
    const double first = a.high / b.high;
    const Wide rest = a + -(b * Wide{first, 0.0});
    const double second = rest.high / b.high;
    const Wide rest2 = rest + -(b * Wide{second, 0.0});
    return quickSum(first, second) + Wide{rest2.high / b.high, 0.0};
}

constexpr Wide kLn2{0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};

/// ln(base) = k ln 2 + 2 atanh((m - 1) / (m + 1)) with base = m 2^k and m near 1.
Wide logarithm(double base) {
    int k = 0;
    double m = std::frexp(base, &k);
    if (m < 0x1.6a09e667f3bcdp-1) {
        m *= 2.0;
        --k;
    }
    const Wide s = exactSum(m, -1.0) / exactSum(m, 1.0);
    const Wide square = s * s;
    Wide sum{0.0, 0.0};
    for (int term = 45; term >= 1; term -= 2) {
        sum = sum * square + Wide{1.0, 0.0} / Wide{static_cast<double>(term), 0.0};
    }
    const Wide twice = s * sum;
    return kLn2 * Wide{static_cast<double>(k), 0.0} + Wide{2.0 * twice.high, 2.0 * twice.low};
}

/// e^x = 2^k (e^(r / 256))^256 with x = k ln 2 + r.
double exponential(Wide x) {
    constexpr int kHalvings = 8;
    const double k = std::floor(x.high / kLn2.high + 0.5);
    Wide r = x + -(kLn2 * Wide{k, 0.0});
    r = {std::ldexp(r.high, -kHalvings), std::ldexp(r.low, -kHalvings)};
    Wide sum{0.0, 0.0};
    for (int term = 13; term >= 1; --term) {
        sum = (sum + Wide{1.0, 0.0}) * r / Wide{static_cast<double>(term), 0.0};
    }
    // e^x - 1 doubles without losing bits: (1 + s)^2 - 1 = 2 s + s^2.
    for (int i = 0; i < kHalvings; ++i) {
        sum = Wide{2.0 * sum.high, 2.0 * sum.low} + sum * sum;
    }
    sum = sum + Wide{1.0, 0.0};
    return std::ldexp(sum.high, static_cast<int>(k));
}

}  // namespace

double exactPower(double base, double exponent) {
    if (exponent == 0.0 || base == 1.0) return 1.0;
    if (exponent == 1.0) return base;
    const Wide ln = logarithm(base);
    const double estimate = ln.high * exponent;
    if (estimate > 710.0) return std::numeric_limits<double>::infinity();
    if (estimate < -746.0) return 0.0;
    return exponential(ln * Wide{exponent, 0.0});
}

}  // namespace vrx
