// The short message: a small window on top of all others while a long operation runs. Messages are nested;
// the last one is shown. The window never takes the focus away from the program that works.
#pragma once

#include <string>

/// The one form that the whole library shares, for calls from every thread. Its window belongs to the thread
/// that first showed a message and lives as long as the library has any object. While a message is shown it
/// stays without one, and keeps the library in memory.
namespace vrx::frmMessage {

void show(const std::u16string& message);
/// Takes the last message away. True when it was the only one, and the window is hidden now.
[[nodiscard]] bool hide();

}  // namespace vrx::frmMessage
