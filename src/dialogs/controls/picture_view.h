// A child window that shows a picture stretched into a frame inside it, without flicker. What the frame is,
// and what a click does, is its owner's business. As a tab stop of a dialog it is clicked by the space bar.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>

#include "com/com_ptr.h"
#include "dialogs/controls/custom_control.h"
#include "dialogs/controls/mouse_pointer.h"
#include "dialogs/controls/picture_scene.h"

namespace vrx {

class Painting;

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
    /// The left button went down, wherever in the view.
    virtual void viewPressed() {}
    virtual void viewFocused(bool /*gained*/) {}
    /// It looks different now.
    virtual void viewChanged() {}
    /// Holds the owner and its view while a message is handled, whatever happens to them in it; empty for an
    /// owner that nobody else can end.
    virtual ComPtr<IUnknown> viewKeeper() { return {}; }

  protected:
    ~PictureViewOwner() = default;
};

class PictureView final : public CustomControl {
  public:
    explicit PictureView(PictureViewOwner& owner);
    ~PictureView() override;

    /// A style: what the view gets of keys and turns of the wheel is its parent's.
    static constexpr DWORD kKeysForParent = 1;
    /// A style: Enter clicks as the space bar does, and is no default button's.
    static constexpr DWORD kEnterClicks = 2;

    /// Makes the window, with these styles besides its own; without one the view keeps its picture and frame
    /// all the same.
    void create(HWND parent, int id, const RECT& place, DWORD style = 0);
    /// Ends the window; picture and frame stay.
    using CustomControl::destroy;
    /// The inner area.
    [[nodiscard]] SIZE size() const { return scene_.size; }
    /// The same, as long as there is no window.
    void setSize(SIZE size);

    [[nodiscard]] const PictureScene& scene() const { return scene_; }
    /// What surrounds the picture, and the label in place of the picture. Changes nothing where it is so
    /// already.
    void setLook(COLORREF background, COLORREF foreground, std::wstring label, bool rightToLeft);

    [[nodiscard]] const ComPtr<IPicture>& picture() const { return scene_.picture; }
    /// Empty for none.
    void setPicture(ComPtr<IPicture> picture);
    [[nodiscard]] const RECT& frame() const { return scene_.frame; }
    void setFrame(const RECT& frame);
    /// Tells the owner where a resting mouse points, for a frame that has moved under it.
    void pointAgain() const;
    /// Over the frame.
    void setPointer(MousePointer pointer) { pointer_ = pointer; }
    /// Shown as MousePointer::Custom.
    void setIcon(ComPtr<IPicture> icon) { icon_ = std::move(icon); }

  private:
    /// A left button that is down, and where the mouse was last.
    struct Press {
        POINT pointer;
        bool drags;
    };

    std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer) override;
    bool handleMouse(UINT message, WPARAM wide, LPARAM longer);
    std::optional<LRESULT> handleKeyboard(UINT message, WPARAM wide, LPARAM longer);
    void point(POINT pointer) const;
    void resized();
    void press(POINT pointer);
    bool drag(POINT pointer);
    void release(POINT pointer);
    void paint();
    void paint(const Painting& painting);
    void draw(HDC dc) const;
    [[nodiscard]] bool clicks(WPARAM key) const;
    [[nodiscard]] bool showPointer() const;
    [[nodiscard]] bool has(DWORD style) const;
    [[nodiscard]] bool takesKeys() const;
    void invalidate() const;

    PictureViewOwner& owner_;
    PictureScene scene_;
    ComPtr<IPicture> icon_;
    MousePointer pointer_ = MousePointer::Default;
    std::optional<Press> press_;
};

}  // namespace vrx
