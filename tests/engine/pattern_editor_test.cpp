// The pattern editor's stops without its window.
#include "pattern/engine/pattern_editor.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "failure.h"

namespace vrx {

inline bool operator==(const PatternItem& a, const PatternItem& b) {
    return a.position == b.position && a.color == b.color;
}
inline void PrintTo(const PatternItem& item, std::ostream* out) {
    *out << item.position << '-' << item.color;
}

namespace test {
namespace {

constexpr std::int32_t kRed = 255;
constexpr std::int32_t kGreen = 65280;
constexpr std::int32_t kBlue = 16711680;
constexpr std::int32_t kWhite = 16777215;
constexpr char16_t kRedWhiteBlue[] = u"0-255;500-16777215;1000-16711680;";

using Stops = std::vector<PatternItem>;

PatternEditor editorOf(std::u16string_view pattern, std::int32_t rampWidth = 200) {
    PatternEditor editor;
    editor.setRampWidth(rampWidth);
    editor.build(pattern);
    return editor;
}

Stops stopsOf(const PatternEditor& editor) {
    Stops stops;
    for (std::size_t i = 0; i < editor.count(); ++i)
        stops.push_back({editor.stop(i).position(), editor.stop(i).color()});
    return stops;
}

Stops built(std::u16string_view pattern, std::int32_t rampWidth = 200) {
    return stopsOf(editorOf(pattern, rampWidth));
}

TEST(PatternEditor, HasTwoBlackEndsForTheEmptyString) { EXPECT_EQ(built(u""), (Stops{{0, 0}, {200, 0}})); }

TEST(PatternEditor, EndsInBlackAfterALoneStop) {
    EXPECT_EQ(built(u"0-255;"), (Stops{{0, kRed}, {200, 0}}));
    EXPECT_EQ(built(u"700-255;"), (Stops{{0, kRed}, {200, 0}}));
}

TEST(PatternEditor, TakesTwoStopsForTheEndsInTheirOrderWhateverTheirPositions) {
    EXPECT_EQ(built(u"0-255;1000-16711680;"), (Stops{{0, kRed}, {200, kBlue}}));
    EXPECT_EQ(built(u"1000-255;500-16711680;"), (Stops{{0, kRed}, {200, kBlue}}));
    EXPECT_EQ(built(u"0-255;50-16711680;"), (Stops{{0, kRed}, {200, kBlue}}));
}

TEST(PatternEditor, ExchangesTheSecondStopWithTheOneOfTheLargestPosition) {
    EXPECT_EQ(built(kRedWhiteBlue), (Stops{{0, kRed}, {200, kBlue}, {100, kWhite}}));
    EXPECT_EQ(built(u"0-1;250-2;1000-3;750-4;"), (Stops{{0, 1}, {200, 3}, {50, 2}, {150, 4}}));
}

TEST(PatternEditor, StartsWithTheSecondStopWhenTheFirstIsTheLargestOfSeveral) {
    EXPECT_EQ(built(u"1000-1;250-2;500-3;"), (Stops{{0, 2}, {200, 1}, {100, 3}}));
}

TEST(PatternEditor, TakesTheFirstOfEqualLargestPositionsForTheRightEnd) {
    EXPECT_EQ(built(u"0-1;500-2;1000-3;1000-4;"), (Stops{{0, 1}, {200, 3}, {100, 2}, {200, 4}}));
}

TEST(PatternEditor, ExchangesNothingWhenNoPositionIsAbove0) {
    EXPECT_EQ(built(u"0-1;0-2;0-3;"), (Stops{{0, 1}, {200, 2}, {0, 3}}));
}

TEST(PatternEditor, TakesPositionsForThousandthsAndDoesNotRescaleThem) {
    EXPECT_EQ(built(u"0-1;25-2;50-3;"), (Stops{{0, 1}, {200, 3}, {5, 2}}));
    EXPECT_EQ(built(u"0-1;1500-2;2000-3;"), (Stops{{0, 1}, {200, 3}, {300, 2}}));
}

TEST(PatternEditor, RoundsColumnsToNearestHalvesToEvenWithAScaleThatIsASingle) {
    // 250 / 1000 is exact: 2 is 0.5, 6 is 1.5, 7 is 1.75.
    EXPECT_EQ(built(u"0-0;2-1;1000-0;6-2;7-3;", 250), (Stops{{0, 0}, {250, 0}, {0, 1}, {2, 2}, {2, 3}}));
    // 255 / 1000 as a single is a little less, so that 500 is a little less than 127.5.
    EXPECT_EQ(built(u"0-0;500-1;1000-0;", 255), (Stops{{0, 0}, {255, 0}, {127, 1}}));
}

TEST(PatternEditor, ReadsMalformedTextAsPosition0OrBlack) {
    EXPECT_EQ(built(u"abc;7;x-255"), (Stops{{0, 0}, {200, 0}, {0, kRed}}));
}

TEST(PatternEditor, KeepsColorsUnchanged) {
    EXPECT_EQ(built(u"0--1;1000-2147483647;"), (Stops{{0, -1}, {200, 2147483647}}));
    EXPECT_EQ(editorOf(u"0--1;1000-2147483647;").pattern(), u"0--1;1000-2147483647;");
}

TEST(PatternEditor, SelectsTheStopMadeLast) {
    EXPECT_EQ(editorOf(u"").selected(), 1U);
    EXPECT_EQ(editorOf(u"0-255;").selected(), 1U);
    EXPECT_EQ(editorOf(kRedWhiteBlue).selected(), 2U);
}

TEST(PatternEditor, KeepsItsStopsWhenANumberIsTooLarge) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.select(0);
    EXPECT_EQ(errorNumberOf([&] { editor.build(u"0-1;99999999999-2;"); }), 6);
    EXPECT_EQ(editor.pattern(), kRedWhiteBlue);
    EXPECT_EQ(editor.selected(), 0U);
}

TEST(PatternEditor, HasNoLimitOfItsOwnForStops) {
    std::u16string pattern;
    for (int i = 0; i < 100'000; ++i) pattern += u"7-7;";
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.build(pattern);
    EXPECT_EQ(editor.count(), 100'000U);
    editor.add();
    EXPECT_EQ(editor.count(), 100'001U);
    EXPECT_EQ(editor.selected(), 100'000U);
}

TEST(PatternEditor, WritesPositionsOnTheScale0To1000WhateverTheWidth) {
    for (const std::int32_t width : {2, 20, 200, 400, 941}) {
        const std::u16string text = width == 941 ? u"0-255;499-16777215;1000-16711680;" : kRedWhiteBlue;
        EXPECT_EQ(editorOf(kRedWhiteBlue, width).pattern(), text) << width;  // 470 of 941
    }
}

TEST(PatternEditor, HasNoPatternAfterAllStopsAreDropped) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.clear();
    EXPECT_EQ(editor.count(), 0U);
    EXPECT_EQ(editor.pattern(), u"");
    EXPECT_FALSE(editor.removeSelected());
    EXPECT_FALSE(editor.move(2, 1));
    EXPECT_EQ(editor.neighbour(true), 0U);
}

TEST(PatternEditor, AddsABlackStopThreeColumnsRightOfTheMiddleAndSelectsIt) {
    PatternEditor editor = editorOf(u"0-255;1000-16711680;");
    editor.add();
    EXPECT_EQ(stopsOf(editor), (Stops{{0, kRed}, {200, kBlue}, {103, 0}}));
    EXPECT_EQ(editor.selected(), 2U);
    EXPECT_EQ(editor.pattern(), u"0-255;515-0;1000-16711680;");
}

TEST(PatternEditor, RoundsTheMiddleOfAnOddWidthHalvesToEven) {
    for (const auto& [width, column] : {std::pair{201, 104}, {203, 104}, {205, 106}}) {
        PatternEditor editor = editorOf(u"", width);
        editor.add();
        EXPECT_EQ(editor.stop(2).position(), column) << width;
    }
}

TEST(PatternEditor, ANewStopKnowsItsFractionOfTheRamp) {
    PatternEditor editor = editorOf(u"", 400);
    editor.add();
    EXPECT_EQ(editor.stop(2).percPosition(), static_cast<float>(203.0 / 400));
    EXPECT_EQ(editor.stop(0).percPosition(), 0.0F);
    EXPECT_EQ(editor.stop(1).percPosition(), 1.0F);
}

TEST(PatternEditor, RemovesNoEndStop) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    for (const std::size_t end : {PatternEditor::kLeftEnd, PatternEditor::kRightEnd}) {
        editor.select(end);
        EXPECT_FALSE(editor.removeSelected());
        EXPECT_EQ(editor.count(), 3U);
        EXPECT_EQ(editor.selected(), end);
    }
}

TEST(PatternEditor, RemovingMovesTheLastStopIntoTheGapAndSelectsTheNewLast) {
    PatternEditor editor = editorOf(u"0-1;250-2;1000-3;750-4;400-5;");
    editor.select(2);
    EXPECT_TRUE(editor.removeSelected());
    EXPECT_EQ(stopsOf(editor), (Stops{{0, 1}, {200, 3}, {80, 5}, {150, 4}}));
    EXPECT_EQ(editor.selected(), 3U);
    EXPECT_TRUE(editor.removeSelected());
    EXPECT_EQ(stopsOf(editor), (Stops{{0, 1}, {200, 3}, {80, 5}}));
    EXPECT_TRUE(editor.removeSelected());
    EXPECT_EQ(editor.selected(), 1U);
    EXPECT_FALSE(editor.removeSelected());
}

TEST(PatternEditor, MovesAStopByColumns) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    EXPECT_TRUE(editor.move(2, -40));
    EXPECT_EQ(editor.stop(2).position(), 60);
    EXPECT_EQ(editor.stop(2).percPosition(), 0.3F);
    EXPECT_FALSE(editor.move(2, 0));
    EXPECT_EQ(editor.pattern(), u"0-255;300-16777215;1000-16711680;");
}

TEST(PatternEditor, HoldsAMovedStopToTheRamp) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    EXPECT_TRUE(editor.move(2, 99));
    EXPECT_EQ(editor.stop(2).position(), 199);
    EXPECT_TRUE(editor.move(2, 1));
    EXPECT_EQ(editor.stop(2).position(), 200);
    EXPECT_FALSE(editor.move(2, 2147483647));
    EXPECT_TRUE(editor.move(2, -200));
    EXPECT_EQ(editor.stop(2).position(), 0);
    EXPECT_FALSE(editor.move(2, -2147483647 - 1));
    EXPECT_TRUE(editor.move(2, 2147483647));
    EXPECT_EQ(editor.stop(2).position(), 200);
}

TEST(PatternEditor, BringsAStopThatWasReadBeyondTheRampToItsEnd) {
    PatternEditor editor = editorOf(u"0-1;1500-2;2000-3;");
    EXPECT_TRUE(editor.move(2, -1));
    EXPECT_EQ(editor.stop(2).position(), 200);
}

TEST(PatternEditor, MovesNoEndStop) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    EXPECT_FALSE(editor.move(0, 5));
    EXPECT_FALSE(editor.move(1, -5));
    EXPECT_FALSE(editor.move(3, 5));
    EXPECT_EQ(editor.pattern(), kRedWhiteBlue);
}

TEST(PatternEditor, WritesNoStopAtTheColumnOfAnEnd) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.move(2, 1000);
    EXPECT_EQ(editor.pattern(), u"0-255;1000-16711680;");
    editor.move(2, -1000);
    EXPECT_EQ(editor.pattern(), u"0-255;1000-16711680;");
    editor.move(2, 100);
    EXPECT_EQ(editor.pattern(), kRedWhiteBlue);
}

TEST(PatternEditor, RecolorsAnyStop) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.setColor(0, kGreen);
    editor.setColor(1, kWhite);
    editor.setColor(2, kRed);
    EXPECT_EQ(editor.pattern(), u"0-65280;500-255;1000-16777215;");
}

TEST(PatternEditor, KeepsTheShapeWhenTheRampWidthChanges) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.select(0);
    editor.setRampWidth(400);
    EXPECT_EQ(stopsOf(editor), (Stops{{0, kRed}, {400, kBlue}, {200, kWhite}}));
    EXPECT_EQ(editor.stop(2).maxPos(), 400);
    EXPECT_EQ(editor.stop(2).percPosition(), 0.5F);
    EXPECT_EQ(editor.pattern(), kRedWhiteBlue);
    EXPECT_EQ(editor.selected(), 0U);
}

TEST(PatternEditor, ComesBackExactlyHoweverOftenTheRampIsResized) {
    PatternEditor editor = editorOf(u"0-255;333-65280;1000-16711680;", 941);
    editor.add();
    editor.move(3, -101);
    editor.add();
    editor.move(4, 1000);
    const Stops before = stopsOf(editor);
    EXPECT_EQ(before, (Stops{{0, kRed}, {941, kBlue}, {313, kGreen}, {373, 0}, {941, 0}}));
    for (std::int32_t width = 941; width > 0; width -= 7) {
        editor.setRampWidth(width);
        EXPECT_EQ(editor.stop(1).position(), width);
        EXPECT_EQ(editor.stop(4).position(), width);
    }
    editor.setRampWidth(941);
    EXPECT_EQ(stopsOf(editor), before);
}

TEST(PatternEditor, HasARampOfAtLeastOneColumn) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.setRampWidth(0);
    EXPECT_EQ(editor.rampWidth(), 1);
    editor.setRampWidth(-5);
    EXPECT_EQ(editor.rampWidth(), 1);
    EXPECT_EQ(editor.pattern(), u"0-255;1000-16711680;");
}

TEST(PatternEditor, GoesFromStopToStopAlongTheRamp) {
    PatternEditor editor = editorOf(u"0-1;750-2;1000-3;250-4;");  // columns 0, 200, 150, 50
    std::vector<std::size_t> order;
    editor.select(0);
    for (int i = 0; i < 4; ++i) {
        editor.select(editor.neighbour(true));
        order.push_back(editor.selected());
    }
    EXPECT_EQ(order, (std::vector<std::size_t>{3, 2, 1, 1}));
    order.clear();
    for (int i = 0; i < 4; ++i) {
        editor.select(editor.neighbour(false));
        order.push_back(editor.selected());
    }
    EXPECT_EQ(order, (std::vector<std::size_t>{2, 3, 0, 0}));
}

TEST(PatternEditor, ReachesStopsThatStandAtOneColumn) {
    PatternEditor editor = editorOf(kRedWhiteBlue);
    editor.move(2, 1000);
    editor.select(0);
    EXPECT_EQ(editor.neighbour(true), 2U);
    editor.select(2);
    EXPECT_EQ(editor.neighbour(true), 1U);
    EXPECT_EQ(editor.neighbour(false), 0U);
}

TEST(PercentText, HasOneDecimalAndADigitBeforeThePoint) {
    EXPECT_EQ(percentText(0.5F), u"50.0%");
    EXPECT_EQ(percentText(0.0F), u"0.0%");
    EXPECT_EQ(percentText(1.0F), u"100.0%");
    EXPECT_EQ(percentText(static_cast<float>(2.0 / 3)), u"66.7%");
    EXPECT_EQ(percentText(static_cast<float>(1.0 / 941)), u"0.1%");
    EXPECT_EQ(percentText(1.5F), u"150.0%");
}

TEST(PercentText, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(percentText(static_cast<float>(1.0 / 400)), u"0.3%");     // 0.25
    EXPECT_EQ(percentText(static_cast<float>(3.0 / 400)), u"0.8%");     // 0.75
    EXPECT_EQ(percentText(static_cast<float>(333.0 / 400)), u"83.3%");  // 83.25
}

TEST(FlagDrag, MovesAFlagByThePointersWay) {
    FlagDrag drag;
    drag.press(4, 108);
    EXPECT_EQ(drag.movement(9, 108), 5);
    EXPECT_EQ(drag.movement(9, 113), 5);
    EXPECT_EQ(drag.movement(-20, 118), -24);
}

TEST(FlagDrag, DoesNothingWhileThePointerStaysWhereItIs) {
    FlagDrag drag;
    drag.press(4, 108);
    EXPECT_EQ(drag.movement(4, 108), 0);
    EXPECT_EQ(drag.movement(9, 108), 5);
    EXPECT_EQ(drag.movement(4, 113), 0);  // the same place after the flag has followed
    EXPECT_EQ(drag.movement(4, 113), 0);
}

}  // namespace
}  // namespace test
}  // namespace vrx
