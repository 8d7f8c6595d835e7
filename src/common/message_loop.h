// Letting the thread's waiting messages happen in the middle of long work.
#pragma once

namespace vrx {

/// Dispatches the messages that wait on this thread, in the host's floating-point mode. False when the
/// program is to end: the request to quit is then left for the host's own message loop.
[[nodiscard]] bool doEvents();

}  // namespace vrx
