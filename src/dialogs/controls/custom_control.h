// The base of a child window of our own kind: made with it, gone with it, its messages in one place.
#pragma once

#include <windows.h>

#include <optional>

#include "com/module.h"

namespace vrx {

/// A kind of control as the system knows it. The window class is there while any of its controls is, so that
/// none is left when the library goes.
struct ControlClass {
    const wchar_t* name;
    UINT style;
    int users = 0;
};

class CustomControl {
  public:
    CustomControl(const CustomControl&) = delete;
    CustomControl& operator=(const CustomControl&) = delete;
    virtual ~CustomControl();

    [[nodiscard]] HWND window() const { return window_; }

  protected:
    /// One of the plain kind, which hears of double clicks.
    CustomControl();
    explicit CustomControl(ControlClass& controlClass) : class_(controlClass) {}

    void create(HWND parent, int id, DWORD style, const RECT& place);
    /// Ends the window, as the destructor does; for a control whose members are to outlive it.
    void destroy();
    /// Nothing where the system is to answer.
    virtual std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer) = 0;

  private:
    class WindowClass {
      public:
        explicit WindowClass(ControlClass& controlClass);
        WindowClass(const WindowClass&) = delete;
        WindowClass& operator=(const WindowClass&) = delete;
        ~WindowClass();

        [[nodiscard]] const wchar_t* name() const { return class_.name; }

      private:
        ControlClass& class_;
    };

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer);

    ModuleLock lock_;
    WindowClass class_;
    HWND window_ = nullptr;
};

}  // namespace vrx
