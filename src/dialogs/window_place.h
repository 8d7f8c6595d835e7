// Where windows stand.
#pragma once

#include <windows.h>

namespace vrx {

/// With its frame.
[[nodiscard]] inline SIZE outerSize(HWND window) {
    RECT outer{};
    GetWindowRect(window, &outer);
    return {outer.right - outer.left, outer.bottom - outer.top};
}

/// In its parent's inner area.
[[nodiscard]] inline RECT placeInParent(HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

}  // namespace vrx
