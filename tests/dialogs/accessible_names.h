// A dialog as a screen reader tells it: what has the focus, and the names of what the keyboard reaches.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "window_driver.h"

namespace host {

inline HWND focusIn(HWND dialog) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
    return info.hwndFocus;
}

inline std::wstring classOf(HWND window) {
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    return name;
}

/// The control's own text, or the label before it where the text is what the user works with.
inline std::wstring nameOf(HWND control) {
    const std::wstring kind = classOf(control);
    if (kind == L"Button" || kind == L"VrxCommon.PictureView") return captionOf(control);
    const HWND before = GetWindow(control, GW_HWNDPREV);
    return before && classOf(before) == L"Static" ? captionOf(before) : L"";
}

/// Of the controls that the keyboard reaches now, in their order.
inline std::vector<std::wstring> namesOfTabStops(HWND dialog) {
    std::vector<std::wstring> names;
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        const auto style = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
        if ((style & (WS_TABSTOP | WS_VISIBLE | WS_DISABLED)) == (WS_TABSTOP | WS_VISIBLE))
            names.push_back(nameOf(control));
    }
    return names;
}

}  // namespace host
