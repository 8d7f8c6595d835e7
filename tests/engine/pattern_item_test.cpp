// Channels of a colour, items of a pattern string, and the editor's stops.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "failure.h"
#include "pattern/engine/modPattern.h"

namespace vrx {

static bool operator==(const PatternItem& a, const PatternItem& b) {
    return a.position == b.position && a.color == b.color;
}

static void PrintTo(const PatternItem& item, std::ostream* out) {
    *out << item.position << '-' << item.color;
}

}  // namespace vrx

namespace vrx::test {
namespace {

constexpr int kOverflow = 6;
constexpr int kDivisionByZero = 11;

std::vector<std::u16string> itemsOf(std::u16string_view text) {
    std::vector<std::u16string> items;
    while (!text.empty()) items.emplace_back(Get_NextPatternItem(text));
    return items;
}

int errorOf(std::u16string_view item) {
    return errorNumberOf([&] { static_cast<void>(Split_PatternItem(item)); });
}

CVrxPatternColor stopAt(std::int32_t position, std::int32_t maxPos, std::int32_t color) {
    CVrxPatternColor stop;
    stop.setMaxPos(maxPos);
    stop.setPosition(position);
    stop.setColor(color);
    return stop;
}

TEST(PatternChannels, RedIsBits0To7GreenBits8To15BlueBits16To23) {
    EXPECT_EQ(Get_Red(0x332211), 0x11);
    EXPECT_EQ(Get_Green(0x332211), 0x22);
    EXPECT_EQ(Get_Blue(0x332211), 0x33);
    EXPECT_EQ(Get_Red(255), 255);
    EXPECT_EQ(Get_Green(65280), 255);
    EXPECT_EQ(Get_Blue(16711680), 255);
}

TEST(PatternChannels, Bits24To31DoNotMatter) {
    EXPECT_EQ(Get_Blue(0x7F000000), 0);
    EXPECT_EQ(Get_Red(-1), 255);
    EXPECT_EQ(Get_Green(-1), 255);
    EXPECT_EQ(Get_Blue(-1), 255);
    EXPECT_EQ(Get_Blue(-2147483647 - 1), 0);
}

TEST(PatternItem, ItemsEndAtTheirSemicolons) {
    EXPECT_EQ(itemsOf(u"0-255;500-16777215;1000-16711680;"),
              (std::vector<std::u16string>{u"0-255", u"500-16777215", u"1000-16711680"}));
}

TEST(PatternItem, AnItemLosesTheBlanksAroundItAndNoOthers) {
    EXPECT_EQ(itemsOf(u"  0 - 255  ;\t7;"), (std::vector<std::u16string>{u"0 - 255", u"\t7"}));
}

TEST(PatternItem, ALastItemWithoutASemicolonIsNotTrimmed) {
    EXPECT_EQ(itemsOf(u" 1-2 ; 3-4 "), (std::vector<std::u16string>{u"1-2", u" 3-4 "}));
    EXPECT_EQ(itemsOf(u"500-255; "), (std::vector<std::u16string>{u"500-255", u" "}));
}

TEST(PatternItem, NothingBetweenTwoSemicolonsIsAnEmptyItem) {
    EXPECT_EQ(itemsOf(u";;1;"), (std::vector<std::u16string>{u"", u"", u"1"}));
    EXPECT_EQ(Split_PatternItem(u""), (PatternItem{0, 0}));
}

TEST(PatternItem, TheFirstHyphenSplitsPositionAndColor) {
    EXPECT_EQ(Split_PatternItem(u"500-16777215"), (PatternItem{500, 16777215}));
    EXPECT_EQ(Split_PatternItem(u"-5"), (PatternItem{0, 5}));
}

TEST(PatternItem, ANegativeColorCanBeWrittenANegativePositionCannot) {
    EXPECT_EQ(Split_PatternItem(u"0--1"), (PatternItem{0, -1}));
    EXPECT_EQ(Split_PatternItem(u"-500-255"), (PatternItem{0, 0}));
}

TEST(PatternItem, AnItemAbcReadsAs0Black) { EXPECT_EQ(Split_PatternItem(u"abc"), (PatternItem{0, 0})); }

TEST(PatternItem, AnItem7ReadsAs7Black) { EXPECT_EQ(Split_PatternItem(u"7"), (PatternItem{7, 0})); }

TEST(PatternItem, WithoutAHyphenOnlyAValidNumberIsAPosition) {
    EXPECT_EQ(Split_PatternItem(u" 7 "), (PatternItem{7, 0}));
    EXPECT_EQ(Split_PatternItem(u"&H10"), (PatternItem{16, 0}));
    EXPECT_EQ(Split_PatternItem(u"7x"), (PatternItem{0, 0}));
    EXPECT_EQ(Split_PatternItem(u"1 6"), (PatternItem{0, 0}));
}

TEST(PatternItem, APositionIsReadAsFarAsItGoes) {
    EXPECT_EQ(Split_PatternItem(u"12abc-255"), (PatternItem{12, 255}));
    EXPECT_EQ(Split_PatternItem(u"abc-255"), (PatternItem{0, 255}));
    EXPECT_EQ(Split_PatternItem(u"1 6-255"), (PatternItem{16, 255}));
    EXPECT_EQ(Split_PatternItem(u"1e-3"), (PatternItem{1, 3}));
}

TEST(PatternItem, AnEmptyOrMalformedColorIsBlack) {
    EXPECT_EQ(Split_PatternItem(u"5-"), (PatternItem{5, 0}));
    EXPECT_EQ(Split_PatternItem(u"5-  "), (PatternItem{5, 0}));
    EXPECT_EQ(Split_PatternItem(u"5-255x"), (PatternItem{5, 0}));
    EXPECT_EQ(Split_PatternItem(u"5-65,280"), (PatternItem{5, 0}));
    EXPECT_EQ(Split_PatternItem(u"5-12-7"), (PatternItem{5, 0}));
    EXPECT_EQ(Split_PatternItem(u"5-99999999999x"), (PatternItem{5, 0}));
}

TEST(PatternItem, AColorMayHaveBlanksAroundIt) {
    EXPECT_EQ(Split_PatternItem(u"5 - 255"), (PatternItem{5, 255}));
    EXPECT_EQ(Split_PatternItem(u"5-&HFF0000"), (PatternItem{5, 16711680}));
}

TEST(PatternItem, PositionsAndColorsBeyond32BitsOverflow) {
    EXPECT_EQ(errorOf(u"2147483648-0"), kOverflow);
    EXPECT_EQ(errorOf(u"2147483648"), kOverflow);
    EXPECT_EQ(errorOf(u"0-2147483648"), kOverflow);
    EXPECT_EQ(errorOf(u"0--2147483649"), kOverflow);
    EXPECT_EQ(Split_PatternItem(u"2147483647-2147483647"), (PatternItem{2147483647, 2147483647}));
    EXPECT_EQ(Split_PatternItem(u"0--2147483648"), (PatternItem{0, -2147483647 - 1}));
}

TEST(PatternColor, AWrittenPositionRefreshesItsFractionOfTheRamp) {
    CVrxPatternColor stop = stopAt(1, 3, 0);
    EXPECT_EQ(stop.percPosition(), 1.0F / 3.0F);
    stop.setPosition(3);
    EXPECT_EQ(stop.percPosition(), 1.0F);
}

TEST(PatternColor, AWrittenLengthLeavesTheFractionUntilTheNextPosition) {
    CVrxPatternColor stop = stopAt(50, 100, 0);
    stop.setMaxPos(200);
    EXPECT_EQ(stop.percPosition(), 0.5F);
    stop.setPosition(50);
    EXPECT_EQ(stop.percPosition(), 0.25F);
}

TEST(PatternColor, APositionWhileTheLengthIs0IsStoredAndDividesByZero) {
    CVrxPatternColor stop;
    EXPECT_EQ(errorNumberOf([&] { stop.setPosition(5); }), kDivisionByZero);
    EXPECT_EQ(errorNumberOf([&] { stop.setPosition(0); }), kDivisionByZero);
    EXPECT_EQ(errorNumberOf([&] { stop.setPosition(7); }), kDivisionByZero);
    EXPECT_EQ(stop.position(), 7);
    EXPECT_EQ(stop.percPosition(), 0.0F);
}

TEST(PatternColor, ANewStopIsBlackAtTheStart) {
    const CVrxPatternColor stop;
    EXPECT_EQ(stop.color(), 0);
    EXPECT_EQ(stop.position(), 0);
    EXPECT_EQ(stop.maxPos(), 0);
    EXPECT_EQ(stop.percPosition(), 0.0F);
}

TEST(PatternColor, SwappedStopsExchangePositionAndColorAndKeepTheirLengths) {
    CVrxPatternColor a = stopAt(10, 100, 255);
    CVrxPatternColor b = stopAt(50, 200, 65280);
    Swap_PatternColor(a, b);
    EXPECT_EQ(a.position(), 50);
    EXPECT_EQ(a.color(), 65280);
    EXPECT_EQ(a.maxPos(), 100);
    EXPECT_EQ(a.percPosition(), 0.5F);
    EXPECT_EQ(b.position(), 10);
    EXPECT_EQ(b.color(), 255);
    EXPECT_EQ(b.maxPos(), 200);
    EXPECT_EQ(b.percPosition(), 0.05F);
}

TEST(PatternColor, AStopSwappedWithItselfStaysAsItIs) {
    CVrxPatternColor stop = stopAt(10, 100, 255);
    Swap_PatternColor(stop, stop);
    EXPECT_EQ(stop.position(), 10);
    EXPECT_EQ(stop.color(), 255);
}

}  // namespace
}  // namespace vrx::test
