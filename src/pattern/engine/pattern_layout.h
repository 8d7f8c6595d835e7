// Where the controls of the pattern editor stand, for an inner size and the sizes of its texts, in pixels.
// The ramp and the flags below it take what the row of values and buttons leaves.
#pragma once

#include <cstdint>

namespace vrx {

/// Twips as the screen counts them: 15, 12 or 10 to the pixel at 96, 120 or 144 dots per inch.
[[nodiscard]] std::int32_t twipsOf(std::int32_t pixels, int dpi);
/// The nearest number of pixels, halves to even.
[[nodiscard]] std::int32_t pixelsOf(std::int32_t twips, int dpi);

/// A flag's left edge is this much to the right of its stop's column, counted from the ramp's own columns.
inline constexpr int kFlagOffset = 8;
inline constexpr int kFlagWidth = 11;
inline constexpr int kFlagHeight = 13;
/// The line between a flag and its column of the ramp.
inline constexpr int kMarkerHeight = 3;

struct Box {
    int left;
    int top;
    int width;
    int height;

    [[nodiscard]] constexpr int right() const { return left + width; }
    [[nodiscard]] constexpr int bottom() const { return top + height; }
    bool operator==(const Box&) const = default;
};

/// Sizes of texts in the font that the controls have.
struct PatternTexts {
    int height;
    int legend;  ///< the widest of the names before the values
    int value;
    int ok;
    int cancel;
};

struct PatternLayout {
    Box ramp;
    Box plus;
    Box minus;
    Box legends[3];
    Box values[3];
    Box ok;
    Box cancel;

    [[nodiscard]] int markerTop() const { return ramp.bottom(); }
    [[nodiscard]] int flagTop() const { return ramp.bottom() + kMarkerHeight; }
};

[[nodiscard]] PatternLayout layOutPattern(int width, int height, const PatternTexts& texts);

/// Whether nothing has to overlap and the ramp is still to be seen.
[[nodiscard]] bool patternFits(int width, int height, const PatternTexts& texts);

}  // namespace vrx
