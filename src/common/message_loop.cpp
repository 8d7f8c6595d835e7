#include "common/message_loop.h"

#include <windows.h>

#include "com/fp_scope.h"

namespace vrx {
namespace {

// A window that never validates its update region has a paint message waiting for ever.
constexpr int kMaxMessages = 200;

}  // namespace

bool doEvents() {
    MSG message;
    for (int i = 0; i < kMaxMessages && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        const HostFpScope host;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return true;
}

}  // namespace vrx
