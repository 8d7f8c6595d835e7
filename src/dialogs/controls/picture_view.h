// A child window that shows a picture stretched into a frame inside it, without flicker. What the frame is,
// and what a click does, is its owner's business.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>

#include "com/com_ptr.h"
#include "com/module.h"
#include "common/win_resource.h"

namespace vrx {

/// Pointers as forms number them.
enum class MousePointer : short { Default = 0, Arrow = 1, Cross = 2, Custom = 99 };

/// What happens to a view.
class PictureViewOwner {
  public:
    virtual void viewResized() {}
    virtual void viewClicked() {}
    /// In pixels from the frame's corner, inside the frame.
    virtual void viewPointed(int /*x*/, int /*y*/) {}
    virtual void viewScrolled(int /*bar*/, int /*code*/) {}

  protected:
    ~PictureViewOwner() = default;
};

class PictureView {
  public:
    explicit PictureView(PictureViewOwner& owner);
    PictureView(const PictureView&) = delete;
    PictureView& operator=(const PictureView&) = delete;
    ~PictureView();

    /// Makes the window; without one the view keeps its picture and frame all the same.
    void create(HWND parent, int id, const RECT& place);
    [[nodiscard]] HWND window() const { return window_; }
    /// The inner area.
    [[nodiscard]] SIZE size() const;

    [[nodiscard]] const ComPtr<IPicture>& picture() const { return picture_; }
    /// Empty for none.
    void setPicture(ComPtr<IPicture> picture);
    [[nodiscard]] const RECT& frame() const { return frame_; }
    void setFrame(const RECT& frame);
    /// Over the frame.
    void setPointer(MousePointer pointer) { pointer_ = pointer; }
    [[nodiscard]] MousePointer pointer() const { return pointer_; }
    /// Shown as MousePointer::Custom.
    void setIcon(ComPtr<IPicture> icon) { icon_ = std::move(icon); }
    [[nodiscard]] const ComPtr<IPicture>& icon() const { return icon_; }

  private:
    class WindowClass {
      public:
        WindowClass();
        WindowClass(const WindowClass&) = delete;
        WindowClass& operator=(const WindowClass&) = delete;
        ~WindowClass();
    };

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer);
    [[nodiscard]] std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer);
    void release(POINT pointer);
    void paint();
    void draw(HDC dc, const RECT& area) const;
    void drawPicture(HDC dc) const;
    [[nodiscard]] bool showPointer() const;
    void invalidate() const;

    PictureViewOwner& owner_;
    ModuleLock lock_;
    WindowClass windowClass_;
    HWND window_ = nullptr;
    ComPtr<IPicture> picture_;
    ComPtr<IPicture> icon_;
    RECT frame_{};
    MousePointer pointer_ = MousePointer::Default;
    bool pressed_ = false;
};

}  // namespace vrx
