#include "dialogs/controls/scrolled_picture.h"

#include <algorithm>
#include <utility>

#include "dialogs/window_place.h"

namespace vrx {
namespace {

constexpr int kLine = 24;  // pixels that an arrow scrolls

// What the user has chosen for one notch; the second one is there since Windows Vista.
constexpr UINT kLinesSetting = SPI_GETWHEELSCROLLLINES;
constexpr UINT kColumnsSetting = 0x006C;
constexpr UINT kUsualLines = 3;

UINT userSetting(UINT setting) {
    UINT lines = kUsualLines;
    return SystemParametersInfoW(setting, 0, &lines, 0) ? lines : kUsualLines;
}

struct KeyScroll {
    WPARAM key;
    int bar;
    int code;
};

constexpr KeyScroll kKeys[] = {
    {VK_LEFT, SB_HORZ, SB_LINELEFT}, {VK_RIGHT, SB_HORZ, SB_LINERIGHT}, {VK_UP, SB_VERT, SB_LINEUP},
    {VK_DOWN, SB_VERT, SB_LINEDOWN}, {VK_PRIOR, SB_VERT, SB_PAGEUP},    {VK_NEXT, SB_VERT, SB_PAGEDOWN},
    {VK_HOME, SB_HORZ, SB_LEFT},     {VK_HOME, SB_VERT, SB_TOP},        {VK_END, SB_HORZ, SB_RIGHT},
    {VK_END, SB_VERT, SB_BOTTOM},
};

int trackedPosition(HWND view, int bar) {
    SCROLLINFO info{sizeof info, SIF_TRACKPOS, 0, 0, 0, 0, 0};
    GetScrollInfo(view, bar, &info);
    return info.nTrackPos;
}

/// Where a scroll bar's code leads; nothing changes for codes that lead nowhere.
LONG positionAfter(HWND view, int bar, int code, LONG position, int page, int end) {
    switch (code) {
        case SB_LINEUP:
            return position - kLine;
        case SB_LINEDOWN:
            return position + kLine;
        case SB_PAGEUP:
            return position - page;
        case SB_PAGEDOWN:
            return position + page;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            return trackedPosition(view, bar);
        case SB_TOP:
            return 0;
        case SB_BOTTOM:
            return end;
        default:
            return position;
    }
}

void setScrollBar(HWND view, int bar, bool shown, int length, int page, int position) {
    SCROLLINFO info{sizeof info, SIF_ALL, 0, std::max(length - 1, 0), static_cast<UINT>(page), position, 0};
    if (shown) SetScrollInfo(view, bar, &info, TRUE);
    ShowScrollBar(view, bar, shown);
}

}  // namespace

Extent scrollBars() { return {GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL)}; }

void ScrolledPicture::show(ComPtr<IPicture> picture, Extent size) {
    view_.setPicture(std::move(picture));
    picture_ = size;
    scrolled_ = {};
    layOut();
}

void ScrolledPicture::resize(int width, int height) {
    MoveWindow(view_.window(), 0, 0, width, height, TRUE);
    layOut();
}

bool ScrolledPicture::onKey(WPARAM key) {
    bool scrolls = false;
    for (const KeyScroll& entry : kKeys) {
        if (entry.key != key) continue;
        viewScrolled(entry.bar, entry.code);
        scrolls = true;
    }
    return scrolls;
}

/// The wheel scrolls down and up, together with Shift or tilted to the sides.
bool ScrolledPicture::onWheel(UINT message, WPARAM wide) {
    const bool tilted = message == kHorizontalWheel;
    if (!tilted && message != WM_MOUSEWHEEL) return false;
    const SIZE page = view_.size();
    const int turn = GET_WHEEL_DELTA_WPARAM(wide) * (tilted ? 1 : -1);
    const UINT lines = userSetting(tilted ? kColumnsSetting : kLinesSetting);
    if (tilted || (GET_KEYSTATE_WPARAM(wide) & MK_SHIFT)) {
        scrollTo({scrolled_.x + right_.pixels(turn, pixelsOfNotch(lines, kLine, page.cx)), scrolled_.y});
    } else {
        scrollTo({scrolled_.x, scrolled_.y + down_.pixels(turn, pixelsOfNotch(lines, kLine, page.cy))});
    }
    return true;
}

bool ScrolledPicture::viewDragged(int right, int down) {
    const SIZE view = view_.size();
    if (picture_.width <= view.cx && picture_.height <= view.cy) return false;
    scrollTo({scrolled_.x - right, scrolled_.y - down});
    return true;
}

void ScrolledPicture::viewScrolled(int bar, int code) {
    const SIZE view = view_.size();
    POINT position = scrolled_;
    if (bar == SB_HORZ) {
        position.x = positionAfter(window(), bar, code, position.x, view.cx, picture_.width);
    } else {
        position.y = positionAfter(window(), bar, code, position.y, view.cy, picture_.height);
    }
    scrollTo(position);
}

void ScrolledPicture::scrollTo(POINT position) {
    scrolled_ = position;
    layOut();
}

/// Scroll bars and the picture's place in the view; showing a bar resizes the view and comes back here.
void ScrolledPicture::layOut() {
    if (!window() || layingOut_) return;
    layingOut_ = true;
    const SIZE whole = outerSize(window());
    const Extent area{static_cast<int>(whole.cx), static_cast<int>(whole.cy)};
    const ScrolledView scrolling = scrolledView(area, picture_, scrollBars());
    const auto [width, height] = scrolling.view;
    scrolled_ = {heldPosition(width, picture_.width, scrolled_.x),
                 heldPosition(height, picture_.height, scrolled_.y)};
    setScrollBar(window(), SB_HORZ, scrolling.horizontalBar, picture_.width, width, scrolled_.x);
    setScrollBar(window(), SB_VERT, scrolling.verticalBar, picture_.height, height, scrolled_.y);
    const LONG left = contentStart(width, picture_.width, scrolled_.x);
    const LONG top = contentStart(height, picture_.height, scrolled_.y);
    view_.setFrame({left, top, left + picture_.width, top + picture_.height});
    layingOut_ = false;
    view_.pointAgain();
}

}  // namespace vrx
