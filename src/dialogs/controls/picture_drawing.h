// Drawing a picture object into a rectangle, and off-screen bitmaps to draw on.
#pragma once

#include <windows.h>

#include <ocidl.h>

namespace vrx {

/// A bitmap to draw a picture on before the window shows it.
[[nodiscard]] HBITMAP makeCanvas(HWND window, IPicture* picture, int width, int height);

/// Stretches a picture over the frame.
void drawPicture(HDC dc, IPicture& picture, const RECT& frame);

}  // namespace vrx
