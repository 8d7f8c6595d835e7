// Keeps a call that shows a dialog from being made again while the dialog is shown.
#pragma once

#include "ground/error.h"

namespace vrx {

class ReentryGuard {
  public:
    /// Error 5 while another guard holds the same flag.
    explicit ReentryGuard(bool& running) : running_(running) {
        if (running_) throw platformError(Platform::InvalidCall);
        running_ = true;
    }
    ReentryGuard(const ReentryGuard&) = delete;
    ReentryGuard& operator=(const ReentryGuard&) = delete;
    ~ReentryGuard() { running_ = false; }

  private:
    bool& running_;
};

}  // namespace vrx
