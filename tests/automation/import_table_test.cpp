// What the libraries need from the system, read from their files.

#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host.h"

namespace {

using Import = std::pair<std::string, std::string>;  // library, function

const std::set<std::string> kSystemLibraries = {
    "ADVAPI32.DLL", "COMCTL32.DLL", "COMDLG32.DLL", "GDI32.DLL",   "KERNEL32.DLL", "MSVCRT.DLL",  "OLE32.DLL",
    "OLEACC.DLL",   "OLEAUT32.DLL", "SHELL32.DLL",  "SHLWAPI.DLL", "USER32.DLL",   "VERSION.DLL",
};

// Calls of kernel32 and advapi32 that run-time libraries like to use and that Windows XP does not have.
const std::set<std::string> kMissingOnXp = {
    "AcquireSRWLockExclusive",
    "AcquireSRWLockShared",
    "ReleaseSRWLockExclusive",
    "ReleaseSRWLockShared",
    "InitializeSRWLock",
    "TryAcquireSRWLockExclusive",
    "InitOnceExecuteOnce",
    "InitOnceBeginInitialize",
    "InitOnceComplete",
    "InitializeConditionVariable",
    "SleepConditionVariableCS",
    "SleepConditionVariableSRW",
    "WakeConditionVariable",
    "WakeAllConditionVariable",
    "GetTickCount64",
    "InitializeCriticalSectionEx",
    "FlsAlloc",
    "LCMapStringEx",
    "CompareStringEx",
    "GetLocaleInfoEx",
    "GetUserDefaultLocaleName",
    "CreateEventExW",
    "CreateSemaphoreExW",
    "GetFinalPathNameByHandleW",
    "SetFileInformationByHandle",
    "GetFileInformationByHandleEx",
    "CreateSymbolicLinkW",
    "QueryFullProcessImageNameW",
    "GetSystemTimePreciseAsFileTime",
    "RegDeleteTreeW",
    "RegDeleteKeyExW",
    "RegGetValueW",
    "RegDeleteTreeA",
    "RegDeleteKeyExA",
    "RegGetValueA",
    "GetThreadId",
};

// Calls that change the host's process. SetCurrentDirectoryW is none of them: it takes back what the system's
// file dialog does on Windows XP.
const std::set<std::string> kForbidden = {
    "SetCurrentDirectoryA",
    "SetThreadLocale",
    "SetUnhandledExceptionFilter",
    "SetProcessDPIAware",
    "AddVectoredExceptionHandler",
    "SetErrorMode",
    "SetDllDirectoryW",
};

/// The module is mapped by the loader, so its tables can be read in place.
std::vector<Import> importsOf(HMODULE module) {
    const auto* base = reinterpret_cast<const BYTE*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    std::vector<Import> imports;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
        std::string name = reinterpret_cast<const char*>(base + library->Name);
        for (char& letter : name) letter = static_cast<char>(toupper(letter));
        const auto* entry = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        for (; entry->u1.AddressOfData != 0; ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL(entry->u1.Ordinal)) {
                imports.emplace_back(
                    name, std::string("#").append(std::to_string(IMAGE_ORDINAL(entry->u1.Ordinal))));
            } else {
                const auto* named =
                    reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + entry->u1.AddressOfData);
                imports.emplace_back(name, reinterpret_cast<const char*>(named->Name));
            }
        }
    }
    return imports;
}

/// Of the component and of the codec beside it.
std::vector<Import> allImports() {
    std::vector<Import> imports;
    for (const wchar_t* name : {L"VrxCommon.dll", L"ijl10.dll"}) {
        const std::vector<Import> more =
            importsOf(LoadLibraryW((host::programFolder() + L"\\" + name).c_str()));
        imports.insert(imports.end(), more.begin(), more.end());
    }
    return imports;
}

TEST(ImportTable, NamesSystemLibrariesOnly) {
    const std::vector<Import> imports = allImports();
    ASSERT_GT(imports.size(), 10u);
    for (const auto& [library, function] : imports) {
        EXPECT_TRUE(kSystemLibraries.contains(library)) << library << '!' << function;
    }
}

TEST(ImportTable, NamesNothingThatWindowsXpLacks) {
    for (const auto& [library, function] : allImports()) {
        EXPECT_FALSE(kMissingOnXp.contains(function)) << library << '!' << function;
    }
}

TEST(ImportTable, NamesNothingThatChangesTheProcess) {
    for (const auto& [library, function] : allImports()) {
        EXPECT_FALSE(kForbidden.contains(function)) << library << '!' << function;
    }
}

}  // namespace
