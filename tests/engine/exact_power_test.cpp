// The power function against cases that arithmetic decides, and against long double.
#include "hdr/engine/exact_power.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace vrx::test {
namespace {

static_assert(std::numeric_limits<long double>::digits >= 64);

TEST(ExactPower, OfZeroAndOneIsExact) {
    EXPECT_EQ(exactPower(7.25, 0.0), 1.0);
    EXPECT_EQ(exactPower(1.0, 0.45), 1.0);
    EXPECT_EQ(exactPower(7.25, 1.0), 7.25);
}

TEST(ExactPower, RootsOfPerfectPowersAreExact) {
    for (int i = 1; i <= 2000; ++i) {
        const double root = i / 4.0;
        EXPECT_EQ(exactPower(root * root, 0.5), root);
        EXPECT_EQ(exactPower(root * root * root * root, 0.25), root);
    }
}

TEST(ExactPower, PowersOfTwoAreExact) {
    for (int i = -1000; i <= 1000; ++i) {
        EXPECT_EQ(exactPower(2.0, i), std::ldexp(1.0, i));
        EXPECT_EQ(exactPower(0.5, i), std::ldexp(1.0, -i));
    }
}

TEST(ExactPower, SquaresThatFitADoubleAreExact) {
    for (int i = 1; i < 94906265; i += 60000) EXPECT_EQ(exactPower(i, 2.0), static_cast<double>(i) * i);
}

// The square of an odd 27-bit integer above 2^26.5 has 54 bits.
TEST(ExactPower, ASquareHalfwayBetweenTwoDoublesIsOneOfThem) {
    for (double x = 94906267.0; x < 134217728.0; x += 200000.0) {
        const double power = exactPower(x, 2.0);
        EXPECT_TRUE(power == std::nextafter(x * x, 0.0) || power == x * x ||
                    power == std::nextafter(x * x, 1e300))
            << x;
    }
}

TEST(ExactPower, OverflowsToInfinity) {
    EXPECT_EQ(exactPower(2.0, 1024.0), std::numeric_limits<double>::infinity());
    EXPECT_EQ(exactPower(0.5, -1024.0), std::numeric_limits<double>::infinity());
    EXPECT_EQ(exactPower(2.0, 1e30), std::numeric_limits<double>::infinity());
    EXPECT_LT(exactPower(2.0, 1023.999), std::numeric_limits<double>::infinity());
}

TEST(ExactPower, OverflowsToInfinityForTheLargestExponents) {
    EXPECT_EQ(exactPower(1.0000001, 1e302), std::numeric_limits<double>::infinity());
    EXPECT_EQ(exactPower(0.9999999, 1e302), 0.0);
}

TEST(ExactPower, UnderflowsToZero) {
    EXPECT_EQ(exactPower(2.0, -1074.0), 0x1p-1074);
    EXPECT_EQ(exactPower(2.0, -1076.0), 0.0);
    EXPECT_EQ(exactPower(0.5, 1e30), 0.0);
}

TEST(ExactPower, TakesTheSmallestAndTheLargestBases) {
    EXPECT_EQ(exactPower(0x1p-1074, 0.5), 0x1p-537);
    EXPECT_EQ(exactPower(0x1p-1074, -0.5), 0x1p537);
    EXPECT_EQ(exactPower(0x1p1022, 0.5), 0x1p511);
}

/// The double nearest to a value known within a few units of 2^-64 of itself; NaN where that does not decide
/// it.
double nearest(long double value) {
    const long double low = value * (1.0L - 0x1p-61L);
    const long double high = value * (1.0L + 0x1p-61L);
    if (static_cast<double>(low) != static_cast<double>(high)) return std::nan("");
    return static_cast<double>(value);
}

TEST(ExactPower, IsThePowerRoundedOnce) {
    std::mt19937 random(7);
    int undecided = 0;
    constexpr int kCount = 30000;
    for (int i = 0; i < kCount; ++i) {
        const double mantissa = 1.0 + static_cast<double>(random()) / 4294967296.0;
        const double base = std::ldexp(mantissa, static_cast<int>(random() % 300) - 150);
        const double exponent = (static_cast<double>(random()) / 4294967296.0 - 0.3) * 3.0;
        const double expected = nearest(powl(base, exponent));
        if (std::isnan(expected)) {
            ++undecided;
            continue;
        }
        EXPECT_EQ(exactPower(base, exponent), expected) << base << " ^ " << exponent;
    }
    EXPECT_LT(undecided, kCount / 50);
}

}  // namespace
}  // namespace vrx::test
