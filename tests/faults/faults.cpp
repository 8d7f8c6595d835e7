#include "faults.h"

#include <windows.h>

#include <commdlg.h>
#include <oleacc.h>
#include <olectl.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <ostream>
#include <vector>

#include "host.h"
#include "import_patch.h"

namespace faults {
namespace {

/// A function that the modules import, and what a call of it leaves when it fails.
struct Row {
    const char* name;
    Kind kind;
    LONG_PTR result;
    DWORD lastError;
    void* replacement;
};

struct State {
    DWORD thread = 0;
    Kind kind{};
    int nth = 0;
    bool lasting = false;
    int seen = 0;
    int failed = 0;
    const char* first = nullptr;
};

State state;
bool armed = false;
std::array<long, kKinds.size()> failedInAll{};
std::atomic<long> blocks = 0;

bool failsNow(Kind kind, const char* name, DWORD error) {
    if (!armed || state.kind != kind || state.thread != GetCurrentThreadId()) return false;
    ++state.seen;
    if (state.lasting ? state.seen < state.nth : state.seen != state.nth) return false;
    if (++state.failed == 1) state.first = name;
    ++failedInAll[static_cast<std::size_t>(kind)];
    SetLastError(error);
    return true;
}

/// Memory is counted as well.
bool memoryFailsNow(const char* name) { return failsNow(Kind::Memory, name, ERROR_NOT_ENOUGH_MEMORY); }

void* __cdecl countedMalloc(std::size_t size) {
    void* const block = memoryFailsNow("malloc") ? nullptr : std::malloc(size);
    if (block) ++blocks;
    return block;
}

void* __cdecl countedCalloc(std::size_t count, std::size_t size) {
    void* const block = memoryFailsNow("calloc") ? nullptr : std::calloc(count, size);
    if (block) ++blocks;
    return block;
}

void* __cdecl countedRealloc(void* old, std::size_t size) {
    if (memoryFailsNow("realloc")) return nullptr;
    void* const block = std::realloc(old, size);
    if (block && !old) ++blocks;
    if (old && size == 0) --blocks;
    return block;
}

char* __cdecl countedCopy(const char* text) {
    char* const copy = static_cast<char*>(countedMalloc(std::strlen(text) + 1));
    return copy ? std::strcpy(copy, text) : nullptr;
}

void __cdecl countedFree(void* block) {
    if (block) --blocks;
    std::free(block);
}

/// The system gives all moves up, and their handle.
HDWP WINAPI failingDeferWindowPos(HDWP moves, HWND window, HWND after, int x, int y, int width, int height,
                                  UINT flags) {
    if (failsNow(Kind::Windows, "DeferWindowPos", ERROR_NOT_ENOUGH_MEMORY)) {
        EndDeferWindowPos(moves);
        return nullptr;
    }
    return DeferWindowPos(moves, window, after, x, y, width, height, flags);
}

struct Allocator {
    const char* name;
    void* replacement;
};

const Allocator kAllocators[] = {
    {"malloc", reinterpret_cast<void*>(countedMalloc)},   {"calloc", reinterpret_cast<void*>(countedCalloc)},
    {"realloc", reinterpret_cast<void*>(countedRealloc)}, {"_strdup", reinterpret_cast<void*>(countedCopy)},
    {"free", reinterpret_cast<void*>(countedFree)},
};

extern const Row kRows[];

/// Where a registry function returns its error code itself, the row's result is that code.
template <class Result>
Result asResult(LONG_PTR value) {
    if constexpr (std::is_pointer_v<Result>) {
        return reinterpret_cast<Result>(value);
    } else {
        return static_cast<Result>(value);
    }
}

/// Out-arguments stay untouched, as the system's functions leave them.
template <class Function, int index>
struct Wrapper;

template <class Result, class... Arguments, int index>
struct Wrapper<Result(WINAPI*)(Arguments...), index> {
    static inline Result(WINAPI* original)(Arguments...);
    static Result WINAPI call(Arguments... arguments) {
        const Row& row = kRows[index];
        if (failsNow(row.kind, row.name, row.lastError)) return asResult<Result>(row.result);
        return original(arguments...);
    }
    static void* of(Result(WINAPI* function)(Arguments...)) {
        original = function;
        return reinterpret_cast<void*>(&call);
    }
};

constexpr int kFirstRow = __COUNTER__ + 1;

#define FAILING(kind, function, result, error)                                                        \
    {                                                                                                 \
#function, Kind::kind, static_cast < LONG_PTR>(result), error, Wrapper < decltype(&function), \
            __COUNTER__ - kFirstRow> ::of(&function)                                                  \
    }
#define NO_FILE reinterpret_cast<LONG_PTR>(INVALID_HANDLE_VALUE)

const Row kRows[] = {
    FAILING(Memory, GlobalAlloc, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Memory, CoTaskMemAlloc, 0, 0),

    FAILING(Automation, SysAllocString, 0, 0),
    FAILING(Automation, SysAllocStringLen, 0, 0),
    FAILING(Automation, SafeArrayCreate, 0, 0),
    FAILING(Automation, SafeArrayAllocDescriptorEx, E_OUTOFMEMORY, 0),
    FAILING(Automation, SafeArrayCopy, E_OUTOFMEMORY, 0),
    FAILING(Automation, VarBstrFromR8, E_OUTOFMEMORY, 0),
    FAILING(Automation, VariantCopy, E_OUTOFMEMORY, 0),
    FAILING(Automation, VariantCopyInd, E_OUTOFMEMORY, 0),
    FAILING(Automation, VariantChangeTypeEx, E_OUTOFMEMORY, 0),
    FAILING(Automation, CreateErrorInfo, E_OUTOFMEMORY, 0),
    FAILING(Automation, LoadTypeLibEx, E_OUTOFMEMORY, 0),
    FAILING(Automation, GetRecordInfoFromTypeInfo, E_OUTOFMEMORY, 0),
    FAILING(Automation, CoCreateInstance, E_OUTOFMEMORY, 0),

    FAILING(Drawing, CreateDIBSection, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, CreateCompatibleDC, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, CreateCompatibleBitmap, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, CreateFontIndirectW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, CreatePen, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, CreateSolidBrush, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, GetDC, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, GetDIBits, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, StretchDIBits, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, BitBlt, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, StretchBlt, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Drawing, CreateRectRgnIndirect, 0, ERROR_NOT_ENOUGH_MEMORY),

    FAILING(Windows, CreateWindowExW, 0, ERROR_NO_MORE_USER_HANDLES),
    FAILING(Windows, CreateDialogParamW, 0, ERROR_NO_MORE_USER_HANDLES),
    FAILING(Windows, RegisterClassExW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, MessageBoxW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, ChooseColorW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, GetSaveFileNameW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, PostMessageW, 0, ERROR_NOT_ENOUGH_QUOTA),
    FAILING(Windows, SetPropW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, CreateActCtxW, NO_FILE, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, CreateStdAccessibleObject, E_OUTOFMEMORY, 0),
    FAILING(Windows, CreateOleAdviseHolder, E_OUTOFMEMORY, 0),
    FAILING(Windows, LoadCursorW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Windows, BeginDeferWindowPos, 0, ERROR_NOT_ENOUGH_MEMORY),

    FAILING(Files, CreateFileW, NO_FILE, ERROR_ACCESS_DENIED),
    FAILING(Files, ReadFile, 0, ERROR_READ_FAULT),
    FAILING(Files, WriteFile, 0, ERROR_DISK_FULL),
    FAILING(Files, SetEndOfFile, 0, ERROR_DISK_FULL),
    FAILING(Files, SetFilePointerEx, 0, ERROR_SEEK),
    FAILING(Files, FlushFileBuffers, 0, ERROR_DISK_FULL),
    FAILING(Files, MoveFileExW, 0, ERROR_SHARING_VIOLATION),
    FAILING(Files, GetFileSizeEx, 0, ERROR_READ_FAULT),
    FAILING(Files, GetFileInformationByHandle, 0, ERROR_READ_FAULT),
    FAILING(Files, GetFileAttributesW, INVALID_FILE_ATTRIBUTES, ERROR_NOT_READY),
    FAILING(Files, GetFullPathNameW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Files, GetTempPathW, 0, ERROR_NOT_READY),
    FAILING(Files, GetTempFileNameW, 0, ERROR_DISK_FULL),
    FAILING(Files, FindFirstFileW, NO_FILE, ERROR_NOT_READY),
    FAILING(Files, FindNextFileW, 0, ERROR_READ_FAULT),
    FAILING(Files, SetFileAttributesW, 0, ERROR_ACCESS_DENIED),
    FAILING(Files, SetFileTime, 0, ERROR_ACCESS_DENIED),
    FAILING(Files, GetKernelObjectSecurity, 0, ERROR_NOT_SUPPORTED),
    FAILING(Files, SetFileSecurityW, 0, ERROR_ACCESS_DENIED),
    FAILING(Files, DeviceIoControl, 0, ERROR_INVALID_FUNCTION),
    FAILING(Files, GetShortPathNameW, 0, ERROR_NOT_READY),
    FAILING(Files, GetVolumeInformationW, 0, ERROR_NOT_READY),

    FAILING(Registry, RegCreateKeyExW, ERROR_ACCESS_DENIED, 0),
    FAILING(Registry, RegOpenKeyExW, ERROR_ACCESS_DENIED, 0),
    FAILING(Registry, RegSetValueExW, ERROR_DISK_FULL, 0),
    FAILING(Registry, RegQueryValueExW, ERROR_ACCESS_DENIED, 0),
    FAILING(Registry, RegQueryInfoKeyW, ERROR_ACCESS_DENIED, 0),

    FAILING(Pictures, OleCreatePictureIndirect, E_OUTOFMEMORY, 0),
    FAILING(Pictures, OleLoadPicture, E_OUTOFMEMORY, 0),
    FAILING(Pictures, CreateStreamOnHGlobal, E_OUTOFMEMORY, 0),

    FAILING(Libraries, LoadLibraryA, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Libraries, LoadLibraryW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Libraries, LoadLibraryExW, 0, ERROR_NOT_ENOUGH_MEMORY),
    FAILING(Libraries, GetProcAddress, 0, ERROR_PROC_NOT_FOUND),
    FAILING(Libraries, GetModuleHandleW, 0, ERROR_MOD_NOT_FOUND),
    FAILING(Libraries, GetModuleFileNameW, 0, ERROR_NOT_ENOUGH_MEMORY),

    // Behind the numbered ones.
    {"DeferWindowPos", Kind::Windows, 0, 0, reinterpret_cast<void*>(failingDeferWindowPos)},
};

void patch(const wchar_t* fileName) {
    static std::vector<std::unique_ptr<host::ImportPatch>> patches;
    HMODULE const module = LoadLibraryW((host::programFolder() + L'\\' + fileName).c_str());
    if (!module) return;
    for (const auto& [name, replacement] : kAllocators) {
        patches.push_back(std::make_unique<host::ImportPatch>(module, name, replacement));
    }
    for (const Row& row : kRows) {
        patches.push_back(std::make_unique<host::ImportPatch>(module, row.name, row.replacement));
    }
}

}  // namespace

bool everything() {
    const char* const wish = std::getenv("VRX_FAULTS");
    return wish && std::string(wish) == "all";
}

const char* nameOf(Kind kind) {
    constexpr const char* kNames[] = {"Memory", "Automation", "Drawing",  "Windows",
                                      "Files",  "Registry",   "Pictures", "Libraries"};
    return kNames[static_cast<std::size_t>(kind)];
}

void PrintTo(Kind kind, std::ostream* out) { *out << nameOf(kind); }

void install() {
    patch(L"VrxCommon.dll");
    patch(L"ijl10.dll");
    patch(L"VrxSettings.dll");
}

Injection::Injection(Kind kind, int nth, bool lasting) {
    state = {GetCurrentThreadId(), kind, nth, lasting};
    armed = true;
}

void Injection::end() { armed = false; }

int Injection::count() const { return state.failed; }

std::string Injection::first() const { return state.first ? state.first : ""; }

long liveBlocks() { return blocks; }

long total(Kind kind) { return failedInAll[static_cast<std::size_t>(kind)]; }

}  // namespace faults
