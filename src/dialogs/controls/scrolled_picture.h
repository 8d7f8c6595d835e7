// A picture in its own size in a view that scrolls where the picture is larger: by scroll bars, keys, the
// mouse's wheel, and by dragging the picture.
#pragma once

#include "dialogs/controls/picture_view.h"
#include "dialogs/engine/wheel.h"
#include "dialogs/engine/zoom_layout.h"

namespace vrx {

class ScrolledPicture final : private PictureViewOwner {
  public:
    /// The owner hears of clicks and of the pointer, which may come to another place of the picture without a
    /// move of the mouse.
    explicit ScrolledPicture(PictureViewOwner& owner) : owner_(owner), view_(*this) {}

    void create(HWND parent, int id, const RECT& place) {
        view_.create(parent, id, place, WS_TABSTOP | PictureView::kKeysForParent);
    }
    [[nodiscard]] HWND window() const { return view_.window(); }
    void setPointer(MousePointer pointer) { view_.setPointer(pointer); }

    /// A picture, which may be empty, of this size in pixels, from its top left corner on.
    void show(ComPtr<IPicture> picture, Extent size);
    /// Another picture of the same size, where the first one stands.
    void refresh(ComPtr<IPicture> picture) { view_.setPicture(std::move(picture)); }
    /// In pixels.
    [[nodiscard]] Extent pictureSize() const { return picture_; }

    /// Takes this much of its parent, from the top left corner.
    void resize(int width, int height);
    /// A key or a turn of the wheel; false for one that does not scroll.
    bool onKey(WPARAM key);
    bool onWheel(UINT message, WPARAM wide);

  private:
    void viewResized() override { layOut(); }
    void viewClicked() override { owner_.viewClicked(); }
    void viewPointed(int x, int y) override { owner_.viewPointed(x, y); }
    bool viewDragged(int right, int down) override;
    void viewScrolled(int bar, int code) override;

    void scrollTo(POINT position);
    void layOut();

    PictureViewOwner& owner_;
    PictureView view_;
    Extent picture_{};
    POINT scrolled_{};
    WheelTurns down_;
    WheelTurns right_;
    bool layingOut_ = false;
};

/// What scroll bars take of a view: a vertical one of its width, a horizontal one of its height.
[[nodiscard]] Extent scrollBars();

}  // namespace vrx
