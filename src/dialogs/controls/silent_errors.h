// Keeps the system from showing a box of its own for a drive without a medium.
#pragma once

#include <windows.h>

#include "com/system_function.h"

namespace vrx {

/// For this thread, for as long as it lasts. Before Windows 7 only the whole process can be silenced, and it
/// is not: the system's box then asks for the medium.
class SilentErrors {
  public:
    SilentErrors() : setMode_(find()) {
        if (setMode_) setMode_(SEM_FAILCRITICALERRORS, &previous_);
    }
    SilentErrors(const SilentErrors&) = delete;
    SilentErrors& operator=(const SilentErrors&) = delete;
    ~SilentErrors() {
        if (setMode_) setMode_(previous_, nullptr);
    }

  private:
    using SetMode = BOOL(WINAPI*)(DWORD, DWORD*);

    static SetMode find() { return systemFunction<SetMode>(L"kernel32.dll", "SetThreadErrorMode"); }

    SetMode setMode_;
    DWORD previous_ = 0;
};

}  // namespace vrx
