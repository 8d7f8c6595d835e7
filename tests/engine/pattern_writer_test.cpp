// Writing rules of the pattern editor: from stops to a pattern string.
#include "pattern/engine/pattern_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "failure.h"
#include "pattern/engine/modPattern.h"

namespace vrx::test {
namespace {

constexpr int kDivisionByZero = 11;

std::u16string write(std::int32_t rampWidth, const std::vector<PatternItem>& items) {
    std::vector<CVrxPatternColor> stops;
    for (const PatternItem& item : items) {
        CVrxPatternColor& stop = stops.emplace_back();
        stop.setMaxPos(rampWidth);
        stop.setPosition(item.position);
        stop.setColor(item.color);
    }
    return writePattern(stops, rampWidth);
}

TEST(PatternWriter, ARedToBlueRampWithAWhiteStopInTheMiddleHasThreeItems) {
    EXPECT_EQ(write(200, {{0, 255}, {200, 16711680}, {100, 16777215}}), u"0-255;500-16777215;1000-16711680;");
}

TEST(PatternWriter, PositionsAreOnTheScale0To1000WhateverTheWidth) {
    for (const std::int32_t width : {2, 100, 200, 400, 800}) {
        EXPECT_EQ(write(width, {{0, 1}, {width, 2}, {width / 2, 3}}), u"0-1;500-3;1000-2;") << width;
    }
}

TEST(PatternWriter, PositionsRoundToTheNearestThousandthHalvesToEven) {
    // 1000 / 400 is 2.5 exactly.
    EXPECT_EQ(write(400, {{0, 0}, {400, 0}, {1, 1}, {3, 3}, {5, 5}}), u"0-0;2-1;8-3;12-5;1000-0;");
    EXPECT_EQ(write(300, {{0, 0}, {300, 0}, {1, 1}, {2, 2}}), u"0-0;3-1;7-2;1000-0;");
}

TEST(PatternWriter, TheFactorIsASingleAndTheProductIsNot) {
    // 1000 / 48 as a single is 2^-19 / 3 too large. Three times that is 62.5 and 2^-19, which only a product
    // that is a single, too, would round to 62.5.
    EXPECT_EQ(write(48, {{0, 0}, {48, 0}, {3, 1}}), u"0-0;63-1;1000-0;");
}

TEST(PatternWriter, ColorsAreWrittenUnchanged) {
    EXPECT_EQ(write(10, {{0, -1}, {10, 2147483647}}), u"0--1;1000-2147483647;");
}

TEST(PatternWriter, AmongEqualPositionsTheFirstInTheListWins) {
    EXPECT_EQ(write(100, {{0, 1}, {100, 2}, {50, 3}, {50, 4}, {0, 5}, {100, 6}}), u"0-1;500-3;1000-2;");
}

TEST(PatternWriter, NothingIsWrittenOnceTheWidthIsReached) {
    EXPECT_EQ(write(100, {{0, 1}, {100, 2}, {120, 3}}), u"0-1;1000-2;");
    EXPECT_EQ(write(100, {{0, 1}, {120, 3}, {130, 4}}), u"0-1;1200-3;");
}

TEST(PatternWriter, AStopAtNegativePositionIsNotWritten) {
    EXPECT_EQ(write(100, {{-5, 1}, {0, 2}, {100, 3}}), u"0-2;1000-3;");
}

TEST(PatternWriter, AStop1000UnitsOrMoreBeyondTheCurrentOneIsNotFound) {
    EXPECT_EQ(write(2000, {{0, 1}, {999, 2}, {2000, 3}}), u"0-1;500-2;");
    EXPECT_EQ(write(2000, {{0, 1}, {1000, 2}, {2000, 3}}), u"0-1;");
    EXPECT_EQ(write(2000, {{999, 1}}), u"");
    EXPECT_EQ(write(2000, {{998, 1}}), u"499-1;");
}

TEST(PatternWriter, NoStopsWriteTheEmptyString) { EXPECT_EQ(write(100, {}), u""); }

TEST(PatternWriter, ARampWithoutWidthDividesByZero) {
    EXPECT_EQ(errorNumberOf([] { static_cast<void>(writePattern({}, 0)); }), kDivisionByZero);
}

}  // namespace
}  // namespace vrx::test
