// Keeps C++ exceptions of the host from being caught on their way through our frames. A host made with the
// same compiler throws exceptions of the same kind as ours by a run-time of its own; they are for its own
// handlers. Stands in place of the function by which the system asks our frames about an exception.

#include <windows.h>

#include <cstdint>

// The bounds of this module.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

// The codes by which the compiler's exceptions travel begin and go on: "GCC" and a number.
constexpr DWORD kCompilersCodes = 0x00474343;
constexpr DWORD kCodeMask = 0x00FFFFFF;

/// What every exception of the compiler's begins with.
struct CompilersException {
    std::uint64_t kind;
    void* deletedBy;  // a function of the run-time that threw it
};

bool isInThisModule(const void* address) {
    const auto base = reinterpret_cast<std::uintptr_t>(&__ImageBase);
    const auto* headers =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(base + static_cast<std::uintptr_t>(__ImageBase.e_lfanew));
    return reinterpret_cast<std::uintptr_t>(address) - base < headers->OptionalHeader.SizeOfImage;
}

bool isForeign(const EXCEPTION_RECORD& record) {
    if ((record.ExceptionCode & kCodeMask) != kCompilersCodes || record.NumberParameters == 0) return false;
    const auto* exception = reinterpret_cast<const CompilersException*>(record.ExceptionInformation[0]);
    return !isInThisModule(exception->deletedBy);
}

}  // namespace

extern "C" {
EXCEPTION_DISPOSITION __real___gxx_personality_seh0(EXCEPTION_RECORD*, void*, CONTEXT*, DISPATCHER_CONTEXT*);

EXCEPTION_DISPOSITION __wrap___gxx_personality_seh0(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                                    DISPATCHER_CONTEXT* dispatcher) {
    if (isForeign(*record)) return ExceptionContinueSearch;
    return __real___gxx_personality_seh0(record, frame, context, dispatcher);
}
}
