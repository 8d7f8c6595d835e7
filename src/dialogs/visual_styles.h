// The common controls of version 6 for the library's own windows, whatever version the host uses.
#pragma once

#include <windows.h>

namespace vrx {

/// While it exists, windows are made with the library's own activation context. Without one, as on a system
/// that does not know it, they are made as the host's are.
class VisualStyles {
  public:
    VisualStyles();
    VisualStyles(const VisualStyles&) = delete;
    VisualStyles& operator=(const VisualStyles&) = delete;
    ~VisualStyles();

  private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

}  // namespace vrx
