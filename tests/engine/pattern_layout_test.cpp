// Where the controls of the pattern editor stand.
#include "pattern/engine/pattern_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <vector>

namespace vrx {

inline void PrintTo(const Box& box, std::ostream* out) {
    *out << box.left << ',' << box.top << ' ' << box.width << 'x' << box.height;
}

namespace test {
namespace {

constexpr PatternTexts kTexts{13, 11, 18, 15, 34};
/// Half as large again.
constexpr PatternTexts kLargeTexts{20, 17, 27, 23, 51};

/// Inner areas of the narrowest window: with a classic frame, with that of Windows 10 and with its frame at
/// 144 dots per inch.
constexpr int kInner[][2] = {{241, 98}, {233, 85}, {227, 62}};

std::vector<Box> boxesOf(const PatternLayout& layout) {
    return {layout.ramp,      layout.plus,       layout.minus,     layout.legends[0],
            layout.values[0], layout.legends[1], layout.values[1], layout.legends[2],
            layout.values[2], layout.ok,         layout.cancel};
}

bool apart(const Box& a, const Box& b) {
    return a.right() <= b.left || b.right() <= a.left || a.bottom() <= b.top || b.bottom() <= a.top;
}

TEST(PatternWidth, IsKeptInTwipsAsTheScreenCountsThem15_12_Or10ToThePixelAt96_120_144Dpi) {
    EXPECT_EQ(twipsOf(249, 96), 3735);
    EXPECT_EQ(twipsOf(249, 120), 2988);
    EXPECT_EQ(twipsOf(249, 144), 2490);
    EXPECT_EQ(pixelsOf(3735, 96), 249);
    EXPECT_EQ(pixelsOf(3735, 120), 311);  // 311.25
    EXPECT_EQ(pixelsOf(3735, 144), 374);  // 373.5, halves to even
    EXPECT_EQ(pixelsOf(7200, 120), 600);
}

TEST(PatternWidth, OpensTheEditorAsWideAsItWasOnEveryScreen) {
    for (const int dpi : {72, 96, 120, 144, 168, 192, 288, 384, 480}) {
        for (int width = 249; width <= 1000; ++width) EXPECT_EQ(pixelsOf(twipsOf(width, dpi), dpi), width) << dpi;
    }
}

TEST(PatternLayout, NoControlOverlapsAnotherOrTheWindowsEdge) {
    for (const auto& [narrowest, height] : kInner) {
        for (int width = narrowest; width <= narrowest + 751; width += 13) {
            const std::vector<Box> boxes = boxesOf(layOutPattern(width, height, kTexts));
            for (std::size_t i = 0; i < boxes.size(); ++i) {
                EXPECT_TRUE(boxes[i].left >= 0 && boxes[i].top >= 0 && boxes[i].right() <= width &&
                            boxes[i].bottom() <= height)
                    << i << " at " << width << 'x' << height << ": " << testing::PrintToString(boxes[i]);
                for (std::size_t j = 0; j < i; ++j) EXPECT_TRUE(apart(boxes[i], boxes[j])) << i << ' ' << j;
            }
        }
    }
}

TEST(PatternLayout, AFlagsMiddleIsTheColumnOfItsStop) {
    const PatternLayout layout = layOutPattern(241, 98, kTexts);
    EXPECT_EQ(layout.ramp.left, kFlagOffset + kFlagWidth / 2);
}

TEST(PatternLayout, TheFlagOfTheRightEndKeepsClearOfTheButtons) {
    const PatternLayout layout = layOutPattern(233, 85, kTexts);
    EXPECT_LE(layout.ramp.width + kFlagOffset + kFlagWidth, layout.minus.left);
    EXPECT_LE(layout.flagTop() + kFlagHeight, layout.ok.top);
}

TEST(PatternLayout, AWiderWindowGivesItsWidthToTheRampAndUpTo75PixelsToEachButton) {
    const PatternLayout narrow = layOutPattern(241, 98, kTexts);
    const PatternLayout wide = layOutPattern(992, 98, kTexts);
    EXPECT_EQ(wide.ramp.width - narrow.ramp.width, 992 - 241);
    EXPECT_EQ(wide.ramp.height, narrow.ramp.height);
    EXPECT_EQ(wide.ok.width, 75);
    EXPECT_EQ(wide.cancel.width, 75);
}

TEST(PatternLayout, EveryControlFitsTheNarrowestWindow) {
    for (const auto& [width, height] : kInner) EXPECT_TRUE(patternFits(width, height, kTexts)) << width;
}

TEST(PatternLayout, LargeTextsDoNotFitTheNarrowestWindow) {
    for (const auto& [width, height] : kInner) EXPECT_FALSE(patternFits(width, height, kLargeTexts)) << width;
}

TEST(PatternLayout, ThereIsARampHoweverSmallTheWindowIs) {
    const PatternLayout layout = layOutPattern(0, 0, kLargeTexts);
    EXPECT_GE(layout.ramp.width, 1);
    EXPECT_GE(layout.ramp.height, 1);
}

}  // namespace
}  // namespace test
}  // namespace vrx
