// Replaces system calls that the thread library and the compiler's start-up code bring along: one that
// Windows XP lacks, so that the module would not load there, one that would change the host's process, one
// whose slots are never given back, and one that would find the host's own unwinder. Linked into the module
// before them.
#include "com/thread_library.h"

#include <windows.h>

#include <iterator>

namespace {

ULONGLONG WINAPI millisecondsSinceStart() {
    LARGE_INTEGER counter;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    const LONGLONG seconds = counter.QuadPart / frequency.QuadPart;
    const LONGLONG rest = counter.QuadPart % frequency.QuadPart;
    return static_cast<ULONGLONG>(seconds * 1000 + rest * 1000 / frequency.QuadPart);
}

/// The handler would serve the names of threads in debuggers only.
void* WINAPI installNoHandler(ULONG, PVECTORED_EXCEPTION_HANDLER) { return nullptr; }

#ifdef __i386__
/// A host made with the same compiler may have its shared unwinder loaded. The start-up code would leave our
/// frames to that one, and our own would find none at the first exception.
HMODULE WINAPI findNoUnwinder(const char* name) {
    if (name && lstrcmpiA(name, "libgcc_s_dw2-1.dll") == 0) return nullptr;
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetModuleHandleA");
    return reinterpret_cast<HMODULE(WINAPI*)(const char*)>(reinterpret_cast<void*>(found))(name);
}
#endif

/// The slots that the module keeps its threads' data in: the library's, the exceptions' and the calls'.
DWORD slots[3];
LONG slotCount = 0;

DWORD WINAPI allocateSlot() {
    if (slotCount == static_cast<LONG>(std::size(slots))) return TLS_OUT_OF_INDEXES;
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "TlsAlloc");
    const DWORD slot = reinterpret_cast<DWORD(WINAPI*)()>(reinterpret_cast<void*>(found))();
    if (slot != TLS_OUT_OF_INDEXES) slots[InterlockedIncrement(&slotCount) - 1] = slot;
    return slot;
}

bool releasesAtEnd = false;

/// Made before everything else of the module, and so gone after it.
struct ThreadLibraryEnd {
    ~ThreadLibraryEnd();
};

[[gnu::init_priority(101)]] ThreadLibraryEnd threadLibraryEnd;

}  // namespace

/// The library's part in the module's thread callbacks.
extern "C" PIMAGE_TLS_CALLBACK __xl_f;

ThreadLibraryEnd::~ThreadLibraryEnd() {
    if (!releasesAtEnd || slotCount == 0) return;
    vrx::releaseThreadAtItsEnd();
    while (slotCount > 0) TlsFree(slots[--slotCount]);
}

void vrx::releaseThreadLibraryAtUnload() { releasesAtEnd = true; }

void vrx::releaseThreadAtItsEnd() {
    releaseExceptionsOfThread();
    __xl_f(nullptr, DLL_THREAD_DETACH, nullptr);
}

// What the linker takes for an entry of the import table.
#ifdef __i386__
#define IMPORTED(function, argumentBytes) __asm__("__imp__" #function "@" #argumentBytes)
#else
#define IMPORTED(function, argumentBytes) __asm__("__imp_" #function)
#endif

extern "C" {
extern decltype(&millisecondsSinceStart) const importedGetTickCount64 IMPORTED(GetTickCount64, 0);
extern decltype(&installNoHandler) const importedAddHandler IMPORTED(AddVectoredExceptionHandler, 8);
decltype(&millisecondsSinceStart) const importedGetTickCount64 = millisecondsSinceStart;
decltype(&installNoHandler) const importedAddHandler = installNoHandler;
extern decltype(&allocateSlot) const importedTlsAlloc IMPORTED(TlsAlloc, 0);
decltype(&allocateSlot) const importedTlsAlloc = allocateSlot;
#ifdef __i386__
extern decltype(&findNoUnwinder) const importedGetModuleHandleA IMPORTED(GetModuleHandleA, 4);
decltype(&findNoUnwinder) const importedGetModuleHandleA = findNoUnwinder;
#endif
}
