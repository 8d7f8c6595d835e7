// Tone tables against the formula in long double, and against cases that arithmetic decides.
#include "hdr/engine/tone_tables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "failure.h"
#include "hdr/engine/modHDR.h"

namespace vrx::test {
namespace {

static_assert(std::numeric_limits<long double>::digits >= 64);

constexpr float kMaxSingle = std::numeric_limits<float>::max();

struct Tone : testing::Test {
    ToneTables tables;

    [[nodiscard]] int byteAt(int e, int m) const { return tables.bytes()[256 * e + m]; }
    [[nodiscard]] float singleAt(int e, int m) const {
        return tables.singles()[256 * e + m];
    }
};

// Shared exponents.

TEST(ExponentTable, IsAPowerOfTwoForEveryExponent) {
    for (int e = 0; e < 256; ++e) {
        EXPECT_EQ(kExponentTable[static_cast<std::size_t>(e)], std::ldexp(1.0F, e - 136)) << e;
    }
}

TEST(ExponentTable, DoesNotTreatExponent0Specially) { EXPECT_EQ(kExponentTable[0], 0x1p-136F); }

// Exposures.

TEST(Exposure, WholeStopsArePowersOfTwo) {
    for (int stops = -149; stops <= 127; ++stops) {
        EXPECT_EQ(exposureMultiplier(static_cast<float>(stops)), std::ldexp(1.0F, stops)) << stops;
    }
}

TEST(Exposure, HalfAStopIsTheRootOfTwo) {
    EXPECT_EQ(exposureMultiplier(0.5F), 0x1.6a09e6p0F);  // 1.41421354, the Single below 1.41421356
    EXPECT_EQ(exposureMultiplier(-0.5F), 0x1.6a09e6p-1F);
}

TEST(Exposure, NeverFails) {
    EXPECT_EQ(exposureMultiplier(128.0F), kMaxSingle);
    EXPECT_EQ(exposureMultiplier(kMaxSingle), kMaxSingle);
    EXPECT_EQ(exposureMultiplier(std::numeric_limits<float>::infinity()), kMaxSingle);
    EXPECT_EQ(exposureMultiplier(-151.0F), 0.0F);
    EXPECT_EQ(exposureMultiplier(-kMaxSingle), 0.0F);
    EXPECT_EQ(exposureMultiplier(std::numeric_limits<float>::quiet_NaN()), 0.0F);
}

// Cases that arithmetic decides.

TEST_F(Tone, WithExposure0AndGamma1APixel128And128And128And136GivesBytesOf128) {
    tables.build(1.0F, 1.0F);
    EXPECT_EQ(byteAt(136, 128), 128);  // 128.5 to even
    EXPECT_EQ(byteAt(136, 127), 128);  // 127.5 to even
    EXPECT_EQ(byteAt(136, 0), 0);      // 0.5 to even
    EXPECT_EQ(byteAt(136, 1), 2);      // 1.5 to even
    EXPECT_EQ(byteAt(135, 4), 2);      // 2.25
}

TEST_F(Tone, WithExposure0AndGamma1APixelWithExponent137AndMantissa200Gives255) {
    tables.build(1.0F, 1.0F);
    EXPECT_EQ(byteAt(137, 200), 255);  // 401
    EXPECT_EQ(byteAt(136, 254), 254);  // 254.5 to even
    EXPECT_EQ(byteAt(136, 255), 255);  // 255.5
    EXPECT_EQ(byteAt(255, 255), 255);
}

TEST_F(Tone, APixelOfAllZeroBytesGives0) {
    for (const float inverseGamma : {1.0F, 1.0F / 2.2F, 1.0F / 6.0F}) {
        tables.build(1.0F, inverseGamma);
        EXPECT_EQ(byteAt(0, 0), 0);  // 2^-137 is still 1.3e-7 to the power of 1 / 6
    }
}

TEST_F(Tone, SinglesAreV255ths) {
    tables.build(1.0F, 1.0F);
    EXPECT_EQ(singleAt(136, 127), 0.5F);
    EXPECT_EQ(singleAt(137, 127), 1.0F);
    EXPECT_EQ(singleAt(138, 127), 2.0F);
    EXPECT_EQ(singleAt(136, 0), static_cast<float>(0.5 / 255.0));
}

TEST_F(Tone, RootsThatComeOutHalfwayRoundToEven) {
    tables.build(1.0F, 0.5F);
    EXPECT_EQ(byteAt(135, 4), 2);   // (4.5 / 2) ^ 0.5 = 1.5
    EXPECT_EQ(byteAt(135, 12), 2);  // (12.5 / 2) ^ 0.5 = 2.5
    EXPECT_EQ(byteAt(135, 24), 4);  // (24.5 / 2) ^ 0.5 = 3.5
    EXPECT_EQ(byteAt(135, 40), 4);  // (40.5 / 2) ^ 0.5 = 4.5
    tables.build(1.0F, 0.25F);
    EXPECT_EQ(byteAt(133, 40), 2);  // (40.5 / 8) ^ 0.25 = 1.5
}

TEST_F(Tone, WithBothUnassignedEveryComponentComesOutAs1) {
    tables.build(0.0F, 0.0F);
    for (int e = 0; e < 256; ++e) {
        for (int m = 0; m < 256; ++m) {
            ASSERT_EQ(byteAt(e, m), 1);
            ASSERT_EQ(singleAt(e, m), static_cast<float>(1.0 / 255.0));
        }
    }
}

TEST_F(Tone, WithOnlyGammaAssignedEveryComponentIs0) {
    tables.build(0.0F, 1.0F / 2.2F);
    for (int e = 0; e < 256; ++e) {
        for (int m = 0; m < 256; ++m) {
            ASSERT_EQ(byteAt(e, m), 0);
            ASSERT_EQ(singleAt(e, m), 0.0F);
        }
    }
}

TEST_F(Tone, WithOnlyExposureAssignedEveryComponentIs1) {
    tables.build(16.0F, 0.0F);
    EXPECT_EQ(byteAt(0, 0), 1);
    EXPECT_EQ(byteAt(255, 255), 1);
}

// Faults.

TEST_F(Tone, SinglesAreHeldAtTheLargestFiniteOne) {
    tables.build(65536.0F, 1.0F);
    EXPECT_EQ(singleAt(255, 255), kMaxSingle);  // 255.5 * 2^119 * 2^16 / 255 is above 2^135
    EXPECT_EQ(byteAt(255, 255), 255);
    tables.build(kMaxSingle, 1.0F);
    EXPECT_EQ(singleAt(255, 255), kMaxSingle);
}

TEST_F(Tone, AnOverflowOfThePowerFailsAndLeavesTheTables) {
    tables.build(1.0F, 1.0F);
    // The largest linear value is just below 2^127; to the power of 9 that is 2^1143.
    EXPECT_EQ(errorNumberOf([this] { tables.build(1.0F, 9.0F); }), 6);
    EXPECT_EQ(byteAt(136, 128), 128);
    EXPECT_EQ(singleAt(136, 127), 0.5F);
    EXPECT_EQ(errorNumberOf([this] { tables.build(1.0F, 8.0F); }), 0);  // 2^1016
    EXPECT_EQ(byteAt(136, 0), 0);                                       // 0.5 ^ 8
    EXPECT_EQ(byteAt(136, 1), 26);                                      // 1.5 ^ 8 = 25.6
}

TEST_F(Tone, AnOverflowOfANegativePowerFails) {
    // The smallest linear value is 2^-137; to the power of -8 that is 2^1096.
    EXPECT_EQ(errorNumberOf([this] { tables.build(1.0F, -8.0F); }), 6);
    EXPECT_FALSE(tables.built());
}

TEST_F(Tone, ZeroToANegativePowerFails) {
    EXPECT_EQ(errorNumberOf([this] { tables.build(0.0F, -2.0F); }), 5);
}

TEST_F(Tone, RisesOrFallsWithMantissasAndExponentsAlike) {
    for (const float inverseGamma : {1.0F, 1.0F / 2.2F, 1.0F / 6.0F, 0.0F, -0.5F, -1.0F}) {
        for (const float multiplier : {1.0F, 0x1p-60F, 0x1p-149F, 0x1p16F, 0x1p100F}) {
            tables.build(multiplier, inverseGamma);
            const auto inOrder = [&](float a, float b) { return inverseGamma < 0 ? a >= b : a <= b; };
            const float* all = tables.singles();
            for (std::size_t i = 0; i < 65536; ++i) {
                ASSERT_TRUE(i % 256 == 255 || inOrder(all[i], all[i + 1])) << i;
                ASSERT_TRUE(i >= 65280 || inOrder(all[i], all[i + 256])) << i;
            }
        }
    }
}

TEST_F(Tone, BytesAloneAreThoseOfTheWholeTables) {
    ToneTables plain;
    for (const float multiplier : {0.0F, 0.3F, 128.0F, 0x1p100F}) {
        for (const float inverseGamma : {0.0F, 1.0F / 2.2F, 1.0F, 1.5F, -0.5F}) {
            if (multiplier == 0.0F && inverseGamma < 0.0F) continue;
            tables.build(multiplier, inverseGamma);
            plain.build(multiplier, inverseGamma, ToneParts::Bytes);
            EXPECT_TRUE(std::equal(tables.bytes(), tables.bytes() + 65536, plain.bytes()))
                << multiplier << ' ' << inverseGamma;
        }
    }
}

TEST_F(Tone, IsBuiltOnceItWasBuilt) {
    EXPECT_FALSE(tables.built());
    tables.build(1.0F, 1.0F);
    EXPECT_TRUE(tables.built());
}

// Every entry against the formula.

constexpr long double kUncertainty = 1e-15L;

std::optional<int> byteOf(long double v, bool exact) {
    if (v > 255.0L) return 255;
    const long double floor = std::floor(v);
    const long double rest = v - floor;
    if (!exact && std::fabs(rest - 0.5L) <= kUncertainty * v) return std::nullopt;
    const bool up = rest > 0.5L || (rest == 0.5L && std::fmod(floor, 2.0L) == 1.0L);
    return static_cast<int>(floor) + (up ? 1 : 0);
}

std::optional<float> singleOf(long double value) {
    if (value > static_cast<long double>(kMaxSingle)) return kMaxSingle;
    const auto single = static_cast<float>(value);
    for (const float side : {-1.0F, kMaxSingle}) {
        const long double neighbour = std::nextafter(single, side);
        const long double boundary = (static_cast<long double>(single) + neighbour) / 2.0L;
        if (std::fabs(value - boundary) <= kUncertainty * value) return std::nullopt;
    }
    return single;
}

class ToneModel : public testing::TestWithParam<float> {};

TEST_P(ToneModel, HoldsForEveryEntry) {
    const float inverseGamma = GetParam();
    ToneTables tables;
    int undecided = 0;
    for (const float exposure : {-20.0F, -3.3F, 0.0F, 0.7F, 16.0F}) {
        const auto multiplier = static_cast<float>(exp2l(exposure));
        tables.build(multiplier, inverseGamma);
        for (int e = 0; e < 256; ++e) {
            for (int m = 0; m < 256; ++m) {
                const long double v = powl((m + 0.5L) * ldexpl(multiplier, e - 136), inverseGamma);
                const auto byte = byteOf(v, inverseGamma == 1.0F);
                const auto single = singleOf(v / 255.0L);
                undecided += !byte + !single;
                const int i = 256 * e + m;
                ASSERT_EQ(tables.bytes()[i], byte.value_or(tables.bytes()[i]))
                    << "exposure " << exposure << " E " << e << " M " << m;
                ASSERT_EQ(tables.singles()[i], single.value_or(tables.singles()[i]))
                    << "exposure " << exposure << " E " << e << " M " << m;
            }
        }
    }
    EXPECT_LT(undecided, 200);  // of 655,360
}

INSTANTIATE_TEST_SUITE_P(Gamma, ToneModel,
                         testing::Values(1.0F, 1.0F / 1.1F, 1.0F / 1.17F, 1.0F / 1.8F, 0x1.d1745cp-2F,
                                         0x1.d1745ep-2F, 1.0F / 2.4F, 0.5F, 1.0F / 3.0F, 0.25F, 1.0F / 6.0F,
                                         2.0F, -0.5F));

}  // namespace
}  // namespace vrx::test
