#include "com/fp_scope.h"

#include <xmmintrin.h>

#include <utility>

namespace vrx {
namespace {

// All exceptions masked, round to nearest; the compiler's run-time expects the full x87 mantissa.
constexpr std::uint16_t kX87Mode = 0x037F;
constexpr std::uint32_t kSseMode = 0x1F80;

/// The scope in which the host's mode is kept; none while the host runs.
thread_local FpScope* entry = nullptr;

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

FpScope::FpScope() : host_(enter()), isEntry_(entry == nullptr) {
    if (isEntry_) entry = this;
}

FpScope::~FpScope() {
    if (isEntry_) entry = nullptr;
    leave(host_);
}

HostFpScope::HostFpScope() : entry_(std::exchange(entry, nullptr)) {
    if (entry_) leave(entry_->host_);
}

HostFpScope::~HostFpScope() {
    if (entry_) entry_->host_ = enter();
    entry = entry_;
}

}  // namespace vrx
