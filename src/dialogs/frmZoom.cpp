#include "dialogs/frmZoom.h"

#include <algorithm>
#include <array>
#include <utility>

#include "com/variant_convert.h"
#include "dialogs/dpi.h"
#include "dialogs/engine/preview_frame.h"
#include "dialogs/resource.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

// Posted to start the decoding, when the activation of the window is over.
constexpr UINT kStartPreview = WM_APP;

constexpr Extent kEmptyView{320, 240};
constexpr int kLine = 24;  // pixels that an arrow scrolls

constexpr std::array kLabels{IDC_ZOOM_RED, IDC_ZOOM_GREEN, IDC_ZOOM_BLUE};
constexpr std::array kReadout{IDC_ZOOM_RED_CAPTION, IDC_ZOOM_RED,          IDC_ZOOM_GREEN_CAPTION,
                              IDC_ZOOM_GREEN,       IDC_ZOOM_BLUE_CAPTION, IDC_ZOOM_BLUE};

Extent scrollBars() { return {GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL)}; }

/// Where a scroll bar's code leads; nothing changes for codes that lead nowhere.
int positionAfter(HWND view, int bar, int code, int position) {
    SCROLLINFO info{sizeof info, SIF_TRACKPOS | SIF_PAGE | SIF_RANGE, 0, 0, 0, 0, 0};
    GetScrollInfo(view, bar, &info);
    switch (code) {
        case SB_LINEUP:
            return position - kLine;
        case SB_LINEDOWN:
            return position + kLine;
        case SB_PAGEUP:
            return position - static_cast<int>(info.nPage);
        case SB_PAGEDOWN:
            return position + static_cast<int>(info.nPage);
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            return info.nTrackPos;
        case SB_TOP:
            return 0;
        case SB_BOTTOM:
            return info.nMax;
        default:
            return position;
    }
}

void setScrollBar(HWND view, int bar, bool shown, int length, int page, int position) {
    SCROLLINFO info{sizeof info, SIF_ALL, 0, std::max(length - 1, 0), static_cast<UINT>(page), position, 0};
    if (shown) SetScrollInfo(view, bar, &info, TRUE);
    ShowScrollBar(view, bar, shown);
}

/// The pixel along one side that a pointer shows.
std::int32_t pixelAt(int pointer, int length, int dpi) {
    const double twips = twipsPerPixel(dpi);
    const double shown = length * twips;
    return pixelUnderPointer(pointer * twips, shown, shown, twips);
}

}  // namespace

frmZoom::frmZoom() : Form(IDD_ZOOM), view_(*this), hdr_(*this) {}

void frmZoom::See_Image(const std::u16string& fileName) {
    if (fileName.empty()) return;
    hdrMode_ = false;
    startPreview_ = false;
    ComPtr<IPicture> picture = loadPicture(fileName);
    const PictureSize size = pixelSizeOf(*picture.get());
    Set_BMP(std::move(picture), size.width, size.height);
    view_.setPointer(MousePointer::Cross);
}

void frmZoom::See_HDR(const std::u16string& fileName) {
    if (fileName.empty()) return;
    view_.setPointer(MousePointer::Cross);
    hdrMode_ = true;
    startPreview_ = true;
    if (hdr_) hdr_.object()->Init();
    fileName_ = fileName;
    load(GetActiveWindow());
    fitWindow();
}

void frmZoom::Set_BMP(ComPtr<IPicture> picture, std::int32_t width, std::int32_t height) {
    load(GetActiveWindow());
    view_.setPicture(std::move(picture));
    picture_ = {width, height};
    scrolled_ = {};
    fitWindow();
}

void frmZoom::onLoad() {
    RECT inner{};
    GetClientRect(window(), &inner);
    view_.create(window(), IDC_ZOOM_VIEW, inner);
    showReadout(hdrMode_);
}

void frmZoom::onUnload() {
    SetWindowPos(window(), HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    hdr_.endLoad();
}

/// The decoder ends at once, so that the window can.
void frmZoom::onClose() {
    startPreview_ = false;
    hdr_.endLoad();
    hide();
}

void frmZoom::onActivate(bool active) {
    if (!active) return;
    SetWindowPos(window(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    if (!hdrMode_ || !std::exchange(startPreview_, false)) return;
    PostMessageW(window(), kStartPreview, 0, 0);
}

void frmZoom::onResize(int width, int height) {
    if (!view_.window()) return;
    MoveWindow(view_.window(), 0, 0, width, std::max(height - stripHeight(), 0), TRUE);
    layOut();
    for (const int id : kReadout) {
        RECT place{};
        GetWindowRect(control(id), &place);
        const auto labelHeight = static_cast<int>(place.bottom - place.top);
        MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&place), 2);
        SetWindowPos(control(id), nullptr, place.left, height - (stripHeight() + labelHeight) / 2, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

bool frmZoom::onMessage(UINT message, WPARAM wide, LPARAM /*longer*/, LRESULT& answer) {
    switch (message) {
        case kStartPreview:
            hdr_.preview(fileName_);
            return true;
        case WM_GETDLGCODE:
            answer = DLGC_WANTARROWS;
            return true;
        case WM_KEYDOWN:
            return onKey(wide);
        case WM_MOUSEWHEEL:
            scrollTo(SB_VERT, scrolled_.y - GET_WHEEL_DELTA_WPARAM(wide) * 3 * kLine / WHEEL_DELTA);
            return true;
        default:
            return false;
    }
}

bool frmZoom::onKey(WPARAM key) {
    switch (key) {
        case VK_ESCAPE:
            onClose();
            return true;
        case VK_LEFT:
            scrollTo(SB_HORZ, scrolled_.x - kLine);
            return true;
        case VK_RIGHT:
            scrollTo(SB_HORZ, scrolled_.x + kLine);
            return true;
        case VK_UP:
            scrollTo(SB_VERT, scrolled_.y - kLine);
            return true;
        case VK_DOWN:
            scrollTo(SB_VERT, scrolled_.y + kLine);
            return true;
        default:
            return false;
    }
}

void frmZoom::viewPointed(int x, int y) {
    if (!hdrMode_ || !hdr_) return;
    const ScreenDpi dpi = screenDpi();
    std::array<Variant, 3> values;
    hdr_.object()->Get_Pixel(pixelAt(x, picture_.width, dpi.x), pixelAt(y, picture_.height, dpi.y),
                             &values[0].get(), &values[1].get(), &values[2].get());
    for (std::size_t c = 0; c < kLabels.size(); ++c) {
        if (V_VT(&values[c].get()) == VT_EMPTY) continue;
        const Variant number = convert(values[c].get(), VT_R8);
        setText(kLabels[c], readoutText(V_R8(&number.get())));
    }
}

void frmZoom::viewScrolled(int bar, int code) {
    const int position = bar == SB_HORZ ? scrolled_.x : scrolled_.y;
    scrollTo(bar, positionAfter(view_.window(), bar, code, position));
}

void frmZoom::scrollTo(int bar, int position) {
    const SIZE view = view_.size();
    if (bar == SB_HORZ) {
        scrolled_.x = heldPosition(view.cx, picture_.width, position);
    } else {
        scrolled_.y = heldPosition(view.cy, picture_.height, position);
    }
    layOut();
}

/// An empty frame of the picture's size until the pixels come.
void frmZoom::headerLoaded(std::int32_t dimX, std::int32_t dimY) {
    if (hdrMode_ && isLoaded()) Set_BMP({}, dimX, dimY);
}

void frmZoom::pictureRefreshed(ComPtr<IPicture> picture) {
    if (hdrMode_) view_.setPicture(std::move(picture));
}

void frmZoom::showReadout(bool shown) {
    for (const int id : kReadout) ShowWindow(control(id), shown ? SW_SHOWNA : SW_HIDE);
}

/// The strip below the picture with the values of a pixel.
int frmZoom::stripHeight() const { return hdrMode_ ? scaled(24) : 0; }

/// What the window has around the picture's view.
Extent frmZoom::borders() const {
    RECT outer{};
    const auto style = static_cast<DWORD>(GetWindowLongW(window(), GWL_STYLE));
    const auto extended = static_cast<DWORD>(GetWindowLongW(window(), GWL_EXSTYLE));
    AdjustWindowRectEx(&outer, style & ~(WS_HSCROLL | WS_VSCROLL), FALSE, extended);
    return {static_cast<int>(outer.right - outer.left),
            static_cast<int>(outer.bottom - outer.top) + stripHeight()};
}

void frmZoom::fitWindow() {
    showReadout(hdrMode_);
    const Extent screen{GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    Extent content = picture_ == Extent{} ? kEmptyView : picture_;
    if (hdrMode_) {
        RECT last{};
        GetWindowRect(control(IDC_ZOOM_BLUE), &last);
        MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&last), 2);
        content.width = std::max(content.width, static_cast<int>(last.right));
    }
    // The system makes no window smaller than this.
    const Extent around = borders();
    content.width = std::max(content.width, GetSystemMetrics(SM_CXMINTRACK) - around.width);
    content.height = std::max(content.height, GetSystemMetrics(SM_CYMINTRACK) - around.height);
    const WindowPlace place = zoomWindowPlace(content, around, scrollBars(), screen);
    SetWindowPos(window(), nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    RECT inner{};
    GetClientRect(window(), &inner);
    onResize(inner.right, inner.bottom);
}

/// Scroll bars and the picture's place in the view; showing a bar resizes the view and comes back here.
void frmZoom::layOut() {
    if (!view_.window() || layingOut_) return;
    layingOut_ = true;
    RECT whole{};
    GetWindowRect(view_.window(), &whole);
    const Extent area{static_cast<int>(whole.right - whole.left), static_cast<int>(whole.bottom - whole.top)};
    const ScrolledView scrolling = scrolledView(area, picture_, scrollBars());
    const auto [width, height] = scrolling.view;
    scrolled_ = {heldPosition(width, picture_.width, scrolled_.x),
                 heldPosition(height, picture_.height, scrolled_.y)};
    setScrollBar(view_.window(), SB_HORZ, scrolling.horizontalBar, picture_.width, width, scrolled_.x);
    setScrollBar(view_.window(), SB_VERT, scrolling.verticalBar, picture_.height, height, scrolled_.y);
    const LONG left = contentStart(width, picture_.width, scrolled_.x);
    const LONG top = contentStart(height, picture_.height, scrolled_.y);
    view_.setFrame({left, top, left + picture_.width, top + picture_.height});
    layingOut_ = false;
}

}  // namespace vrx
