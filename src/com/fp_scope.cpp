#include "com/fp_scope.h"

#include <xmmintrin.h>

#include <utility>

namespace vrx {
namespace {

// All exceptions masked, round to nearest; the compiler's run-time expects the full x87 mantissa.
constexpr std::uint16_t kX87Mode = 0x037F;
constexpr std::uint32_t kSseMode = 0x1F80;

thread_local FpScope* innermost = nullptr;

FloatingPointState enter() {
    FloatingPointState host;
    // Stores without raising what may be pending and masks every exception, so that the load below is safe.
    __asm__ __volatile__("fnstenv %0\n\tfnclex\n\tfldcw %1" : "=m"(host.x87) : "m"(kX87Mode) : "memory");
    host.mxcsr = _mm_getcsr();
    _mm_setcsr(kSseMode);
    return host;
}

void leave(const FloatingPointState& host) {
    __asm__ __volatile__("fldenv %0" : : "m"(host.x87) : "memory");
    _mm_setcsr(host.mxcsr);
}

}  // namespace

FpScope::FpScope() : host_(enter()), outer_(std::exchange(innermost, this)) {}

FpScope::~FpScope() {
    innermost = outer_;
    leave(host_);
}

HostFpScope::HostFpScope() : entry_(innermost) {
    if (entry_) leave(entry_->host_);
}

HostFpScope::~HostFpScope() {
    if (entry_) entry_->host_ = enter();
}

}  // namespace vrx
