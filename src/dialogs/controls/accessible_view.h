// What screen readers are told of a picture view: a graphic with the window's caption for its name, which can
// be clicked.
#pragma once

#include <windows.h>

namespace vrx {

/// The answer to WM_GETOBJECT; 0 where the system is to answer.
[[nodiscard]] LRESULT accessibleView(HWND view, WPARAM wide, LPARAM longer);

}  // namespace vrx
