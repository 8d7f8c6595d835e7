// The hourglass while something takes its time.
#pragma once

#include <windows.h>

namespace vrx {

class WaitCursor {
  public:
    WaitCursor() : before_(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor() { SetCursor(before_); }

  private:
    HCURSOR before_;
};

}  // namespace vrx
