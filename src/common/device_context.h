// Device contexts and what is selected into them, each for as long as its owner exists.
#pragma once

#include <windows.h>

#include "com/win_resource.h"

namespace vrx {

/// A window's context; the screen's for no window.
class WindowDc {
  public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    ~WindowDc() {
        if (dc_) ReleaseDC(window_, dc_);
    }

    explicit operator bool() const { return dc_ != nullptr; }
    [[nodiscard]] HDC get() const { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

/// Between the messages that begin and end a window's painting.
class Painting {
  public:
    explicit Painting(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {}
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { EndPaint(window_, &paint_); }

    [[nodiscard]] HDC dc() const { return dc_; }
    [[nodiscard]] const RECT& area() const { return paint_.rcPaint; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

/// Keeps an object selected into a context; false where the system refused it.
class Selection {
  public:
    Selection(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;
    ~Selection() {
        if (previous_) SelectObject(dc_, previous_);
    }

    explicit operator bool() const { return previous_ != nullptr; }

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

/// A memory context with a bitmap selected into it; false where there is none.
class BitmapDc {
  public:
    explicit BitmapDc(HBITMAP bitmap) : dc_(CreateCompatibleDC(nullptr)), selected_(dc_.get(), bitmap) {}

    explicit operator bool() const { return static_cast<bool>(selected_); }
    [[nodiscard]] HDC get() const { return dc_.get(); }

  private:
    MemoryDc dc_;
    Selection selected_;
};

}  // namespace vrx
