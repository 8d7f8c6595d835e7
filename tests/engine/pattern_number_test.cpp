// Numbers in pattern strings: what is read, what is skipped, what counts as a whole number.
#include "pattern/engine/pattern_number.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "failure.h"

namespace vrx::test {
namespace {

constexpr int kOverflow = 6;

int errorOf(const std::u16string& text) {
    return errorNumberOf([&] { static_cast<void>(readNumber(text)); });
}

bool isWholeNumber(const std::u16string& text) { return wholeNumber(text).has_value(); }

TEST(PatternNumber, ADecimalIntegerReadsAsItself) {
    EXPECT_EQ(readNumber(u"0"), 0);
    EXPECT_EQ(readNumber(u"16711680"), 16711680);
    EXPECT_EQ(readNumber(u"-5"), -5);
    EXPECT_EQ(readNumber(u"+5"), 5);
    EXPECT_EQ(readNumber(u"000000000000000000000012"), 12);
}

TEST(PatternNumber, BlanksAreSkippedWhereverTheyStand) {
    EXPECT_EQ(readNumber(u"  1 6  "), 16);
    EXPECT_EQ(readNumber(u"- 7"), -7);
    EXPECT_EQ(readNumber(u"1 e 2"), 100);
    EXPECT_EQ(readNumber(u"& H 1 F"), 31);
}

TEST(PatternNumber, ReadingStopsAtTheFirstCharacterThatCannotContinueANumber) {
    EXPECT_EQ(readNumber(u"12abc34"), 12);
    EXPECT_EQ(readNumber(u"65,280"), 65);
    EXPECT_EQ(readNumber(u"1.9.7"), 2);
    EXPECT_EQ(readNumber(u"7-3"), 7);
    EXPECT_EQ(readNumber(u"12\t34"), 12);
    EXPECT_EQ(readNumber(u"&H1FG"), 31);
    EXPECT_EQ(readNumber(u"&O178"), 15);
}

TEST(PatternNumber, NothingReadableGivesZero) {
    for (const char16_t* text : {u"", u"   ", u"abc", u".", u"+", u"-", u"+-5", u"e5", u".e5", u"&", u"&5",
                                 u"&H", u"&HG", u"&O8", u"$5", u"(5)", u"-&H5", u"\u0663", u"\uFF15"}) {
        EXPECT_EQ(readNumber(text), 0) << testing::PrintToString(std::u16string(text));
    }
}

TEST(PatternNumber, HalvesRoundToTheEvenInteger) {
    EXPECT_EQ(readNumber(u"0.5"), 0);
    EXPECT_EQ(readNumber(u"1.5"), 2);
    EXPECT_EQ(readNumber(u"2.5"), 2);
    EXPECT_EQ(readNumber(u"-0.5"), 0);
    EXPECT_EQ(readNumber(u"-1.5"), -2);
    EXPECT_EQ(readNumber(u".5"), 0);
    EXPECT_EQ(readNumber(u"25e-1"), 2);
    EXPECT_EQ(readNumber(u"35e-1"), 4);
}

TEST(PatternNumber, EverythingElseRoundsToTheNearestInteger) {
    EXPECT_EQ(readNumber(u"0.4999999999999999999999999"), 0);
    EXPECT_EQ(readNumber(u"0.5000000000000000000000001"), 1);
    EXPECT_EQ(readNumber(u"2.51"), 3);
    EXPECT_EQ(readNumber(u"7."), 7);
    EXPECT_EQ(readNumber(u"0.05"), 0);
    EXPECT_EQ(readNumber(u"99999e-6"), 0);
}

TEST(PatternNumber, AnExponentMayBeWrittenWithEOrD) {
    EXPECT_EQ(readNumber(u"1e3"), 1000);
    EXPECT_EQ(readNumber(u"1E3"), 1000);
    EXPECT_EQ(readNumber(u"1d3"), 1000);
    EXPECT_EQ(readNumber(u"1D+3"), 1000);
    EXPECT_EQ(readNumber(u"1234e-2"), 12);
    EXPECT_EQ(readNumber(u"1.25e2"), 125);
    EXPECT_EQ(readNumber(u"0.00000000000000000001e22"), 100);
    EXPECT_EQ(readNumber(u"0e999999999999999999999"), 0);
    EXPECT_EQ(readNumber(u"9e-999999999999999999999"), 0);
}

TEST(PatternNumber, AnExponentWithoutDigitsEndsTheNumber) {
    EXPECT_EQ(readNumber(u"3e"), 3);
    EXPECT_EQ(readNumber(u"3e+"), 3);
    EXPECT_EQ(readNumber(u"3ex"), 3);
    EXPECT_FALSE(isWholeNumber(u"3e"));
    EXPECT_FALSE(isWholeNumber(u"3e-"));
}

TEST(PatternNumber, AmpersandHReadsHexadecimalAndAmpersandOReadsOctal) {
    EXPECT_EQ(readNumber(u"&HFF"), 255);
    EXPECT_EQ(readNumber(u"&hfF"), 255);
    EXPECT_EQ(readNumber(u"&HFFFF"), 65535);
    EXPECT_EQ(readNumber(u"&O17"), 15);
    EXPECT_EQ(readNumber(u"&o17"), 15);
    EXPECT_EQ(readNumber(u"&H000000000000000000007FFFFFFF"), std::numeric_limits<std::int32_t>::max());
}

TEST(PatternNumber, TheLimitsOf32BitsAreRead) {
    EXPECT_EQ(readNumber(u"2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(readNumber(u"-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(readNumber(u"2147483647.4"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(readNumber(u"-2147483648.5"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(readNumber(u"&O17777777777"), std::numeric_limits<std::int32_t>::max());
}

TEST(PatternNumber, ANumberBeyond32BitsOverflows) {
    for (const char16_t* text :
         {u"2147483648", u"-2147483649", u"2147483647.5", u"1e10", u"1e400", u"1e99999999999999999999",
          u"99999999999999999999999999999999", u"&H80000000", u"&HFFFFFFFF", u"&O20000000000",
          u"&HFFFFFFFFFFFFFFFFFFFFFFFFFFFF"}) {
        EXPECT_EQ(errorOf(text), kOverflow) << testing::PrintToString(std::u16string(text));
    }
}

TEST(PatternNumber, AValidNumberConvertsAsAWhole) {
    for (const char16_t* text :
         {u"0", u"-5", u"+5", u" 7 ", u"1.5", u".5", u"5.", u"1e3", u"1D-3", u"&HFF", u"&o17"}) {
        EXPECT_TRUE(isWholeNumber(text)) << testing::PrintToString(std::u16string(text));
    }
}

TEST(PatternNumber, AValidNumberBeyond32BitsOverflows) {
    EXPECT_EQ(errorNumberOf([] { static_cast<void>(wholeNumber(u" 99999999999999 ")); }), kOverflow);
}

TEST(PatternNumber, TheEmptyTextIsNoValidNumber) {
    EXPECT_FALSE(isWholeNumber(u""));
    EXPECT_FALSE(isWholeNumber(u"   "));
}

TEST(PatternNumber, NothingThatDependsOnALocaleIsAValidNumber) {
    for (const char16_t* text :
         {u"65,280", u"1,5", u"$255", u"(255)", u"255-", u"- 1", u"1 6", u"\t1", u"1\u00A0", u"1e", u"&H",
          u"&HFF&", u"&8", u".", u"-", u"nan", u"inf", u"1.2.3", u"\uFF15"}) {
        EXPECT_FALSE(isWholeNumber(text)) << testing::PrintToString(std::u16string(text));
    }
}

TEST(PatternNumber, MillionsOfDigitsAreReadToTheEnd) {
    const std::u16string zeros(5'000'000, u'0');
    EXPECT_EQ(readNumber(zeros + u"42"), 42);
    EXPECT_EQ(readNumber(u"0." + zeros + u"3e5000001"), 3);
    EXPECT_EQ(readNumber(u"7" + zeros + u"e-5000000"), 7);
    EXPECT_EQ(readNumber(u"0.5" + zeros + u"1"), 1);
    EXPECT_EQ(errorOf(u"1" + zeros), kOverflow);
}

}  // namespace
}  // namespace vrx::test
