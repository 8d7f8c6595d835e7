// The floating-point mode of the test itself, which is the library's host.
#pragma once

#include <xmmintrin.h>

#include <cstdint>

namespace host {

struct Mode {
    std::uint16_t x87 = 0;
    std::uint32_t mxcsr = 0;

    bool operator==(const Mode&) const = default;
};

/// Without the flags that record what has happened.
inline Mode currentMode() {
    constexpr std::uint32_t kFlags = 0x3F;
    Mode mode;
    __asm__ __volatile__("fnstcw %0" : "=m"(mode.x87));
    mode.mxcsr = _mm_getcsr() & ~kFlags;
    return mode;
}

inline void setMode(const Mode& mode) {
    __asm__ __volatile__("fnclex\n\tfldcw %0" : : "m"(mode.x87));
    _mm_setcsr(mode.mxcsr);
}

/// Runs the test in a mode of its host's, and the framework in its own.
class HostMode {
  public:
    explicit HostMode(const Mode& mode) : framework_(currentMode()) { setMode(mode); }
    HostMode(const HostMode&) = delete;
    HostMode& operator=(const HostMode&) = delete;
    ~HostMode() { setMode(framework_); }

  private:
    Mode framework_;
};

}  // namespace host
