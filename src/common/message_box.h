// The library's modal message box.
#pragma once

#include <string>

namespace vrx {

/// Shows a message with the platform's message-box style and returns the button pressed. Without a title the
/// host application's stands there. Where there is no user nothing is shown, and the default button returned.
/// The host's messages pass meanwhile, and their handlers may leave: whoever calls has given away the text by
/// then, and holds everything else.
int showMessage(std::u16string message, unsigned style, std::u16string title = {});

/// What the host application calls itself: the description or product name of its version information,
/// otherwise the name of its file.
[[nodiscard]] std::u16string hostTitle();

}  // namespace vrx
