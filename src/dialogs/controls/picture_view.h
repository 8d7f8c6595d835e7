// A child window that shows a picture stretched into a frame inside it, without flicker. What the frame is,
// and what a click does, is its owner's business. As a tab stop of a dialog it is clicked by the space bar.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>

#include "com/com_ptr.h"
#include "dialogs/controls/custom_control.h"
#include "dialogs/controls/mouse_pointer.h"

namespace vrx {

/// A wheel that is tilted, or turned with a second wheel; systems older than this message send none.
inline constexpr UINT kHorizontalWheel = 0x020E;

/// What happens to a view.
class PictureViewOwner {
  public:
    virtual void viewResized() {}
    virtual void viewClicked() {}
    /// In pixels from the frame's corner, inside the frame.
    virtual void viewPointed(int /*x*/, int /*y*/) {}
    /// By so many pixels since the last time, with the left button; false where there is nothing to drag.
    virtual bool viewDragged(int /*right*/, int /*down*/) { return false; }
    virtual void viewScrolled(int /*bar*/, int /*code*/) {}

  protected:
    ~PictureViewOwner() = default;
};

class PictureView final : public CustomControl {
  public:
    explicit PictureView(PictureViewOwner& owner);
    ~PictureView() override;

    /// A style: what the view gets of keys and turns of the wheel is its parent's.
    static constexpr DWORD kKeysForParent = 1;

    /// Makes the window, with these styles besides its own; without one the view keeps its picture and frame
    /// all the same.
    void create(HWND parent, int id, const RECT& place, DWORD style = 0);
    /// The inner area.
    [[nodiscard]] SIZE size() const;

    [[nodiscard]] const ComPtr<IPicture>& picture() const { return picture_; }
    /// Empty for none.
    void setPicture(ComPtr<IPicture> picture);
    [[nodiscard]] const RECT& frame() const { return frame_; }
    void setFrame(const RECT& frame);
    /// Tells the owner where a resting mouse points, for a frame that has moved under it.
    void pointAgain() const;
    /// Over the frame.
    void setPointer(MousePointer pointer) { pointer_ = pointer; }
    [[nodiscard]] MousePointer pointer() const { return pointer_; }
    /// Shown as MousePointer::Custom.
    void setIcon(ComPtr<IPicture> icon) { icon_ = std::move(icon); }
    [[nodiscard]] const ComPtr<IPicture>& icon() const { return icon_; }

  private:
    /// A left button that is down, and where the mouse was last.
    struct Press {
        POINT pointer;
        bool drags;
    };

    std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer) override;
    void point(POINT pointer) const;
    void press(POINT pointer);
    bool drag(POINT pointer);
    void release(POINT pointer);
    void paint();
    void draw(HDC dc, const RECT& area) const;
    [[nodiscard]] bool showPointer() const;
    [[nodiscard]] bool has(DWORD style) const;
    [[nodiscard]] bool takesKeys() const;
    void invalidate() const;

    PictureViewOwner& owner_;
    ComPtr<IPicture> picture_;
    ComPtr<IPicture> icon_;
    RECT frame_{};
    MousePointer pointer_ = MousePointer::Default;
    std::optional<Press> press_;
};

}  // namespace vrx
