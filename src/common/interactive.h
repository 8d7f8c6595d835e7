// Whether there is a user. Every window that waits for an answer asks here first.
#pragma once

namespace vrx {

/// False in a process whose window station nobody sees, such as a service or a web server: a window there
/// would wait for ever for an answer.
[[nodiscard]] bool isInteractive();

}  // namespace vrx
