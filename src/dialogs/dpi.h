// The resolution that a window is drawn in, dots per inch.
#pragma once

#include <windows.h>

namespace vrx {

/// The resolution that lengths are designed in.
inline constexpr int kDesignDpi = 96;

/// The window's own resolution where the system knows one for each window, otherwise the screen's.
[[nodiscard]] int dpiOf(HWND window);

/// The resolution that the sizes of pictures are converted with.
struct ScreenDpi {
    int x;
    int y;
};
[[nodiscard]] ScreenDpi screenDpi();

}  // namespace vrx
