// What a picture view shows, apart from any window: drawn the same on the screen, on a printer and into a
// metafile.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>

#include "com/com_ptr.h"

namespace vrx {

struct PictureScene {
    SIZE size{};   ///< of the inner area, in pixels
    RECT frame{};  ///< of the picture, in pixels of the area
    ComPtr<IPicture> picture;
    COLORREF background = GetSysColor(COLOR_APPWORKSPACE);
    COLORREF foreground = GetSysColor(COLOR_WINDOWTEXT);
    std::wstring label;  ///< lines in a frame in place of the picture, where there are any
    bool rightToLeft = false;
    int dpi = 96;  ///< that the size is meant for
};

/// Stretched into bounds of the device in its pixels.
void drawScene(HDC dc, const RECT& bounds, const PictureScene& scene);

/// The same for bounds in the device's own units, whichever it is set to. The device is left as it was.
void drawOnDevice(HDC dc, const RECT& bounds, const PictureScene& scene);

}  // namespace vrx
