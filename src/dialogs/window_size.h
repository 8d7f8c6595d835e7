// The size of a window with its frame.
#pragma once

#include <windows.h>

namespace vrx {

[[nodiscard]] inline SIZE outerSize(HWND window) {
    RECT outer{};
    GetWindowRect(window, &outer);
    return {outer.right - outer.left, outer.bottom - outer.top};
}

}  // namespace vrx
