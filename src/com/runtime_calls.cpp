// Four calls of the system that the compiler's own libraries, of threads and of the start of a module, make
// within every DLL, and that a DLL must not make in its host's process as they stand. The libraries call by
// the import table's entry for a function, and the linker takes the entries that stand here in place of the
// system's, because this file is linked into the module itself.
//
// The compiler's other model of threads would make two of them needless, and brings a fifth: each of its
// locks is a semaphore that it never closes, so a host would lose handles with every loading of the module.
#include "com/runtime_calls.h"

#include <windows.h>

#include <iterator>

#include "com/system_function.h"

namespace {

/// GetTickCount64, for the clock of threads. Windows XP lacks it and would not load the module.
ULONGLONG WINAPI millisecondsSinceStart() {
    LARGE_INTEGER counter;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    const LONGLONG seconds = counter.QuadPart / frequency.QuadPart;
    const LONGLONG rest = counter.QuadPart % frequency.QuadPart;
    return static_cast<ULONGLONG>(seconds * 1000 + rest * 1000 / frequency.QuadPart);
}

/// AddVectoredExceptionHandler, for the names of threads in debuggers. It would change the host's process.
void* WINAPI installNoHandler(ULONG, PVECTORED_EXCEPTION_HANDLER) { return nullptr; }

constexpr wchar_t kKernel[] = L"kernel32.dll";

#ifdef __i386__
/// GetModuleHandleA, by which the start of a module looks for a shared unwinder. A host made with the same
/// compiler may have one loaded; our frames would be left to it, and our own unwinder would find none at the
/// first exception.
HMODULE WINAPI findNoUnwinder(const char* name) {
    if (name && lstrcmpiA(name, "libgcc_s_dw2-1.dll") == 0) return nullptr;
    return vrx::systemFunction<HMODULE(WINAPI*)(const char*)>(kKernel, "GetModuleHandleA")(name);
}
#endif

/// The slots of the module's threads: the library's of threads, the exceptions', the calls' and the error
/// record's. One more PerThread takes one more here.
DWORD slots[4];
LONG slotCount = 0;

/// TlsAlloc. The library of threads never gives its slot back; here each is known, to be given back at the
/// end.
DWORD WINAPI allocateSlot() {
    if (slotCount == static_cast<LONG>(std::size(slots))) return TLS_OUT_OF_INDEXES;
    const DWORD slot = vrx::systemFunction<DWORD(WINAPI*)()>(kKernel, "TlsAlloc")();
    if (slot != TLS_OUT_OF_INDEXES) slots[InterlockedIncrement(&slotCount) - 1] = slot;
    return slot;
}

bool processStays = false;

/// Made before everything else of the module, and so gone after it.
struct RuntimeEnd {
    ~RuntimeEnd() {
        if (!processStays || slotCount == 0) return;
        vrx::releaseThreadAtItsEnd();
        while (slotCount > 0) TlsFree(slots[--slotCount]);
    }
};

[[gnu::init_priority(101)]] RuntimeEnd runtimeEnd;

}  // namespace

/// The library of threads, told of a thread's end as the system's loader tells it. There is no other way to
/// have it give back what it keeps of a thread.
extern "C" PIMAGE_TLS_CALLBACK __xl_f;

void vrx::releaseRuntimeAtUnload() { processStays = true; }

void vrx::releaseThreadAtItsEnd() {
    releaseExceptionsOfThread();
    __xl_f(nullptr, DLL_THREAD_DETACH, nullptr);
}

// The linker's name for the import table's entry of a function.
#ifdef __i386__
#define IMPORTED(function, argumentBytes) __asm__("__imp__" #function "@" #argumentBytes)
#else
#define IMPORTED(function, argumentBytes) __asm__("__imp_" #function)
#endif

extern "C" {
extern decltype(&millisecondsSinceStart) const importedGetTickCount64 IMPORTED(GetTickCount64, 0);
extern decltype(&installNoHandler) const importedAddHandler IMPORTED(AddVectoredExceptionHandler, 8);
extern decltype(&allocateSlot) const importedTlsAlloc IMPORTED(TlsAlloc, 0);
decltype(&millisecondsSinceStart) const importedGetTickCount64 = millisecondsSinceStart;
decltype(&installNoHandler) const importedAddHandler = installNoHandler;
decltype(&allocateSlot) const importedTlsAlloc = allocateSlot;
#ifdef __i386__
extern decltype(&findNoUnwinder) const importedGetModuleHandleA IMPORTED(GetModuleHandleA, 4);
decltype(&findNoUnwinder) const importedGetModuleHandleA = findNoUnwinder;
#endif
}
