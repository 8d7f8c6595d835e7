// Letting the thread's waiting messages happen in the middle of long work.
#pragma once

#include <windows.h>

namespace vrx {

/// Sent to one of the library's dialogs for Enter in the control given as LPARAM: whether the dialog takes
/// it.
/// The last of the applications' messages: dialogs count their own ones from the first.
inline constexpr UINT kEnterPressed = 0xBFFF;

/// Dispatches every message that waits on this thread now, in the host's floating-point mode; the keys of the
/// library's own dialogs work meanwhile. What those messages bring about may wait, so that a window which
/// posts to itself or never finishes painting does not hold the call. False when the program is to end: the
/// request to quit is then left for the host's own message loop.
[[nodiscard]] bool doEvents() noexcept;

}  // namespace vrx
