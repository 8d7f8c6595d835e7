// Keeps the JPEG library's errors inside: they end the guarded call, print nothing, and become a status.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

#include "jpeg/engine/status.h"

namespace vrx::jpeg {

class ErrorTrap : public jpeg_error_mgr {
  public:
    ErrorTrap();

    /// Runs `body`, which calls the library. An error leaves `body` without running destructors, so its
    /// variables must not own anything.
    template <class Body>
    void guard(Body body) {
        if (setjmp(jump_) != 0) throw Failure{status_};
        body();
    }

    /// Ends the guarded call that runs in `codec`, a compressor or decompressor of the library.
    template <class Codec>
    [[noreturn]] static void leave(Codec* codec, Status status) {
        static_cast<ErrorTrap*>(codec->err)->leaveGuard(status);
    }

  private:
    [[noreturn]] void leaveGuard(Status status);
    static void handleError(j_common_ptr codec);
    static void handleMessage(j_common_ptr codec, int level);
    static void printNothing(j_common_ptr) {}

    std::jmp_buf jump_{};
    Status status_ = Status::InternalError;
};

}  // namespace vrx::jpeg
