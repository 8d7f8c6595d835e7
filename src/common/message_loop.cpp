#include "common/message_loop.h"

#include <windows.h>

#include "com/fp_scope.h"
#include "com/module.h"

namespace vrx {
namespace {

// A window that never validates its update region has a paint message waiting for ever.
constexpr int kMaxMessages = 200;

constexpr DWORD kDialogClass = 32770;

bool isOwnDialog(HWND window) {
    return GetClassLongW(window, GCW_ATOM) == kDialogClass &&
           reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window, GWLP_HINSTANCE)) == moduleInstance();
}

/// Tab, arrows, Enter and Esc in one of the library's own dialogs.
bool isForDialog(MSG& message) {
    const HWND dialog = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    if (!dialog || !isOwnDialog(dialog)) return false;
    const bool enter = message.message == WM_KEYDOWN && message.wParam == VK_RETURN;
    if (enter && SendMessageW(dialog, kEnterPressed, 0, reinterpret_cast<LPARAM>(message.hwnd))) return true;
    return IsDialogMessageW(dialog, &message);
}

}  // namespace

bool doEvents() {
    MSG message;
    for (int i = 0; i < kMaxMessages && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        const HostFpScope host;
        if (isForDialog(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return true;
}

}  // namespace vrx
