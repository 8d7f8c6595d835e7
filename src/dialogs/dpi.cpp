#include "dialogs/dpi.h"

#include "com/system_function.h"
#include "common/device_context.h"
#include "ground/error.h"

namespace vrx {
namespace {

using GetDpiForWindow = UINT(WINAPI*)(HWND);

/// There since Windows 10.
GetDpiForWindow findGetDpiForWindow() {
    return systemFunction<GetDpiForWindow>(L"user32.dll", "GetDpiForWindow");
}

}  // namespace

int dpiOf(HWND window) {
    if (const GetDpiForWindow ask = findGetDpiForWindow()) return static_cast<int>(ask(window));
    return screenDpi().y;
}

ScreenDpi screenDpi() {
    const WindowDc screen(nullptr);
    if (!screen) throw platformError(Platform::OutOfMemory);
    return {GetDeviceCaps(screen.get(), LOGPIXELSX), GetDeviceCaps(screen.get(), LOGPIXELSY)};
}

}  // namespace vrx
