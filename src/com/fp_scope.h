// The floating-point mode: ours while the library runs, the host's while the host does.
#pragma once

#include <cstdint>

namespace vrx {

/// What the processor holds of a caller's mode, x87 and SSE.
struct FloatingPointState {
    std::uint32_t x87[7];
    std::uint32_t mxcsr;
};

/// For each entry from a host: no exceptions, rounding to nearest, denormals kept; the host's mode comes back
/// at the end. An entry may pass through several: a late-bound call makes an early-bound one.
class FpScope {
  public:
    FpScope();
    FpScope(const FpScope&) = delete;
    FpScope& operator=(const FpScope&) = delete;
    ~FpScope();

  private:
    friend class HostFpScope;
    FloatingPointState host_;
    bool isEntry_;
};

/// For each call into the host (an event sink, dispatched messages): the mode of the entry comes back
/// meanwhile. A mode that the host changes in there holds from then on.
class HostFpScope {
  public:
    HostFpScope();
    HostFpScope(const HostFpScope&) = delete;
    HostFpScope& operator=(const HostFpScope&) = delete;
    ~HostFpScope();

  private:
    FpScope* entry_;
};

}  // namespace vrx
