// What the language's run-time keeps for exceptions, in place of its own: that one fails, and ends in a
// recursion without end or in the end of the process, where the system has no memory left for a lock or a
// thread's data. Here nothing needs memory that may be missing. Linked into each module.

#include <windows.h>

#include <cxxabi.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "com/runtime_calls.h"

namespace {

// More than the run-time puts before an object that is thrown.
constexpr std::size_t kHeader = 256;
constexpr std::size_t kReserveSize = 512;
constexpr std::size_t kReserveCount = 64;
constexpr std::size_t kReserveThreads = 64;

/// For exceptions when there is no memory: most tell just that.
struct Reserve {
    alignas(16) unsigned char blocks[kReserveCount][kReserveSize];
    volatile LONG taken[kReserveCount];
};

Reserve reserve;

void* takeReserve(std::size_t size) {
    if (size > kReserveSize) return nullptr;
    for (std::size_t i = 0; i < kReserveCount; ++i) {
        if (InterlockedExchange(&reserve.taken[i], 1) == 0) return reserve.blocks[i];
    }
    return nullptr;
}

/// False for a block that is not of the reserve.
bool returnReserve(void* block) {
    const auto offset =
        reinterpret_cast<std::uintptr_t>(block) - reinterpret_cast<std::uintptr_t>(reserve.blocks);
    if (offset >= sizeof reserve.blocks) return false;
    InterlockedExchange(&reserve.taken[offset / kReserveSize], 0);
    return true;
}

void* allocate(std::size_t size) {
    void* block = std::malloc(size);
    if (!block) block = takeReserve(size);
    if (!block) std::terminate();
    std::memset(block, 0, kHeader);
    return block;
}

void release(void* block) {
    if (!returnReserve(block)) std::free(block);
}

/// A thread's list of the exceptions that it has caught; zero at first.
struct Globals {
    void* caught;
    unsigned uncaught;
};

/// For threads that began to throw when there was no memory.
struct ReserveGlobals {
    volatile LONG thread;
    Globals globals;
};

ReserveGlobals reserveGlobals[kReserveThreads];

/// Where each thread has its list; there before anything of the module can throw.
struct Slot {
    DWORD number = TlsAlloc();
};

[[gnu::init_priority(102)]] const Slot slot;

/// The first throw makes what the run-time's unwinder keeps for all later ones, and cannot do without memory.
struct FirstThrow {
    FirstThrow() {
        try {
            throw 0;
        } catch (int) {
            return;
        }
    }
};

[[gnu::init_priority(103)]] const FirstThrow firstThrow;

/// The place of the thread `wanted`, which is this one, or a free one for 0; null where there is none.
ReserveGlobals* takeReserveGlobals(LONG wanted) {
    const auto thread = static_cast<LONG>(GetCurrentThreadId());
    for (ReserveGlobals& place : reserveGlobals) {
        if (InterlockedCompareExchange(&place.thread, thread, wanted) == wanted) return &place;
    }
    return nullptr;
}

Globals* globalsOfThread() {
    if (auto* known = static_cast<Globals*>(TlsGetValue(slot.number))) return known;
    if (auto* place = takeReserveGlobals(static_cast<LONG>(GetCurrentThreadId()))) return &place->globals;
    auto* made = static_cast<Globals*>(std::calloc(1, sizeof(Globals)));
    if (made && TlsSetValue(slot.number, made)) return made;
    std::free(made);
    if (auto* place = takeReserveGlobals(0)) return &place->globals;
    std::terminate();
}

}  // namespace

/// For DllMain, when a thread ends.
void vrx::releaseExceptionsOfThread() {
    std::free(TlsGetValue(slot.number));
    TlsSetValue(slot.number, nullptr);
    if (auto* place = takeReserveGlobals(static_cast<LONG>(GetCurrentThreadId()))) {
        place->globals = {};
        InterlockedExchange(&place->thread, 0);
    }
}

namespace __cxxabiv1 {

struct __cxa_dependent_exception;

extern "C" {

void* __cxa_allocate_exception(std::size_t size) noexcept {
    return static_cast<unsigned char*>(allocate(size + kHeader)) + kHeader;
}

void __cxa_free_exception(void* object) noexcept { release(static_cast<unsigned char*>(object) - kHeader); }

__cxa_dependent_exception* __cxa_allocate_dependent_exception() noexcept {
    return static_cast<__cxa_dependent_exception*>(allocate(kHeader));
}

void __cxa_free_dependent_exception(__cxa_dependent_exception* exception) noexcept { release(exception); }

__cxa_eh_globals* __cxa_get_globals() noexcept {
    return reinterpret_cast<__cxa_eh_globals*>(globalsOfThread());
}

__cxa_eh_globals* __cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }
}

}  // namespace __cxxabiv1
