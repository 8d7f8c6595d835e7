#include "dialogs/anchors.h"

#include "dialogs/window_place.h"

namespace vrx {

void Anchors::attach(HWND form) {
    form_ = form;
    RECT inner{};
    GetClientRect(form, &inner);
    designed_ = {inner.right, inner.bottom};
    smallest_ = outerSize(form);
}

void Anchors::add(HWND control, unsigned edges) {
    places_.push_back({control, edges, placeInParent(control)});
}

/// Nothing is copied along: what stood in a control's old place may be drawn over by another one's new place.
void Anchors::arrange() const {
    if (!form_) return;
    RECT inner{};
    GetClientRect(form_, &inner);
    const LONG wider = inner.right - designed_.cx;
    const LONG higher = inner.bottom - designed_.cy;
    HDWP moves = BeginDeferWindowPos(static_cast<int>(places_.size()));
    for (const Place& place : places_) {
        RECT now = place.designed;
        if (place.edges & kRight) {
            now.right += wider;
            if (!(place.edges & kLeft)) now.left += wider;
        }
        if (place.edges & kBottom) {
            now.bottom += higher;
            if (!(place.edges & kTop)) now.top += higher;
        }
        if (moves)
            moves = DeferWindowPos(moves, place.control, nullptr, now.left, now.top, now.right - now.left,
                                   now.bottom - now.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
    }
    if (moves) EndDeferWindowPos(moves);
}

void Anchors::limit(MINMAXINFO& limits) const {
    if (form_) limits.ptMinTrackSize = {smallest_.cx, smallest_.cy};
}

}  // namespace vrx
