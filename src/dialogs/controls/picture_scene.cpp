#include "dialogs/controls/picture_scene.h"

#include <algorithm>

#include "com/entry.h"
#include "com/win_resource.h"
#include "common/device_context.h"
#include "dialogs/controls/picture_drawing.h"
#include "dialogs/dpi.h"

namespace vrx {
namespace {

constexpr int kLabelHeight = 13;  // at the resolution of designs

/// What the device is set to comes back at the end.
class SavedDevice {
  public:
    explicit SavedDevice(HDC dc) : dc_(dc), level_(SaveDC(dc)) {}
    SavedDevice(const SavedDevice&) = delete;
    SavedDevice& operator=(const SavedDevice&) = delete;
    ~SavedDevice() {
        if (level_) RestoreDC(dc_, level_);
    }

  private:
    HDC dc_;
    int level_;
};

/// A place in the scene as one in the bounds; halves away from zero, beyond 32 bits as well.
LONG stretched(LONG position, LONG size, LONG from, LONG to) {
    const double scale = size > 0 ? (static_cast<double>(to) - from) / size : 0.0;
    const double place = from + position * scale;
    return static_cast<LONG>(place + (place < 0 ? -0.5 : 0.5));
}

RECT stretched(const RECT& frame, const SIZE& size, const RECT& bounds) {
    return {stretched(frame.left, size.cx, bounds.left, bounds.right),
            stretched(frame.top, size.cy, bounds.top, bounds.bottom),
            stretched(frame.right, size.cx, bounds.left, bounds.right),
            stretched(frame.bottom, size.cy, bounds.top, bounds.bottom)};
}

void fill(HDC dc, const RECT& bounds, COLORREF color) {
    const Brush brush(CreateSolidBrush(color));
    if (brush) FillRect(dc, &bounds, brush.get());
}

void drawLabel(HDC dc, RECT bounds, const PictureScene& scene) {
    const Brush line(CreateSolidBrush(scene.foreground));
    if (line) FrameRect(dc, &bounds, line.get());
    const int height = MulDiv(kLabelHeight, scene.dpi, kDesignDpi);
    const LONG scaled = stretched(height, scene.size.cy, 0, bounds.bottom - bounds.top);
    LOGFONTW description{};
    description.lfHeight = scaled;
    description.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(description.lfFaceName, L"MS Shell Dlg", LF_FACESIZE);
    const Font font(CreateFontIndirectW(&description));
    const Selection selected(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, scene.foreground);
    const UINT format = DT_CENTER | DT_NOPREFIX | DT_END_ELLIPSIS | (scene.rightToLeft ? DT_RTLREADING : 0);
    const int length = static_cast<int>(scene.label.size());
    RECT lines = bounds;
    DrawTextW(dc, scene.label.c_str(), length, &lines, format | DT_CALCRECT);
    bounds.top += std::max(0L, (bounds.bottom - bounds.top - (lines.bottom - lines.top)) / 2);
    DrawTextW(dc, scene.label.c_str(), length, &bounds, format);
}

bool isMetafile(HDC dc) {
    const DWORD kind = GetObjectType(dc);
    return kind == OBJ_METADC || kind == OBJ_ENHMETADC;
}

/// Sets the device to its own pixels and returns the bounds in them.
RECT toPixels(HDC dc, const RECT& bounds) {
    POINT corners[] = {{bounds.left, bounds.top}, {bounds.right, bounds.bottom}};
    LPtoDP(dc, corners, 2);
    if (GetGraphicsMode(dc) == GM_ADVANCED) ModifyWorldTransform(dc, nullptr, MWT_IDENTITY);
    SetMapMode(dc, MM_TEXT);
    SetWindowOrgEx(dc, 0, 0, nullptr);
    SetViewportOrgEx(dc, 0, 0, nullptr);
    const auto [left, right] = std::minmax(corners[0].x, corners[1].x);
    const auto [top, bottom] = std::minmax(corners[0].y, corners[1].y);
    return {left, top, right, bottom};
}

}  // namespace

void drawScene(HDC dc, const RECT& bounds, const PictureScene& scene) {
    fill(dc, bounds, scene.background);
    if (!scene.label.empty()) {
        drawLabel(dc, bounds, scene);
    } else if (scene.picture && scene.size.cx > 0 && scene.size.cy > 0) {
        const HeldReference picture(scene.picture);
        drawPicture(dc, *picture.get(), stretched(scene.frame, scene.size, bounds));
    }
}

/// A metafile is played in units of its own, so its are left as they are.
void drawOnDevice(HDC dc, const RECT& bounds, const PictureScene& scene) {
    const Held<SavedDevice> saved(dc);
    const RECT place = isMetafile(dc) ? bounds : toPixels(dc, bounds);
    IntersectClipRect(dc, place.left, place.top, place.right, place.bottom);
    drawScene(dc, place, scene);
}

}  // namespace vrx
