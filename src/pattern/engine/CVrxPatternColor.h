// One colour stop of the pattern editor.
#pragma once

#include <cstdint>

namespace vrx {

class CVrxPatternColor {
  public:
    [[nodiscard]] std::int32_t color() const { return color_; }
    void setColor(std::int32_t color) { color_ = color; }

    /// Place on the ramp, 0 to `maxPos`.
    [[nodiscard]] std::int32_t position() const { return position_; }
    /// Also refreshes `percPosition`: division by zero while `maxPos` is 0.
    void setPosition(std::int32_t position);

    [[nodiscard]] std::int32_t maxPos() const { return maxPos_; }
    /// Leaves `percPosition` as it is until the next position: set the length of the ramp first.
    void setMaxPos(std::int32_t maxPos) { maxPos_ = maxPos; }

    /// The place as a fraction of the ramp, 0 to 1.
    [[nodiscard]] float percPosition() const { return percPosition_; }

  private:
    std::int32_t color_ = 0;
    std::int32_t position_ = 0;
    std::int32_t maxPos_ = 0;
    float percPosition_ = 0.0F;
};

}  // namespace vrx
