// A trackbar of a dialog with a scale, its ticks, and steps for the keyboard.
#pragma once

#include <windows.h>

#include "dialogs/engine/slider_values.h"

namespace vrx {

class Slider {
  public:
    /// Takes a trackbar and puts it at the scale's designed position.
    void attach(HWND trackbar, const SliderScale& scale);
    [[nodiscard]] HWND window() const { return window_; }

    [[nodiscard]] int position() const;
    /// The nearest position of the scale.
    void setPosition(int position);
    /// Whether the user has moved it since its position was taken. Notifications come without a move as well.
    [[nodiscard]] bool moved() const { return position() != known_; }
    /// The position, which is known from now on.
    [[nodiscard]] int take();

  private:
    HWND window_ = nullptr;
    int known_ = 0;
};

}  // namespace vrx
