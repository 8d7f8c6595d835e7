#include "com/fp_mode.h"

#include <xmmintrin.h>

namespace vrx {
namespace {

// All exceptions masked, round to nearest; the compiler's run-time expects the full x87 mantissa.
constexpr std::uint16_t kX87Mode = 0x037F;
constexpr std::uint32_t kSseMode = 0x1F80;

// Parts of the status: which exceptions have happened, and whether an unmasked one waits to be raised.
constexpr std::uint16_t kX87Exceptions = 0x00FF;
constexpr std::uint16_t kX87Pending = 0x0080;
constexpr std::uint32_t kSseExceptions = 0x003F;

std::uint16_t x87Control() {
    std::uint16_t control;
    __asm__ __volatile__("fnstcw %0" : "=m"(control));
    return control;
}

std::uint16_t x87Status() {
    std::uint16_t status;
    __asm__ __volatile__("fnstsw %0" : "=m"(status));
    return status;
}

void setX87Control(std::uint16_t control) { __asm__ __volatile__("fldcw %0" : : "m"(control) : "memory"); }

/// The exceptions that have happened cannot be set by themselves.
void setX87Exceptions(std::uint16_t exceptions) {
    std::uint32_t environment[7];
    __asm__ __volatile__("fnstenv %0" : "=m"(environment) : : "memory");
    environment[0] = kX87Mode;
    environment[1] = (environment[1] & ~std::uint32_t{kX87Exceptions}) | exceptions;
    __asm__ __volatile__("fldenv %0" : : "m"(environment) : "memory");
}

}  // namespace

/// Reading a mode costs nothing beside setting it, so a mode that is right already stays.
FloatingPointMode enterOwnMode() {
    const FloatingPointMode host{x87Control(), x87Status(), _mm_getcsr()};
    // The load would raise what is pending.
    if (host.status & kX87Pending) __asm__ __volatile__("fnclex" : : : "memory");
    if (host.control != kX87Mode) setX87Control(kX87Mode);
    if ((host.mxcsr & ~kSseExceptions) != kSseMode) _mm_setcsr(kSseMode);
    return host;
}

void restoreMode(const FloatingPointMode& host) {
    const auto exceptions = static_cast<std::uint16_t>(host.status & kX87Exceptions);
    if ((x87Status() & kX87Exceptions) != exceptions) setX87Exceptions(exceptions);
    if (x87Control() != host.control) setX87Control(host.control);
    if (_mm_getcsr() != host.mxcsr) _mm_setcsr(host.mxcsr);
}

}  // namespace vrx
