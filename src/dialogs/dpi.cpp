#include "dialogs/dpi.h"

#include "common/device_context.h"

namespace vrx {
namespace {

using GetDpiForWindow = UINT(WINAPI*)(HWND);

/// There since Windows 10.
GetDpiForWindow findGetDpiForWindow() {
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
    return reinterpret_cast<GetDpiForWindow>(reinterpret_cast<void*>(found));
}

}  // namespace

int dpiOf(HWND window) {
    if (const GetDpiForWindow ask = findGetDpiForWindow()) return static_cast<int>(ask(window));
    return screenDpi().y;
}

ScreenDpi screenDpi() {
    const WindowDc screen(nullptr);
    return {GetDeviceCaps(screen.get(), LOGPIXELSX), GetDeviceCaps(screen.get(), LOGPIXELSY)};
}

}  // namespace vrx
