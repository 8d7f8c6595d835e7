// The window of the host that a dialog or a message belongs to.
#pragma once

#include <windows.h>

namespace vrx {

/// The thread's active window. While another program is in front the thread has none, and a window that is
/// made but not shown yet may be active: then the first window that the host shows, or what it shows above
/// that one. Null for a host without windows.
[[nodiscard]] HWND ownerWindow();

}  // namespace vrx
