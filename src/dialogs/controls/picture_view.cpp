#include "dialogs/controls/picture_view.h"

#include <cstdlib>
#include <new>
#include <tuple>
#include <utility>

#include "com/entry.h"
#include "com/held_resource.h"
#include "com/win_resource.h"
#include "common/device_context.h"
#include "dialogs/controls/accessible_view.h"
#include "dialogs/controls/picture_drawing.h"
#include "dialogs/dpi.h"

namespace vrx {
namespace {

constinit ControlClass viewClass{L"VrxCommon.PictureView", 0};

// The parent has moved to a screen of another resolution; systems older than this message send none.
constexpr UINT kDpiChangedAfterParent = 0x02E3;

}  // namespace

PictureView::PictureView(PictureViewOwner& owner) : CustomControl(viewClass), owner_(owner) {}

/// A picture of a host's may run the host's code as it goes: the window is gone by then.
PictureView::~PictureView() { destroy(); }

void PictureView::create(HWND parent, int id, const RECT& place, DWORD style) {
    CustomControl::create(parent, id, WS_VISIBLE | style, place);
    resized();
}

void PictureView::resized() {
    RECT inner{};
    if (!window() || !GetClientRect(window(), &inner)) return;
    scene_.size = {inner.right, inner.bottom};
    scene_.dpi = dpiOf(window());
    owner_.viewResized();
}

void PictureView::setSize(SIZE size) {
    if (window()) return;
    scene_.size = size;
    scene_.dpi = screenDpi().y;
    owner_.viewResized();
    owner_.viewChanged();
}

void PictureView::setLook(COLORREF background, COLORREF foreground, std::wstring label, bool rightToLeft) {
    if (std::tie(scene_.background, scene_.foreground, scene_.label, scene_.rightToLeft) ==
        std::tie(background, foreground, label, rightToLeft))
        return;
    scene_.background = background;
    scene_.foreground = foreground;
    scene_.label = std::move(label);
    scene_.rightToLeft = rightToLeft;
    invalidate();
}

/// The old picture goes last: it may be one of the host's own.
void PictureView::setPicture(ComPtr<IPicture> picture) {
    std::swap(scene_.picture, picture);
    const HeldReference old(std::move(picture));
    invalidate();
}

void PictureView::setFrame(const RECT& frame) {
    scene_.frame = frame;
    invalidate();
}

void PictureView::invalidate() const {
    if (window()) InvalidateRect(window(), nullptr, FALSE);
    owner_.viewChanged();
}

std::optional<LRESULT> PictureView::handle(UINT message, WPARAM wide, LPARAM longer) {
    const HeldReference keeper(owner_.viewKeeper());
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paint();
            return 0;
        case WM_SIZE:
        case kDpiChangedAfterParent:
            resized();
            return 0;
        case WM_GETOBJECT:
            if (const LRESULT object = accessibleView(window(), wide, longer)) return object;
            return std::nullopt;
        case WM_SETCURSOR:
            if (LOWORD(longer) == HTCLIENT && showPointer()) return TRUE;
            return std::nullopt;
        case WM_HSCROLL:
            owner_.viewScrolled(SB_HORZ, LOWORD(wide));
            return 0;
        case WM_VSCROLL:
            owner_.viewScrolled(SB_VERT, LOWORD(wide));
            return 0;
        default:
            if (handleMouse(message, wide, longer)) return 0;
            return handleKeyboard(message, wide, longer);
    }
}

/// False for other messages.
bool PictureView::handleMouse(UINT message, WPARAM wide, LPARAM longer) {
    const POINT pointer{static_cast<short>(LOWORD(longer)), static_cast<short>(HIWORD(longer))};
    switch (message) {
        case WM_LBUTTONDOWN:
            owner_.viewPressed();
            press(pointer);
            return true;
        case WM_LBUTTONUP:
            release(pointer);
            return true;
        case WM_CAPTURECHANGED:
            press_.reset();
            return true;
        case WM_MOUSEMOVE:
            if (!((wide & MK_LBUTTON) && drag(pointer))) point(pointer);
            return true;
        default:
            return false;
    }
}

/// The wheel's turns come with the keyboard's focus.
std::optional<LRESULT> PictureView::handleKeyboard(UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
        case WM_GETDLGCODE:
            if (has(kKeysForParent)) return DLGC_WANTARROWS;
            if (wide == VK_RETURN && clicks(wide)) return DLGC_WANTMESSAGE;
            return std::nullopt;
        case WM_MOUSEWHEEL:
        case kHorizontalWheel:
        case WM_KEYDOWN:
            if (has(kKeysForParent)) return SendMessageW(GetParent(window()), message, wide, longer);
            if (message != WM_KEYDOWN || !clicks(wide)) return std::nullopt;
            owner_.viewClicked();
            return 0;
        case BM_CLICK:
            owner_.viewClicked();
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            if (takesKeys()) InvalidateRect(window(), nullptr, FALSE);
            owner_.viewFocused(message == WM_SETFOCUS);
            return 0;
        default:
            return std::nullopt;
    }
}

void PictureView::point(POINT pointer) const {
    if (PtInRect(&frame(), pointer)) owner_.viewPointed(pointer.x - frame().left, pointer.y - frame().top);
}

/// Only where the view is what the mouse is over, and not another window in front of it.
void PictureView::pointAgain() const {
    POINT pointer{};
    if (!window() || !GetCursorPos(&pointer) || WindowFromPoint(pointer) != window()) return;
    if (ScreenToClient(window(), &pointer)) point(pointer);
}

void PictureView::press(POINT pointer) {
    if (!window() || !PtInRect(&frame(), pointer)) return;
    press_ = Press{pointer, false};
    SetCapture(window());
}

/// True while the mouse drags the picture. A hand that is not quite still does not drag yet.
bool PictureView::drag(POINT pointer) {
    if (!press_) return false;
    const LONG right = pointer.x - press_->pointer.x;
    const LONG down = pointer.y - press_->pointer.y;
    if (!press_->drags && std::abs(right) < GetSystemMetrics(SM_CXDRAG) &&
        std::abs(down) < GetSystemMetrics(SM_CYDRAG))
        return false;
    if (!owner_.viewDragged(right, down)) return false;
    press_ = Press{pointer, true};
    return true;
}

/// A click is a press and a release: the release alone may belong to a press on another window, or end a
/// drag.
void PictureView::release(POINT pointer) {
    const std::optional<Press> press = std::exchange(press_, {});
    const bool clicked = press && !press->drags && PtInRect(&frame(), pointer);
    if (GetCapture() == window()) ReleaseCapture();
    if (clicked) owner_.viewClicked();
}

bool PictureView::showPointer() const {
    POINT pointer{};
    if (!GetCursorPos(&pointer) || !ScreenToClient(window(), &pointer)) return false;
    const bool over = PtInRect(&frame(), pointer);
    HCURSOR cursor = over && pointer_ == MousePointer::Custom ? iconCursor(icon_.get()) : nullptr;
    if (!cursor) cursor = LoadCursorW(nullptr, over ? cursorOf(pointer_) : IDC_ARROW);
    SetCursor(cursor);
    return true;
}

bool PictureView::has(DWORD style) const {
    return (static_cast<DWORD>(GetWindowLongW(window(), GWL_STYLE)) & style) != 0;
}

/// Some dialogs give the focus to their only control, be it a tab stop or not.
bool PictureView::takesKeys() const { return has(WS_TABSTOP) && !has(kKeysForParent); }

bool PictureView::clicks(WPARAM key) const {
    return takesKeys() && (key == VK_SPACE || (key == VK_RETURN && has(kEnterClicks)));
}

/// Held, as a picture of the host's may leave while it draws itself; where there is no memory for that, it is
/// drawn all the same.
void PictureView::paint() {
    try {
        const Held<Painting> painting(window());
        paint(*painting);
    } catch (const std::bad_alloc&) {
        paint(Painting(window()));
    }
}

/// Everything is drawn off screen first, so that neither the background nor half a picture is ever seen.
void PictureView::paint(const Painting& painting) {
    const RECT& area = painting.area();
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    if (!painting.dc() || width <= 0 || height <= 0) return;
    const HeldReference shown(scene_.picture);
    const HeldResource canvas(Bitmap(makeCanvas(painting.dc(), shown.get(), width, height)));
    const HeldResource buffer(MemoryDc(CreateCompatibleDC(nullptr)));
    if (!buffer || !SelectObject(buffer.get(), canvas.get())) return draw(painting.dc());
    SetViewportOrgEx(buffer.get(), -area.left, -area.top, nullptr);
    draw(buffer.get());
    BitBlt(painting.dc(), area.left, area.top, width, height, buffer.get(), area.left, area.top, SRCCOPY);
}

void PictureView::draw(HDC dc) const {
    const RECT inner{0, 0, scene_.size.cx, scene_.size.cy};
    drawScene(dc, inner, scene_);
    if (takesKeys() && GetFocus() == window()) DrawFocusRect(dc, &inner);
}

}  // namespace vrx
