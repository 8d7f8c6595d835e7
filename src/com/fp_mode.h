// The floating-point mode that the library computes in, and that of its host.
#pragma once

#include <cstdint>

namespace vrx {

/// What the processor holds of a mode: x87's control and status, and SSE's.
struct FloatingPointMode {
    std::uint16_t control;
    std::uint16_t status;
    std::uint32_t mxcsr;
};

/// Sets our mode: no exceptions, rounding to nearest, denormals kept. Returns the one before.
FloatingPointMode enterOwnMode();

/// Sets a host's mode again, with the exceptions that it had recorded.
void restoreMode(const FloatingPointMode& host);

}  // namespace vrx
