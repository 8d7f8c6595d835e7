// Replaces two system calls that the thread library brings along: one that Windows XP lacks, so that the
// module would not load there, and one that would change the host's process. Linked into the module before
// that library.

#include <windows.h>

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

}  // namespace

// What the linker takes for entries of the import table.
extern "C" {
extern decltype(&millisecondsSinceStart) const importedGetTickCount64 __asm__("__imp__GetTickCount64@0");
extern decltype(&installNoHandler) const importedAddHandler __asm__("__imp__AddVectoredExceptionHandler@8");
decltype(&millisecondsSinceStart) const importedGetTickCount64 = millisecondsSinceStart;
decltype(&installNoHandler) const importedAddHandler = installNoHandler;
}
