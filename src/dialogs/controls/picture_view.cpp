#include "dialogs/controls/picture_view.h"

#include <olectl.h>

#include <mutex>
#include <utility>

#include "com/fp_scope.h"
#include "common/win32_error.h"

namespace vrx {
namespace {

constexpr wchar_t kClassName[] = L"VrxCommon.PictureView";

/// The window class is there while any view is, so that none is left when the library goes.
std::mutex classGuard;
int classUsers = 0;

/// A bitmap selected into a memory device context for as long as it exists.
class BitmapDc {
  public:
    explicit BitmapDc(HBITMAP bitmap) : dc_(CreateCompatibleDC(nullptr)) {
        previous_ = SelectObject(dc_.get(), bitmap);
    }
    BitmapDc(const BitmapDc&) = delete;
    BitmapDc& operator=(const BitmapDc&) = delete;
    ~BitmapDc() {
        if (previous_) SelectObject(dc_.get(), previous_);
    }

    explicit operator bool() const { return previous_ != nullptr; }
    [[nodiscard]] HDC get() const { return dc_.get(); }

  private:
    MemoryDc dc_;
    HGDIOBJ previous_ = nullptr;
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

/// The handle of a picture that is a plain bitmap; null for every other kind.
HBITMAP plainBitmap(IPicture& picture) {
    SHORT type = PICTYPE_NONE;
    DWORD attributes = 0;
    OLE_HANDLE handle = 0;
    if (FAILED(picture.get_Type(&type)) || type != PICTYPE_BITMAP) return nullptr;
    if (SUCCEEDED(picture.get_Attributes(&attributes)) && (attributes & PICTURE_TRANSPARENT)) return nullptr;
    picture.get_Handle(&handle);
    return reinterpret_cast<HBITMAP>(static_cast<UINT_PTR>(handle));
}

/// True when it was drawn.
bool stretchBitmap(HDC dc, HBITMAP bitmap, const RECT& frame) {
    BITMAP description{};
    if (!bitmap || !GetObjectW(bitmap, sizeof description, &description)) return false;
    const BitmapDc source(bitmap);
    if (!source) return false;
    SetStretchBltMode(dc, COLORONCOLOR);
    return StretchBlt(dc, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top,
                      source.get(), 0, 0, description.bmWidth, description.bmHeight, SRCCOPY) != FALSE;
}

LPCWSTR cursorOf(MousePointer pointer) {
    switch (static_cast<int>(pointer)) {
        case 2:
            return IDC_CROSS;
        case 3:
            return IDC_IBEAM;
        case 5:
        case 15:
            return IDC_SIZEALL;
        case 6:
            return IDC_SIZENESW;
        case 7:
            return IDC_SIZENS;
        case 8:
            return IDC_SIZENWSE;
        case 9:
            return IDC_SIZEWE;
        case 10:
            return IDC_UPARROW;
        case 11:
            return IDC_WAIT;
        case 12:
            return IDC_NO;
        case 13:
            return IDC_APPSTARTING;
        case 14:
            return IDC_HELP;
        default:
            return IDC_ARROW;
    }
}

HCURSOR iconCursor(IPicture* icon) {
    SHORT type = PICTYPE_NONE;
    OLE_HANDLE handle = 0;
    if (!icon || FAILED(icon->get_Type(&type)) || type != PICTYPE_ICON) return nullptr;
    icon->get_Handle(&handle);
    return reinterpret_cast<HCURSOR>(static_cast<UINT_PTR>(handle));
}

}  // namespace

PictureView::WindowClass::WindowClass() {
    const std::lock_guard lock(classGuard);
    if (classUsers == 0) {
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = procedure;
        description.hInstance = moduleInstance();
        description.lpszClassName = kClassName;
        // A window that ended with its thread has left the class behind.
        if (!RegisterClassExW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
            throw win32Error(GetLastError());
    }
    ++classUsers;
}

PictureView::WindowClass::~WindowClass() {
    const std::lock_guard lock(classGuard);
    if (--classUsers == 0) UnregisterClassW(kClassName, moduleInstance());
}

PictureView::PictureView(PictureViewOwner& owner) : owner_(owner) {}

PictureView::~PictureView() {
    if (!window_) return;
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
}

void PictureView::create(HWND parent, int id, const RECT& place) {
    window_ = CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, place.left,
                              place.top, place.right - place.left, place.bottom - place.top, parent,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), moduleInstance(), this);
    if (!window_) throw win32Error(GetLastError());
    owner_.viewResized();
}

SIZE PictureView::size() const {
    RECT inner{};
    if (window_) GetClientRect(window_, &inner);
    return {inner.right, inner.bottom};
}

void PictureView::setPicture(ComPtr<IPicture> picture) {
    picture_ = std::move(picture);
    invalidate();
}

void PictureView::setFrame(const RECT& frame) {
    frame_ = frame;
    invalidate();
}

void PictureView::invalidate() const {
    if (window_) InvalidateRect(window_, nullptr, FALSE);
}

LRESULT CALLBACK PictureView::procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    const FpScope floatingPoint;
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(longer);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* view = reinterpret_cast<PictureView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (view && message == WM_NCDESTROY) view->window_ = nullptr;
    if (view && view->window_ == window) {
        try {
            if (const auto answer = view->handle(message, wide, longer)) return *answer;
        } catch (...) {
            // What fails here has no caller to fail to: the view stays as it is.
            return 0;
        }
    }
    return DefWindowProcW(window, message, wide, longer);
}

/// Nothing where the system is to answer.
std::optional<LRESULT> PictureView::handle(UINT message, WPARAM wide, LPARAM longer) {
    const POINT pointer{static_cast<short>(LOWORD(longer)), static_cast<short>(HIWORD(longer))};
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paint();
            return 0;
        case WM_SIZE:
            owner_.viewResized();
            return 0;
        case WM_LBUTTONDOWN:
            pressed_ = PtInRect(&frame_, pointer) != FALSE;
            if (pressed_) SetCapture(window_);
            return 0;
        case WM_LBUTTONUP:
            release(pointer);
            return 0;
        case WM_CAPTURECHANGED:
            pressed_ = false;
            return 0;
        case WM_MOUSEMOVE:
            if (PtInRect(&frame_, pointer))
                owner_.viewPointed(pointer.x - frame_.left, pointer.y - frame_.top);
            return 0;
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
            return std::nullopt;
    }
}

/// A click is a press and a release: the release alone may belong to a press on another window.
void PictureView::release(POINT pointer) {
    const bool clicked = std::exchange(pressed_, false) && PtInRect(&frame_, pointer);
    if (GetCapture() == window_) ReleaseCapture();
    if (clicked) owner_.viewClicked();
}

bool PictureView::showPointer() const {
    POINT pointer{};
    if (!GetCursorPos(&pointer) || !ScreenToClient(window_, &pointer)) return false;
    const bool over = PtInRect(&frame_, pointer);
    HCURSOR cursor = over && pointer_ == MousePointer::Custom ? iconCursor(icon_.get()) : nullptr;
    if (!cursor) cursor = LoadCursorW(nullptr, over ? cursorOf(pointer_) : IDC_ARROW);
    SetCursor(cursor);
    return true;
}

/// Everything is drawn off screen first, so that neither the background nor half a picture is ever seen.
void PictureView::paint() {
    const Painting painting(window_);
    const RECT& area = painting.area();
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    if (!painting.dc() || width <= 0 || height <= 0) return;
    const Bitmap canvas(CreateCompatibleBitmap(painting.dc(), width, height));
    const BitmapDc buffer(canvas.get());
    if (!buffer) {
        draw(painting.dc(), area);
        return;
    }
    SetViewportOrgEx(buffer.get(), -area.left, -area.top, nullptr);
    draw(buffer.get(), area);
    BitBlt(painting.dc(), area.left, area.top, width, height, buffer.get(), area.left, area.top, SRCCOPY);
}

void PictureView::draw(HDC dc, const RECT& area) const {
    FillRect(dc, &area, GetSysColorBrush(COLOR_APPWORKSPACE));
    if (picture_) drawPicture(dc);
}

void PictureView::drawPicture(HDC dc) const {
    if (stretchBitmap(dc, plainBitmap(*picture_.get()), frame_)) return;
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (FAILED(picture_->get_Width(&width)) || FAILED(picture_->get_Height(&height))) return;
    // A picture's own lengths count from the bottom.
    picture_->Render(dc, frame_.left, frame_.top, frame_.right - frame_.left, frame_.bottom - frame_.top, 0,
                     height, width, -height, nullptr);
}

}  // namespace vrx
