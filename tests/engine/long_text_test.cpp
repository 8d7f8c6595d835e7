// Text to whole numbers by Visual Basic's rules.
#include "ground/long_text.h"

#include <gtest/gtest.h>

namespace vrx::test {
namespace {

using Result = std::optional<std::int32_t>;

TEST(LongOfText, DecimalsAndExponentsCount) {
    EXPECT_EQ(longOfText("480.0"), Result(480));
    EXPECT_EQ(longOfText("2e0"), Result(2));
    EXPECT_EQ(longOfText("4.8E2"), Result(480));
    EXPECT_EQ(longOfText("4800e-1"), Result(480));
    EXPECT_EQ(longOfText("4.8d+2"), Result(480));
    EXPECT_EQ(longOfText("48D1"), Result(480));
    EXPECT_EQ(longOfText(".5e1"), Result(5));
    EXPECT_EQ(longOfText("5."), Result(5));
    EXPECT_EQ(longOfText("0.00048e6"), Result(480));
    EXPECT_EQ(longOfText("0e99999999999999999999"), Result(0));
    EXPECT_EQ(longOfText("7e-99999999999999999999"), Result(0));
}

TEST(LongOfText, HalvesGoToEven) {
    EXPECT_EQ(longOfText("0.5"), Result(0));
    EXPECT_EQ(longOfText("1.5"), Result(2));
    EXPECT_EQ(longOfText("2.5"), Result(2));
    EXPECT_EQ(longOfText("2.50"), Result(2));
    EXPECT_EQ(longOfText("2.500000000000000000000000000001"), Result(3));
    EXPECT_EQ(longOfText("2.4999999999999999999999999999"), Result(2));
    EXPECT_EQ(longOfText("-2.5"), Result(-2));
    EXPECT_EQ(longOfText("-3.5"), Result(-4));
    EXPECT_EQ(longOfText("25e-1"), Result(2));
    EXPECT_EQ(longOfText("5e-1"), Result(0));
    EXPECT_EQ(longOfText("5e-2"), Result(0));
    EXPECT_EQ(longOfText("0.06"), Result(0));
    EXPECT_EQ(longOfText("-0.5"), Result(0));
}

TEST(LongOfText, WhiteSpaceMayStandAroundTheNumber) {
    EXPECT_EQ(longOfText("  7 "), Result(7));
    EXPECT_EQ(longOfText("\t7\r\n"), Result(7));
    EXPECT_EQ(longOfText("1 2"), Result());
}

TEST(LongOfText, ASignMayStandOnEitherSideAndParenthesesMeanMinus) {
    EXPECT_EQ(longOfText("+7"), Result(7));
    EXPECT_EQ(longOfText("-7"), Result(-7));
    EXPECT_EQ(longOfText("7-"), Result(-7));
    EXPECT_EQ(longOfText("7+"), Result(7));
    EXPECT_EQ(longOfText("(7)"), Result(-7));
    for (const char* refused : {"--7", "-7-", "(7", "7)", "(-7)", "((7))", "+", "()"}) {
        EXPECT_EQ(longOfText(refused), Result()) << refused;
    }
}

TEST(LongOfText, ThousandsAndMoneyAreRead) {
    EXPECT_EQ(longOfText("1,024"), Result(1024));
    EXPECT_EQ(longOfText("1,0,2,,4"), Result(1024));
    EXPECT_EQ(longOfText("$7"), Result(7));
    EXPECT_EQ(longOfText("-$7"), Result(-7));
    EXPECT_EQ(longOfText("7$"), Result(7));
    EXPECT_EQ(longOfText("$$7"), Result());
    EXPECT_EQ(longOfText(",7"), Result());
    EXPECT_EQ(longOfText(","), Result());
}

TEST(LongOfText, HexadecimalAndOctalAre32Bits) {
    EXPECT_EQ(longOfText("&H1E0"), Result(480));
    EXPECT_EQ(longOfText("&hff"), Result(255));
    EXPECT_EQ(longOfText("&O740"), Result(480));
    EXPECT_EQ(longOfText("&o7"), Result(7));
    EXPECT_EQ(longOfText("&HFFFFFFFF"), Result(-1));
    for (const char* refused : {"&H", "&H1FFFFFFFF", "&HG", "&O8", "&", "&H-1", "&H1.0", "0x10"}) {
        EXPECT_EQ(longOfText(refused), Result()) << refused;
    }
}

TEST(LongOfText, NumbersBeyond32BitsAreRefused) {
    EXPECT_EQ(longOfText("2147483647.5"), Result());
    EXPECT_EQ(longOfText("2147483647.4"), Result(2147483647));
    EXPECT_EQ(longOfText("-2147483648.5"), Result(-2147483647 - 1));
    EXPECT_EQ(longOfText("-2147483649"), Result());
    EXPECT_EQ(longOfText("9999999999"), Result());
    EXPECT_EQ(longOfText("1e10"), Result());
    EXPECT_EQ(longOfText("1e99999999999999999999"), Result());
    EXPECT_EQ(longOfText("00000000000000000000007"), Result(7));
}

TEST(LongOfText, WhatIsNoNumberIsRefused) {
    for (const char* refused :
         {"", " ", "x", "7x", "x7", ".", "e5", "1e", "1e+", "1.2.3", "1e1.5", "NaN", "inf", "\xA0"}) {
        EXPECT_EQ(longOfText(refused), Result()) << refused;
    }
}

}  // namespace
}  // namespace vrx::test
