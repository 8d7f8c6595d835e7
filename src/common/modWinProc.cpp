#include "common/modWinProc.h"

namespace vrx {
namespace {

// What the window had before.
WNDPROC OldWindowProc = nullptr;

WNDPROC exchangeProc(HWND window, WNDPROC procedure) {
    const LONG_PTR old = SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return reinterpret_cast<WNDPROC>(old);
}

}  // namespace

LRESULT CALLBACK Pattern_WindowProc(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    if (message != WM_GETMINMAXINFO) return CallWindowProcW(OldWindowProc, window, message, wide, longer);
    auto* const limits = reinterpret_cast<MINMAXINFO*>(longer);
    limits->ptMinTrackSize = kSmallestPatternWindow;
    limits->ptMaxTrackSize = kLargestPatternWindow;
    return 0;
}

void installPatternProc(HWND window) { OldWindowProc = exchangeProc(window, Pattern_WindowProc); }

void removePatternProc(HWND window) { exchangeProc(window, OldWindowProc); }

}  // namespace vrx
