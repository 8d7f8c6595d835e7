#include "pattern/editor/stop_flag.h"

#include <utility>

#include "com/variant_convert.h"
#include "com/win_resource.h"
#include "common/device_context.h"
#include "pattern/editor/modPattern.h"
#include "pattern/engine/pattern_layout.h"

namespace vrx {
namespace {

constexpr int kFrame = 2;
constexpr COLORREF kColorBits = 0x00FFFFFF;

bool isFlagKey(WPARAM key) {
    switch (key) {
        case VK_LEFT:
        case VK_RIGHT:
        case VK_DELETE:
        case VK_INSERT:
        case VK_F2:
        case VK_RETURN:
            return true;
        default:
            return false;
    }
}

}  // namespace

StopFlag::StopFlag(StopFlagOwner& owner, HWND parent, int id, std::size_t index)
    : owner_(owner), index_(index) {
    create(parent, id, 0, {0, 0, kFlagWidth, kFlagHeight});
}

void StopFlag::moveTo(int left, int top) {
    if (placed_ && left == left_ && top == top_) return;
    placed_ = true;
    left_ = left;
    top_ = top;
    SetWindowPos(window(), nullptr, left, top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void StopFlag::setColor(std::int32_t color) {
    if (std::exchange(color_, color) != color) invalidate();
}

void StopFlag::setSelected(bool selected) {
    if (std::exchange(selected_, selected) == selected) return;
    const LONG style = GetWindowLongW(window(), GWL_STYLE) & ~static_cast<LONG>(WS_TABSTOP);
    SetWindowLongW(window(), GWL_STYLE, selected ? style | static_cast<LONG>(WS_TABSTOP) : style);
    invalidate();
}

void StopFlag::setName(const std::u16string& name) {
    if (std::exchange(name_, name) != name) SetWindowTextW(window(), toWide(name).c_str());
}

void StopFlag::bringToFront() {
    SetWindowPos(window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

std::optional<LRESULT> StopFlag::handle(UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paint();
            return 0;
        case WM_SETFOCUS:
            invalidate();
            owner_.flagFocused(index_);
            return 0;
        case WM_KILLFOCUS:
            invalidate();
            owner_.flagReleased();
            return 0;
        case WM_GETDLGCODE: {
            const auto* key = reinterpret_cast<const MSG*>(longer);
            const bool enter = key && key->message == WM_KEYDOWN && key->wParam == VK_RETURN;
            return DLGC_WANTARROWS | (enter ? DLGC_WANTMESSAGE : 0);
        }
        case WM_KEYDOWN:
            if (!isFlagKey(wide)) return std::nullopt;
            post(kFlagKey, wide);
            return 0;
        case WM_KEYUP:
            post(kFlagKey, 0);
            return 0;
        default:
            return handleMouse(message, wide, static_cast<short>(LOWORD(longer)));
    }
}

/// A program that takes a message of the buttons at the mouse's side answers TRUE.
std::optional<LRESULT> StopFlag::handleMouse(UINT message, WPARAM wide, int x) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDOWN:
        case WM_MBUTTONDBLCLK:
            press(x);
            return 0;
        case WM_XBUTTONDOWN:
        case WM_XBUTTONDBLCLK:
            press(x);
            return TRUE;
        case WM_MOUSEMOVE:
            if (pressed_ && (wide & MK_LBUTTON)) drag(x);
            return 0;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP:
            lift(wide);
            return 0;
        case WM_XBUTTONUP:
            lift(wide);
            return TRUE;
        case WM_CAPTURECHANGED:
            release();
            return 0;
        case WM_LBUTTONDBLCLK:
            post(kFlagOpened, 0);
            return 0;
        default:
            return std::nullopt;
    }
}

void StopFlag::post(UINT message, WPARAM wide) const {
    PostMessageW(GetParent(window()), message, wide, static_cast<LPARAM>(index_));
}

void StopFlag::press(int x) {
    pressed_ = true;
    drag_.press(x, left_);
    SetCapture(window());
    SetFocus(window());
    owner_.flagPressed(index_);
}

void StopFlag::drag(int x) {
    const std::int32_t columns = drag_.movement(x, left_);
    if (columns != 0) owner_.flagDragged(index_, columns);
}

/// The capture goes with the last of several buttons, and brings WM_CAPTURECHANGED.
void StopFlag::lift(WPARAM buttons) {
    constexpr WPARAM kAnyButton = MK_LBUTTON | MK_RBUTTON | MK_MBUTTON | MK_XBUTTON1 | MK_XBUTTON2;
    if (!(buttons & kAnyButton) && GetCapture() == window()) ReleaseCapture();
}

void StopFlag::release() {
    if (std::exchange(pressed_, false)) owner_.flagReleased();
}

bool StopFlag::showsFocus() const {
    return GetFocus() == window() && !(SendMessageW(window(), WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS);
}

/// Frame and inside share no pixel, so nothing flickers.
void StopFlag::paint() {
    const Painting painting(window());
    RECT inner{kFrame, kFrame, kFlagWidth - kFrame, kFlagHeight - kFrame};
    const Brush brush(CreateSolidBrush(static_cast<COLORREF>(color_) & kColorBits));
    FillRect(painting.dc(), &inner, brush.get());
    Draw_FlagFrame(painting.dc(), 0, 0, kFlagWidth, kFlagHeight, selected_);
    if (showsFocus()) DrawFocusRect(painting.dc(), &inner);
}

}  // namespace vrx
