// The window of the short message: a line or more of text in the middle of the screen, on top of all others.
#pragma once

#include <windows.h>

#include <string>

#include "com/module.h"
#include "com/win_resource.h"

namespace vrx {

/// Used and destroyed on the thread that made it. It never takes the focus.
class MessageWindow {
  public:
    /// Made hidden; `procedure` gets its messages.
    explicit MessageWindow(WNDPROC procedure);
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    ~MessageWindow();

    [[nodiscard]] HWND form() const { return form_; }
    /// False when the window has ended with its thread.
    [[nodiscard]] bool isAlive() const { return GetWindowThreadProcessId(form_, nullptr) == thread_; }
    [[nodiscard]] bool isOfThisThread() const { return thread_ == GetCurrentThreadId(); }

    void display(const std::u16string& message) const;
    void conceal() const;
    /// For a window that goes while its procedure runs: the code must outlast the procedure.
    void leaveModule() { static_cast<void>(module_.release()); }

  private:
    /// Leaves the class to a window that still needs it.
    class WindowClass {
      public:
        explicit WindowClass(WNDPROC procedure);
        WindowClass(const WindowClass&) = delete;
        WindowClass& operator=(const WindowClass&) = delete;
        ~WindowClass();
    };

    // In this order: first the window goes, then what it needs to its end, and the code last.
    Module module_;
    Font font_;
    WindowClass windowClass_;
    DWORD thread_ = GetCurrentThreadId();
    HWND form_ = nullptr;
    HWND label_ = nullptr;
};

}  // namespace vrx
