// Letting the thread's waiting messages happen in the middle of long work.
#pragma once

#include <windows.h>

#include <cstdint>

#include "com/entry.h"

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

/// The same for work that lets messages happen after every small piece. To look whether one waits is a call
/// of the system, which may take longer than the piece: so where none waited and only our own code has run
/// since, the next look may come a millisecond later. What a host posts in an event is found at once.
class MessageBreaks {
  public:
    [[nodiscard]] bool doEvents() noexcept;

  private:
    HostTurn quietTurn_;
    std::uint64_t quietTime_ = 0;
};

}  // namespace vrx
