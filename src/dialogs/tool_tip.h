// Tool tips of the dialogs' controls.
#pragma once

#include <windows.h>

#include <string>

namespace vrx {

/// The tip goes with the control's dialog.
void addToolTip(HWND control, const std::u16string& text);

}  // namespace vrx
