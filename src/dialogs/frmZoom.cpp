#include "dialogs/frmZoom.h"

#include <algorithm>
#include <array>
#include <utility>

#include "com/variant_convert.h"
#include "common/owner_window.h"
#include "dialogs/dpi.h"
#include "dialogs/engine/preview_frame.h"
#include "dialogs/picture_size.h"
#include "dialogs/resource.h"
#include "dialogs/window_place.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

// Posted to start the decoding, when the activation of the window is over; in the range that is left for a
// program's own windows.
constexpr UINT kStart = WM_APP;

constexpr Extent kEmptyView{320, 240};
constexpr std::array kLabels{IDC_LBLCOMP0, IDC_LBLCOMP1, IDC_LBLCOMP2};
// Each value behind its caption.
constexpr std::array kReadout{IDC_LBLRED, IDC_LBLCOMP0, IDC_LBLGREEN, IDC_LBLCOMP1, IDC_LBLBLU, IDC_LBLCOMP2};
// At the resolution of designs.
constexpr int kStripHeight = 24;
constexpr int kMoreForAValue = 80;

/// The pixel along one side that a pointer shows.
std::int32_t pixelAt(int pointer, int length, int dpi) {
    const double twips = twipsPerPixel(dpi);
    const double shown = length * twips;
    return pixelUnderPointer(pointer * twips, shown, shown, twips);
}

}  // namespace

frmZoom::frmZoom() : Form(IDD_FRMZOOM), picture_(*this), hdr_(*this) {}

void frmZoom::See_Image(const std::u16string& fileName) {
    if (fileName.empty()) return;
    hdrMode_ = false;
    startPreview_ = false;
    ComPtr<IPicture> picture = loadPicture(fileName);
    const Extent size = screenSizeOf(picture);
    Set_BMP(std::move(picture), size.width, size.height);
}

void frmZoom::See_HDR(const std::u16string& fileName) {
    if (fileName.empty()) return;
    hdrMode_ = true;
    startPreview_ = true;
    if (hdr_) hdr_.object()->Init();
    fileName_ = fileName;
    load(ownerWindow());
    fitWindow();
}

void frmZoom::Set_BMP(ComPtr<IPicture> picture, std::int32_t width, std::int32_t height) {
    load(ownerWindow());
    picture_.show(std::move(picture), {width, height});
    fitWindow();
}

void frmZoom::onLoad() {
    RECT inner{};
    GetClientRect(window(), &inner);
    picture_.create(window(), IDC_IMGPREVIEW, inner);
    picture_.setPointer(MousePointer::Cross);
    for (std::size_t i = 0; i < kReadout.size(); ++i) readout_[i] = placeInParent(control(kReadout[i]));
    showReadout(hdrMode_);
    // The system chose the control with the focus before there was the picture's.
    PostMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(picture_.window()), TRUE);
}

/// The host's own window stays where it is.
void frmZoom::onUnload() {
    SetWindowPos(window(), HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    startPreview_ = false;
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
    SetWindowPos(window(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    if (hdrMode_ && startPreview_) PostMessageW(window(), kStart, 0, 0);
}

/// Once, however often the window is activated, and not any more when it has been closed.
void frmZoom::startPreview() {
    if (hdrMode_ && std::exchange(startPreview_, false)) hdr_.preview(fileName_);
}

void frmZoom::onResize(int width, int height) {
    if (!picture_.window()) return;
    picture_.resize(width, std::max(height - stripHeight(), 0));
    placeReadout(width, height);
}

/// Values have more room in a wider window: those of bright pixels have many digits.
void frmZoom::placeReadout(int width, int height) const {
    const int room = (width - static_cast<int>(readout_.back().right)) / static_cast<int>(kLabels.size());
    const int extra = std::clamp(room, 0, scaled(kMoreForAValue));
    for (std::size_t i = 0; i < kReadout.size(); ++i) {
        const RECT& designed = readout_[i];
        const int pair = static_cast<int>(i) / 2;
        const bool isValue = i % 2 == 1;
        const int labelHeight = static_cast<int>(designed.bottom - designed.top);
        const int labelWidth = static_cast<int>(designed.right - designed.left) + (isValue ? extra : 0);
        SetWindowPos(control(kReadout[i]), nullptr, designed.left + pair * extra,
                     height - (stripHeight() + labelHeight) / 2, labelWidth, labelHeight,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

bool frmZoom::onMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& /*answer*/) {
    switch (message) {
        case kStart:
            startPreview();
            return true;
        case WM_GETMINMAXINFO:
            limitSize(*reinterpret_cast<MINMAXINFO*>(longer));
            return true;
        case WM_KEYDOWN:
            if (wide != VK_ESCAPE) return picture_.onKey(wide);
            onClose();
            return true;
        default:
            return picture_.onWheel(message, wide);
    }
}

void frmZoom::viewPointed(int x, int y) {
    pointed_ = POINT{x, y};
    showPixel();
}

/// The values of the pixel that the mouse pointed at last: its row may have come since.
void frmZoom::showPixel() {
    if (!hdrMode_ || !hdr_ || !pointed_) return;
    const ScreenDpi dpi = screenDpi();
    const auto [width, height] = picture_.pictureSize();
    std::array<Variant, 3> values;
    hdr_.object()->Get_Pixel(pixelAt(pointed_->x, width, dpi.x), pixelAt(pointed_->y, height, dpi.y),
                             &values[0].get(), &values[1].get(), &values[2].get());
    for (std::size_t c = 0; c < kLabels.size(); ++c) {
        if (V_VT(&values[c].get()) == VT_EMPTY) continue;
        const Variant number = convert(values[c].get(), VT_R8);
        setText(kLabels[c], readoutText(V_R8(&number.get())));
    }
}

/// An empty frame of the picture's size until the pixels come.
void frmZoom::headerLoaded(std::int32_t dimX, std::int32_t dimY) {
    if (hdrMode_ && isLoaded()) Set_BMP({}, dimX, dimY);
}

void frmZoom::pictureRefreshed(ComPtr<IPicture> picture) {
    if (!hdrMode_) return;
    picture_.refresh(std::move(picture));
    showPixel();
}

void frmZoom::showReadout(bool shown) {
    for (const int id : kReadout) ShowWindow(control(id), shown ? SW_SHOWNA : SW_HIDE);
}

/// The strip below the picture with the values of a pixel.
int frmZoom::stripHeight() const { return hdrMode_ ? scaled(kStripHeight) : 0; }

/// What the window has around the picture's view.
Extent frmZoom::borders() const {
    RECT outer{};
    const auto style = static_cast<DWORD>(GetWindowLongW(window(), GWL_STYLE));
    const auto extended = static_cast<DWORD>(GetWindowLongW(window(), GWL_EXSTYLE));
    AdjustWindowRectEx(&outer, style & ~(WS_HSCROLL | WS_VSCROLL), FALSE, extended);
    return {static_cast<int>(outer.right - outer.left),
            static_cast<int>(outer.bottom - outer.top) + stripHeight()};
}

/// The values of a pixel have their room in the smallest window.
void frmZoom::limitSize(MINMAXINFO& limits) const {
    if (!hdrMode_) return;
    const LONG needed = readout_.back().right + borders().width;
    limits.ptMinTrackSize.x = std::max(limits.ptMinTrackSize.x, needed);
}

void frmZoom::fitWindow() {
    showReadout(hdrMode_);
    const Extent screen{GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    Extent content = picture_.pictureSize() == Extent{} ? kEmptyView : picture_.pictureSize();
    if (hdrMode_) content.width = std::max(content.width, static_cast<int>(readout_.back().right));
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

}  // namespace vrx
