// Expansion of pattern strings: the rules one by one.
#include "pattern/engine/pattern_expansion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "failure.h"
#include "pattern_colors.h"

namespace vrx::test {
namespace {

constexpr int kOverflow = 6;
constexpr int kOutOfMemory = 7;
constexpr int kSubscriptOutOfRange = 9;
constexpr std::int32_t kRed = 255;
constexpr std::int32_t kGreen = 65280;
constexpr std::int32_t kBlue = 16711680;
constexpr std::int32_t kWhite = 16777215;
constexpr std::int32_t kBlack = 0;
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

using Colors = std::vector<std::int32_t>;

Colors expand(const std::u16string& pattern, std::int32_t numItem) { return colorsOf(pattern, numItem); }

int errorOf(const std::u16string& pattern, std::int32_t numItem) {
    return errorNumberOf([&] { static_cast<void>(expand(pattern, numItem)); });
}

TEST(Expansion, TheEmptyStringWithNumItem255Gives256BlackEntries) {
    EXPECT_EQ(expand(u"", 255), Colors(256, 0));
}

TEST(Expansion, ALoneRedStopWithNumItem10FadesToBlackAt10) {
    // 255 less 25.5 for each entry, halves to even.
    EXPECT_EQ(expand(u"0-255;", 10), (Colors{255, 230, 204, 178, 153, 128, 102, 76, 51, 26, 0}));
}

TEST(Expansion, TwoStopsWithNumItem100AreLinearInBetween) {
    const Colors table = expand(u"0-255;1000-16711680;", 100);
    ASSERT_EQ(table.size(), 101U);
    EXPECT_EQ(table.front(), kRed);
    EXPECT_EQ(table.back(), kBlue);
    for (int i = 0; i <= 100; ++i) {
        if (i % 20 == 10) continue;  // halves, where the drift of the sums decides
        const int blue = (255 * i + 50) / 100;
        EXPECT_EQ(table[static_cast<std::size_t>(i)], 255 - blue + 65536 * blue) << i;
    }
}

TEST(Expansion, TheSameStringWithPositions0And50GivesTheSameResult) {
    EXPECT_EQ(expand(u"0-255;50-16711680;", 100), expand(u"0-255;1000-16711680;", 100));
}

TEST(Expansion, AFirstStopAt500StillStartsRedAt0) {
    EXPECT_EQ(expand(u"500-255;1000-16711680;", 100), expand(u"0-255;1000-16711680;", 100));
}

TEST(Expansion, ASecondStopAtThePositionOfTheFirstIsNeverVisited) {
    EXPECT_EQ(expand(u"0-0;0-65280;100-255;", 100), expand(u"0-0;100-255;", 100));
}

TEST(Expansion, AFinalItemWithoutASemicolonReadsTheSameAsWithIt) {
    EXPECT_EQ(expand(u"0-255;1000-16711680", 100), expand(u"0-255;1000-16711680;", 100));
}

TEST(Expansion, OfStopsAtPAndPPlus1TheElementAtPPlus1HasTheColorOfTheStopAtP) {
    const Colors table = expand(u"0-0;500-255;510-65280;1000-16711680;", 100);
    EXPECT_EQ(table[50], kRed);
    EXPECT_EQ(table[51], kRed);
    EXPECT_EQ(table[52], kGreen);
    EXPECT_EQ(table[100], kBlue);
}

TEST(Expansion, ALaterSegmentBeginsWithTheColorOfItsFirstStopOnceMore) {
    const Colors table = expand(u"0-255;500-16777215;1000-16711680;", 4);
    EXPECT_EQ(table[0], kRed);
    EXPECT_EQ(table[2], kWhite);
    EXPECT_EQ(table[3], kWhite);
    EXPECT_EQ(table[4], kBlue);
}

TEST(Expansion, RescaledPositionsAreTheExactProductWithTheSinglePrecisionScale) {
    // 255 / 1000 as a single is a little below 0.255, so that 500 comes to 127 and not to 127.5.
    const Colors table = expand(u"0-255;500-16777215;1000-16711680;", 255);
    EXPECT_NE(table[126], kWhite);
    EXPECT_EQ(table[127], kWhite);
    EXPECT_EQ(table[128], kWhite);
    EXPECT_NE(table[129], kWhite);
}

TEST(Expansion, RescaledHalvesRoundToTheEvenEntry) {
    // The scale is 0.5: positions 1, 3 and 5 come to 0, 2 and 2.
    const Colors table = expand(u"0-0;1-255;3-65280;5-16777215;20-16711680;", 10);
    EXPECT_EQ(table[0], kBlack);
    EXPECT_EQ(table[2], kGreen);
    EXPECT_EQ(table[3], kGreen);
}

TEST(Expansion, WithNumItem0NothingIsFilled) {
    EXPECT_TRUE(expand(u"0-255;1000-16711680;", 0).empty());
    EXPECT_TRUE(expand(u"", 0).empty());
}

TEST(Expansion, WithNumItem1TheTwoEndsAreTheTable) {
    EXPECT_EQ(expand(u"0-255;500-65280;1000-16711680;", 1), (Colors{kRed, kBlue}));
}

TEST(Expansion, AFirstStopWithTheLargestPositionEndsTheRamp) {
    EXPECT_EQ(expand(u"1000-255;500-16711680;", 100), expand(u"0-16711680;1000-255;", 100));
}

TEST(Expansion, ALoneStopStartsTheRampWhereverItStands) {
    EXPECT_EQ(expand(u"700-255;", 10), expand(u"0-255;", 10));
}

TEST(Expansion, WithoutAPositionAbove0TheRampEndsInBlackAndTheSecondStopIsDropped) {
    EXPECT_EQ(expand(u"0-255;0-65280;", 10), expand(u"0-255;", 10));
    EXPECT_EQ(expand(u"0-255;0-65280;0-16711680;", 10), expand(u"0-255;", 10));
}

TEST(Expansion, TheLargestPositionEndsTheRampWhereverItIsWritten) {
    EXPECT_EQ(expand(u"0-255;1000-16711680;500-65280;", 100), expand(u"0-255;500-65280;1000-16711680;", 100));
    EXPECT_EQ(expand(u"0-1;100-2;300-3;200-4;", 60), expand(u"0-1;100-2;200-4;300-3;", 60));
}

TEST(Expansion, OfSeveralLargestPositionsTheFirstEndsTheRamp) {
    EXPECT_EQ(expand(u"0-0;10-255;10-65280;", 10).back(), kRed);
}

TEST(Expansion, StopsInBetweenAreVisitedByPositionNotByOrder) {
    EXPECT_EQ(expand(u"0-0;75-255;25-65280;50-16711680;100-1;", 100),
              expand(u"0-0;25-65280;50-16711680;75-255;100-1;", 100));
}

TEST(Expansion, OfStopsAtOnePositionTheFirstRecordCounts) {
    EXPECT_EQ(expand(u"0-0;100-1;50-255;50-65280;", 100)[50], kRed);
}

TEST(Expansion, ATailOfBlanksIsAnItemOfItsOwn) {
    EXPECT_EQ(expand(u"500-255;", 10), expand(u"0-255;1000-0;", 10));
    EXPECT_EQ(expand(u"500-255; ", 10), expand(u"0-0;1000-255;", 10));
}

TEST(Expansion, BlanksAroundItemsDoNotMatter) {
    EXPECT_EQ(expand(u"  0 - 255 ;  1000 - 16711680 ;", 100), expand(u"0-255;1000-16711680;", 100));
}

TEST(Expansion, EmptyItemsAreBlackStopsAt0) {
    EXPECT_EQ(expand(u";1000-255;", 10), expand(u"0-0;1000-255;", 10));
    EXPECT_EQ(expand(u";;;;", 10), Colors(11, kBlack));
}

TEST(Expansion, Bits24To31OfAColorDoNotMatter) {
    EXPECT_EQ(expand(u"0--1;10-2130706432;", 10), expand(u"0-16777215;10-0;", 10));
}

TEST(Expansion, MalformedTextNeverFails) {
    for (const char16_t* text : {u"abc", u"-", u"--", u"---;", u"\u0000;-\uFFFF", u"\xD800-\xDFFF;",
                                 u"1e5x;&H-&O;", u"65,280-65,280;", u"nan-inf;"}) {
        EXPECT_EQ(expand(text, 10).size(), 11U);
    }
}

TEST(Expansion, ANegativeNumItemIsASubscriptOutOfRange) {
    EXPECT_EQ(errorOf(u"0-255;", -1), kSubscriptOutOfRange);
    EXPECT_EQ(errorOf(u"", std::numeric_limits<std::int32_t>::min()), kSubscriptOutOfRange);
}

TEST(Expansion, ATableThatNoMemoryCanHoldIsOutOfMemory) {
    EXPECT_EQ(errorOf(u"", kLargest), kOutOfMemory);
    EXPECT_EQ(errorOf(u"", kLargest / 4), kOutOfMemory);
}

TEST(Expansion, TheTableIsMadeBeforeTheTextIsRead) {
    EXPECT_EQ(errorOf(u"99999999999-0;", -1), kSubscriptOutOfRange);
    EXPECT_EQ(errorOf(u"99999999999-0;", kLargest), kOutOfMemory);
}

TEST(Expansion, APositionOrAColorBeyond32BitsOverflows) {
    EXPECT_EQ(errorOf(u"0-255;2147483648-0;", 10), kOverflow);
    EXPECT_EQ(errorOf(u"0-2147483648;", 10), kOverflow);
    EXPECT_EQ(errorOf(u"0-2147483648;", 0), kOverflow);
    EXPECT_EQ(errorOf(u"0-255;2147483647-16711680;", 10), 0);
}

TEST(Expansion, ARescaledPositionBeyond32BitsOverflows) {
    // (2^31 - 1) / 3 as a single is 715827904, and three times that is 2^31 + 64. The first largest position
    // is not rescaled.
    const auto errorOfPlacing = [](std::u16string_view pattern, std::int32_t numItem) {
        return errorNumberOf([&] { static_cast<void>(placeStops(pattern, numItem)); });
    };
    EXPECT_EQ(errorOfPlacing(u"0-0;3-1;3-2;", kLargest), kOverflow);
    EXPECT_EQ(errorOfPlacing(u"0-0;3-1;3-2;", kLargest - 1000), 0);
    EXPECT_EQ(errorOfPlacing(u"0-0;3-1;", kLargest), 0);
}

TEST(Expansion, PlacedStopsKeepTheSpareAndPinBothEnds) {
    const std::vector<PatternItem> stops = placeStops(u"40-1;10-2;80-3;", 160);
    ASSERT_EQ(stops.size(), 4U);
    EXPECT_EQ(stops[1].position, 0);
    EXPECT_EQ(stops[1].color, 1);
    EXPECT_EQ(stops[2].position, 160);
    EXPECT_EQ(stops[2].color, 3);
    EXPECT_EQ(stops[3].position, 20);
    EXPECT_EQ(stops[3].color, 2);
}

TEST(Expansion, StopsBehindTheEndOfTheTableAreNeverVisited) {
    std::vector<PatternItem> stops{{0, 0},        {0, 255}, {10, 65280},   {11, 1},
                                   {kLargest, 2}, {-1, 3},  {-kLargest, 4}};
    Colors table(11);
    fillTable(stops, table);
    EXPECT_EQ(table, expand(u"0-255;10-65280;", 10));
}

}  // namespace
}  // namespace vrx::test
