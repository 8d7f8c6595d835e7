#include "common/message_window.h"

#include <algorithm>

#include "com/variant_convert.h"
#include "com/win32_error.h"

namespace vrx {
namespace {

constexpr wchar_t kClassName[] = L"VrxCommon.frmMessage";
constexpr int kMargin = 12;

/// COM takes the library out of memory without asking when a program is done with COM; a window that is
/// still there needs its procedure.
Module holdModuleOf(WNDPROC procedure) {
    Module module;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(procedure),
                       module.put());
    return module;
}

Font messageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

/// Width of the widest line and height of all lines, at least of one.
SIZE extentOf(const std::wstring& text, HFONT font) {
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    SelectObject(dc.get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc.get(), &metrics);
    RECT area{};
    DrawTextW(dc.get(), text.c_str(), -1, &area, DT_CALCRECT | DT_NOPREFIX | DT_EXPANDTABS);
    return {area.right, std::max(area.bottom, metrics.tmHeight)};
}

}  // namespace

MessageWindow::WindowClass::WindowClass(WNDPROC procedure) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = procedure;
    description.hInstance = moduleInstance();
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszClassName = kClassName;
    // A window that ended with its thread has left the class behind.
    if (!RegisterClassExW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        throw win32Error(GetLastError());
    }
}

MessageWindow::WindowClass::~WindowClass() { UnregisterClassW(kClassName, moduleInstance()); }

MessageWindow::MessageWindow(WNDPROC procedure)
    : module_(holdModuleOf(procedure)), font_(messageFont()), windowClass_(procedure) {
    form_ = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClassName, L"", WS_POPUP | WS_BORDER, 0, 0,
                            0, 0, nullptr, nullptr, moduleInstance(), nullptr);
    if (!form_) throw win32Error(GetLastError());
    label_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_LEFTNOWORDWRAP | SS_NOPREFIX, 0, 0,
                             0, 0, form_, nullptr, moduleInstance(), nullptr);
    SendMessageW(label_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
}

MessageWindow::~MessageWindow() {
    if (isAlive()) DestroyWindow(form_);
}

void MessageWindow::display(const std::u16string& message) const {
    const std::wstring text = toWide(message);
    const SIZE extent = extentOf(text, font_.get());
    const int width = extent.cx + 2 * kMargin;
    const int height = extent.cy + 2 * kMargin;
    SetWindowTextW(form_, text.c_str());
    SetWindowTextW(label_, text.c_str());
    MoveWindow(label_, kMargin - GetSystemMetrics(SM_CXBORDER), kMargin - GetSystemMetrics(SM_CYBORDER),
               extent.cx, extent.cy, TRUE);
    SetWindowPos(form_, HWND_TOPMOST, (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                 (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height,
                 SWP_NOACTIVATE | SWP_SHOWWINDOW);
    RedrawWindow(form_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void MessageWindow::conceal() const {
    SetWindowPos(form_, HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_HIDEWINDOW);
}

}  // namespace vrx
