// A mouse wheel's turns as pixels to scroll.
#pragma once

#include <cstdint>

namespace vrx {

/// What a wheel tells for one notch; finer wheels tell less at a time.
inline constexpr int kWheelNotch = 120;

/// Pixels for one notch: the user's lines, and a page at most, as for the largest number, which stands for
/// one.
[[nodiscard]] int pixelsOfNotch(std::uint32_t lines, int line, int page);

/// Adds up what is less than a pixel.
class WheelTurns {
  public:
    /// Pixels for the next turn. What is left of turns in the other direction is forgotten.
    [[nodiscard]] int pixels(int turn, int notch);

  private:
    std::int64_t left_ = 0;  // in pixels times kWheelNotch
};

}  // namespace vrx
