#include "pattern/engine/pattern_layout.h"

#include <algorithm>

#include "ground/rounding.h"

namespace vrx {
namespace {

constexpr double kTwipsPerInch = 1440;

constexpr int kMargin = 8;
constexpr int kTopMargin = 5;
constexpr int kBottomMargin = 4;
constexpr int kGap = 4;
constexpr int kSideButton = 20;
constexpr int kLegendGap = 2;
constexpr int kValueGap = 7;
constexpr int kWidestButton = 75;
constexpr int kLowestRamp = 12;

/// Frame and padding of a button around its text.
constexpr int kButtonPadding = 14;
constexpr int kRowPadding = 6;

// The middle of a flag is the column of its stop.
constexpr int kRampLeft = kFlagOffset + kFlagWidth / 2;

int buttonWidth(int text) { return text + kButtonPadding; }

int valuesWidth(const PatternTexts& texts) {
    return 3 * (texts.legend + kLegendGap + texts.value) + 2 * kValueGap;
}

int rowWidth(const PatternTexts& texts) {
    return kMargin + valuesWidth(texts) + 2 * kGap + buttonWidth(texts.ok) + kGap +
           buttonWidth(texts.cancel) + kMargin;
}

int rampHeight(int height, const PatternTexts& texts) {
    const int row = texts.height + kRowPadding;
    return height - kTopMargin - kMarkerHeight - kFlagHeight - kGap - row - kBottomMargin;
}

}  // namespace

std::int32_t twipsOf(std::int32_t pixels, int dpi) { return toInt32(pixels * kTwipsPerInch / dpi); }

std::int32_t pixelsOf(std::int32_t twips, int dpi) {
    return toInt32(twips * static_cast<double>(dpi) / kTwipsPerInch);
}

PatternLayout layOutPattern(int width, int height, const PatternTexts& texts) {
    PatternLayout layout{};
    const int column = width - kMargin - kSideButton;
    const int rampRight = column - kGap - (kFlagWidth + 1) / 2;
    layout.ramp = {kRampLeft, kTopMargin, std::max(rampRight - kRampLeft, 1),
                   std::max(rampHeight(height, texts), 1)};

    const int half = (layout.flagTop() + kFlagHeight - kTopMargin) / 2;
    layout.plus = {column, kTopMargin, kSideButton, half};
    layout.minus = {column, layout.flagTop() + kFlagHeight - half, kSideButton, half};

    const int rowHeight = texts.height + kRowPadding;
    const int row = std::max(height - kBottomMargin - rowHeight, layout.flagTop() + kFlagHeight);
    int left = kMargin;
    for (int i = 0; i < 3; ++i) {
        layout.legends[i] = {left, row + kRowPadding / 2, texts.legend, texts.height};
        layout.values[i] = {layout.legends[i].right() + kLegendGap, row + kRowPadding / 2, texts.value,
                            texts.height};
        left = layout.values[i].right() + kValueGap;
    }

    // The buttons share what is left over, up to their usual width.
    const int spare = std::max(width - rowWidth(texts), 0) / 2;
    const int cancel =
        std::max(std::min(buttonWidth(texts.cancel) + spare, kWidestButton), buttonWidth(texts.cancel));
    const int ok = std::max(std::min(buttonWidth(texts.ok) + spare, kWidestButton), buttonWidth(texts.ok));
    layout.cancel = {width - kMargin - cancel, row, cancel, rowHeight};
    layout.ok = {layout.cancel.left - kGap - ok, row, ok, rowHeight};
    return layout;
}

bool patternFits(int width, int height, const PatternTexts& texts) {
    return rowWidth(texts) <= width && rampHeight(height, texts) >= kLowestRamp;
}

}  // namespace vrx
