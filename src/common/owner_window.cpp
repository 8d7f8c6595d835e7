#include "common/owner_window.h"

namespace vrx {
namespace {

/// A window that the user works in; what only shows something, like the short message, is none.
bool isMainWindow(HWND window) {
    return IsWindowVisible(window) && !GetWindow(window, GW_OWNER) &&
           !(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_NOACTIVATE);
}

BOOL CALLBACK takeMainWindow(HWND window, LPARAM found) {
    if (!isMainWindow(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = GetLastActivePopup(window);
    return FALSE;
}

}  // namespace

HWND ownerWindow() {
    HWND owner = GetActiveWindow();
    if (!IsWindowVisible(owner)) owner = nullptr;
    if (!owner) EnumThreadWindows(GetCurrentThreadId(), takeMainWindow, reinterpret_cast<LPARAM>(&owner));
    return owner;
}

}  // namespace vrx
