#include "dialogs/controls/custom_control.h"

#include <mutex>
#include <utility>

#include "com/entry.h"
#include "com/win32_error.h"

namespace vrx {
namespace {

constinit ControlClass plainClass{L"VrxCommon.Control", CS_DBLCLKS};

/// For the users of every class.
std::mutex classGuard;

}  // namespace

CustomControl::WindowClass::WindowClass(ControlClass& controlClass) : class_(controlClass) {
    const std::lock_guard lock(classGuard);
    if (class_.users == 0) {
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.style = class_.style;
        description.lpfnWndProc = procedure;
        description.hInstance = moduleInstance();
        description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        description.lpszClassName = class_.name;
        // A window that ended with its thread has left the class behind.
        if (!RegisterClassExW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
            throw win32Error(GetLastError());
    }
    ++class_.users;
}

CustomControl::WindowClass::~WindowClass() {
    const std::lock_guard lock(classGuard);
    if (--class_.users == 0) UnregisterClassW(class_.name, moduleInstance());
}

CustomControl::CustomControl() : CustomControl(plainClass) {}

CustomControl::~CustomControl() { destroy(); }

void CustomControl::destroy() {
    if (!window_) return;
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(std::exchange(window_, nullptr));
}

void CustomControl::create(HWND parent, int id, DWORD style, const RECT& place) {
    window_ = CreateWindowExW(0, class_.name(), L"", WS_CHILD | WS_CLIPSIBLINGS | style, place.left,
                              place.top, place.right - place.left, place.bottom - place.top, parent,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), moduleInstance(), this);
    if (!window_) throw win32Error(GetLastError());
    // The parent hears of it before we do, and may have ended it by now.
    if (!IsWindow(window_)) window_ = nullptr;
}

LRESULT CALLBACK CustomControl::procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    const Entry entry;
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(longer);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* control = reinterpret_cast<CustomControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (control && message == WM_NCDESTROY) control->window_ = nullptr;
    if (control && control->window_ == window) {
        try {
            if (const auto answer = control->handle(message, wide, longer)) return *answer;
        } catch (...) {
            // What fails here has no caller to fail to: the control stays as it is.
            return 0;
        }
    }
    return DefWindowProcW(window, message, wide, longer);
}

}  // namespace vrx
