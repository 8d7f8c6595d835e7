// Drawing a picture object into a rectangle, and off-screen bitmaps to draw on.
#pragma once

#include <windows.h>

#include <ocidl.h>

namespace vrx {

/// A bitmap to draw a picture on before it is shown.
[[nodiscard]] HBITMAP makeCanvas(HDC screen, IPicture* picture, int width, int height);

/// Stretches a picture over the frame.
void drawPicture(HDC dc, IPicture& picture, const RECT& frame);

}  // namespace vrx
