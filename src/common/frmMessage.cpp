#include "common/frmMessage.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "com/module.h"
#include "com/variant_convert.h"
#include "com/win32_error.h"
#include "com/win_resource.h"
#include "common/message_loop.h"

namespace vrx::frmMessage {
namespace {

constexpr wchar_t kClassName[] = L"VrxCommon.frmMessage";
constexpr int kMargin = 12;

// Posted to the window by other threads: that the messages have changed, and a lock of the module to give back.
constexpr UINT kMessagesChanged = WM_APP;
constexpr UINT kUnlockModule = WM_APP + 1;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer);

class WindowClass {
  public:
    WindowClass() {
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
    WindowClass(const WindowClass&) = delete;
    WindowClass& operator=(const WindowClass&) = delete;
    /// Leaves the class to a window that still needs it.
    ~WindowClass() { UnregisterClassW(kClassName, moduleInstance()); }
};

/// COM takes the library out of memory without asking when a program is done with COM; a window that is
/// still there needs its procedure.
Module holdModule() {
    Module module;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&procedure),
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

/// The window, used and destroyed on the thread that made it.
class MessageWindow {
  public:
    MessageWindow() {
        form_ = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClassName, L"", WS_POPUP | WS_BORDER, 0,
                                0, 0, 0, nullptr, nullptr, moduleInstance(), nullptr);
        if (!form_) throw win32Error(GetLastError());
        label_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_LEFTNOWORDWRAP | SS_NOPREFIX,
                                 0, 0, 0, 0, form_, nullptr, moduleInstance(), nullptr);
        SendMessageW(label_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    }
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    ~MessageWindow() {
        if (isAlive()) DestroyWindow(form_);
    }

    [[nodiscard]] HWND form() const { return form_; }
    /// False when the window has ended with its thread.
    [[nodiscard]] bool isAlive() const { return GetWindowThreadProcessId(form_, nullptr) == thread_; }
    [[nodiscard]] bool isOfThisThread() const { return thread_ == GetCurrentThreadId(); }

    void display(const std::u16string& message) const {
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
    void conceal() const {
        SetWindowPos(form_, HWND_NOTOPMOST, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_HIDEWINDOW);
    }
    /// For a window that goes while its procedure runs: the code must outlast the procedure.
    void leaveModule() { static_cast<void>(module_.release()); }

  private:
    Module module_ = holdModule();
    Font font_ = messageFont();
    WindowClass windowClass_;
    DWORD thread_ = GetCurrentThreadId();
    HWND form_ = nullptr;
    HWND label_ = nullptr;
};

/// What all threads share. Nothing that may run other code happens under the guard.
struct SharedForm {
    std::mutex guard;
    /// While there are any they hold a lock of the module.
    std::vector<std::u16string> messages;
    // Owned, but never destroyed with the module: windows are none of a module's business when a program
    // ends.
    MessageWindow* window = nullptr;
};

SharedForm shared;

/// The window, where it belongs to this thread. No other thread takes it away.
MessageWindow* windowOfThisThread() {
    const std::lock_guard lock(shared.guard);
    return shared.window && shared.window->isOfThisThread() ? shared.window : nullptr;
}

/// Brings the window of this thread in line with the messages.
void refresh() {
    MessageWindow* const window = windowOfThisThread();
    if (!window) return;
    std::optional<std::u16string> message;
    {
        const std::lock_guard lock(shared.guard);
        if (!shared.messages.empty()) message = shared.messages.back();
    }
    message ? window->display(*message) : window->conceal();
}

/// For a change made by another thread; it has no one to fail to.
void refreshQuietly() noexcept {
    try {
        refresh();
    } catch (...) {
        return;
    }
}

/// The window that nobody needs any more, for its end on this thread. One of another thread gets a lock of the
/// module to give back there, with which it comes here again.
std::unique_ptr<MessageWindow> takeUnused() {
    const std::lock_guard lock(shared.guard);
    if (!shared.window || !shared.messages.empty() || moduleInUse()) return nullptr;
    if (shared.window->isAlive() && !shared.window->isOfThisThread()) {
        lockModule();
        PostMessageW(shared.window->form(), kUnlockModule, 0, 0);
        return nullptr;
    }
    return std::unique_ptr<MessageWindow>(std::exchange(shared.window, nullptr));
}

void closeUnused() noexcept { takeUnused().reset(); }

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
        case WM_CLOSE:
            // Only hide() takes a message away.
            return 0;
        case kMessagesChanged:
            refreshQuietly();
            return 0;
        case kUnlockModule:
            if (MessageWindow* const own = windowOfThisThread()) own->leaveModule();
            unlockModule();
            return 0;
        default:
            return DefWindowProcW(window, message, wide, longer);
    }
}

/// Makes the window where there is none that lives.
void ensureWindow() {
    const auto lives = [] { return shared.window && shared.window->isAlive(); };
    {
        const std::lock_guard lock(shared.guard);
        if (lives()) return;
    }
    whenUnused(closeUnused);
    auto made = std::make_unique<MessageWindow>();
    const std::lock_guard lock(shared.guard);
    if (!lives()) made.reset(std::exchange(shared.window, made.release()));
}

/// Brings the window in line with the messages; one of another thread as soon as that takes its messages.
void update() {
    ensureWindow();
    if (windowOfThisThread()) {
        refresh();
    } else {
        const std::lock_guard lock(shared.guard);
        if (shared.window) PostMessageW(shared.window->form(), kMessagesChanged, 0, 0);
    }
    static_cast<void>(doEvents());
}

}  // namespace

void show(const std::u16string& message) {
    ensureWindow();
    {
        const std::lock_guard lock(shared.guard);
        shared.messages.push_back(message);
        if (shared.messages.size() == 1) lockModule();
    }
    update();
}

bool hide() {
    bool last = false;
    {
        const std::lock_guard lock(shared.guard);
        if (shared.messages.empty()) return false;
        shared.messages.pop_back();
        last = shared.messages.empty();
    }
    if (last) unlockModule();
    update();
    return last;
}

}  // namespace vrx::frmMessage
