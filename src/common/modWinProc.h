// The window procedure that bounds the size of the pattern editor's window.
#pragma once

#include <windows.h>

namespace vrx {

/// Outer sizes between which the user can drag the window's border.
inline constexpr POINT kSmallestPatternWindow{249, 144};
inline constexpr POINT kLargestPatternWindow{1000, 144};

/// In place of the window's own procedure, which it passes everything else on to: 249 to 1000 pixels wide,
/// 144 high.
LRESULT CALLBACK Pattern_WindowProc(HWND window, UINT message, WPARAM wide, LPARAM longer);

/// Puts the procedure in the place of the window's own one, for one window at a time.
void installPatternProc(HWND window);
/// Puts the window's own procedure back.
void removePatternProc(HWND window);

}  // namespace vrx
