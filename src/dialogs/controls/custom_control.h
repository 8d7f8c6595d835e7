// The base of a child window of our own kind: made with it, gone with it, its messages in one place.
#pragma once

#include <windows.h>

#include <optional>

#include "com/module.h"

namespace vrx {

class CustomControl {
  public:
    CustomControl(const CustomControl&) = delete;
    CustomControl& operator=(const CustomControl&) = delete;
    virtual ~CustomControl();

    [[nodiscard]] HWND window() const { return window_; }

  protected:
    CustomControl() = default;

    void create(HWND parent, int id, DWORD style, const RECT& place);
    /// Nothing where the system is to answer.
    virtual std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer) = 0;

  private:
    /// The window class is there while any control is, so that none is left when the library goes.
    class WindowClass {
      public:
        WindowClass();
        WindowClass(const WindowClass&) = delete;
        WindowClass& operator=(const WindowClass&) = delete;
        ~WindowClass();
    };

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer);

    ModuleLock lock_;
    WindowClass windowClass_;
    HWND window_ = nullptr;
};

}  // namespace vrx
