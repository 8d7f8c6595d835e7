// Rounding to nearest, halves to even.
#include "ground/rounding.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <limits>

#include "failure.h"

namespace vrx::test {
namespace {

TEST(Rounding, HalvesGoToEven) {
    EXPECT_EQ(roundHalfEven(0.5), 0.0);
    EXPECT_EQ(roundHalfEven(1.5), 2.0);
    EXPECT_EQ(roundHalfEven(2.5), 2.0);
    EXPECT_EQ(roundHalfEven(128.5), 128.0);
    EXPECT_EQ(roundHalfEven(-0.5), 0.0);
    EXPECT_EQ(roundHalfEven(-1.5), -2.0);
    EXPECT_EQ(roundHalfEven(-2.5), -2.0);
    EXPECT_EQ(roundHalfEven(4503599627370494.5), 4503599627370494.0);
    EXPECT_EQ(roundHalfEven(4503599627370495.5), 4503599627370496.0);
}

TEST(Rounding, OtherValuesGoToTheNearest) {
    EXPECT_EQ(roundHalfEven(0.49999999999999994), 0.0);
    EXPECT_EQ(roundHalfEven(0.5000000000000001), 1.0);
    EXPECT_EQ(roundHalfEven(-0.49999999999999994), 0.0);
    EXPECT_EQ(roundHalfEven(-0.5000000000000001), -1.0);
    EXPECT_EQ(roundHalfEven(-1.0e-300), 0.0);
    EXPECT_EQ(roundHalfEven(7.0), 7.0);
    EXPECT_EQ(roundHalfEven(9007199254740993.0), 9007199254740992.0);
    EXPECT_EQ(roundHalfEven(1.0e300), 1.0e300);
    EXPECT_EQ(roundHalfEven(-std::numeric_limits<double>::infinity()),
              -std::numeric_limits<double>::infinity());
}

TEST(Rounding, DoesNotDependOnTheProcessorsMode) {
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::fesetround(mode);
        const double results[] = {roundHalfEven(0.75), roundHalfEven(0.25), roundHalfEven(-0.75),
                                  roundHalfEven(2.5)};
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(results[0], 1.0) << mode;
        EXPECT_EQ(results[1], 0.0) << mode;
        EXPECT_EQ(results[2], -1.0) << mode;
        EXPECT_EQ(results[3], 2.0) << mode;
    }
}

TEST(Rounding, FitsThe32BitIntegersUpToTheirLastHalf) {
    EXPECT_EQ(toInt32(2147483647.4), 2147483647);
    EXPECT_EQ(toInt32(-2147483648.0), -2147483647 - 1);
    EXPECT_EQ(toInt32(-2147483648.5), -2147483647 - 1);  // the even neighbour
    EXPECT_EQ(toInt32(-2.5), -2);
}

TEST(Rounding, OverflowsBeyond32Bits) {
    const double tooLarge[] = {2147483647.5,
                               2147483648.0,
                               -2147483648.6,
                               1.0e300,
                               std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};
    for (const double value : tooLarge) {
        EXPECT_EQ(errorNumberOf([value] { static_cast<void>(toInt32(value)); }), 6) << value;
    }
}

}  // namespace
}  // namespace vrx::test
