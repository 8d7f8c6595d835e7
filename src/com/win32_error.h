// The operating system's error codes as the errors that VB hosts know.
#pragma once

#include "ground/error.h"

namespace vrx {

/// The platform error for a code of GetLastError; Device I/O error for one that has no better name.
[[nodiscard]] Platform platformOfWin32(unsigned long code);

/// The same as an error to throw.
[[nodiscard]] Error win32Error(unsigned long code);

}  // namespace vrx
