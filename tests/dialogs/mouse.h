// The mouse itself, rather than the messages that it sends.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "window_driver.h"

namespace host {

/// Within the screen; where it is meant to be when this returns.
inline void moveMouse(POINT target) {
    target.x = std::clamp<LONG>(target.x, 0, GetSystemMetrics(SM_CXSCREEN) - 1);
    target.y = std::clamp<LONG>(target.y, 0, GetSystemMetrics(SM_CYSCREEN) - 1);
    EXPECT_TRUE(eventually([&] {
        POINT place{};
        SetCursorPos(target.x, target.y);
        GetCursorPos(&place);
        return place.x == target.x && place.y == target.y;
    }));
}

/// The system's pointer that a window shows where the mouse is; null for one of the window's own.
inline LPCWSTR pointerOver(HWND window) {
    const DWORD thread = GetWindowThreadProcessId(window, nullptr);
    AttachThreadInput(GetCurrentThreadId(), thread, TRUE);
    SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    const HCURSOR shown = GetCursor();
    AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
    for (const LPCWSTR name : {IDC_ARROW, IDC_CROSS, IDC_WAIT}) {
        if (shown == LoadCursorW(nullptr, name)) return name;
    }
    return nullptr;
}

}  // namespace host
