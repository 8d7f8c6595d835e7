// Keeps a call that shows a dialog from being made again while the dialog is shown.
#pragma once

#include "com/entry.h"
#include "ground/error.h"

namespace vrx {

/// Ends with its frame, however that ends. The flag must not lie in a frame.
class ReentryGuard {
  public:
    /// Error 5 while another guard holds the same flag.
    explicit ReentryGuard(bool& running) : running_(unheld(running)) {}

  private:
    static bool& unheld(bool& flag) {
        if (flag) throw platformError(Platform::InvalidCall);
        return flag;
    }

    HeldFlag running_;
};

}  // namespace vrx
