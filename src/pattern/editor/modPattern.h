// The frame of a flag in the pattern editor.
#pragma once

#include <windows.h>

namespace vrx {

/// Two lines of bevel inside a rectangle whose right and bottom edges are not part of it: sunken in yellow
/// tones for the selected stop, otherwise raised in greys.
void Draw_FlagFrame(HDC dc, int left, int top, int right, int bottom, bool highlighted);

}  // namespace vrx
