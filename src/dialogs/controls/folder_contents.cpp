#include "dialogs/controls/folder_contents.h"

#include <windows.h>

#include <algorithm>

#include "com/variant_convert.h"
#include "com/win32_error.h"
#include "com/win_resource.h"
#include "dialogs/controls/silent_errors.h"
#include "dialogs/engine/file_names.h"
#include "dialogs/engine/file_patterns.h"

namespace vrx {
namespace {

/// Names of this length and more need the prefix that turns the limit off.
std::wstring forSystem(const std::u16string& path) {
    const std::wstring name = toWide(path);
    return name.size() < MAX_PATH ? name : L"\\\\?\\" + name;
}

bool isOnDrive(std::u16string_view path) {
    const bool letter =
        path.size() >= 2 && ((path[0] | 0x20) >= u'a' && (path[0] | 0x20) <= u'z') && path[1] == u':';
    return letter && (path.size() == 2 || path[2] == u'\\' || path[2] == u'/');
}

bool isFolder(const std::u16string& path) {
    const DWORD attributes = GetFileAttributesW(forSystem(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

[[noreturn]] void throwUnreadable(DWORD code) {
    // What has the name of the folder is a file.
    throw win32Error(code == ERROR_FILE_NOT_FOUND || code == ERROR_DIRECTORY ? ERROR_PATH_NOT_FOUND : code);
}

bool isShown(const WIN32_FIND_DATAW& entry, bool folders) {
    constexpr DWORD kLeftOut = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const bool folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const std::wstring_view name = entry.cFileName;
    return folder == folders && !(entry.dwFileAttributes & kLeftOut) && name != L"." && name != L"..";
}

/// The names of all folders or all files in a folder, in no order.
std::vector<std::u16string> namesIn(const std::u16string& folder, bool folders) {
    const SilentErrors silence;
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW entry{};
    const auto search =
        validHandle<FindHandle>(FindFirstFileW(forSystem(fullFileName(folder, u"*")).c_str(), &entry));
    if (!search) {
        const DWORD code = GetLastError();
        // The root of a drive has no entry for itself: an empty one has nothing to find.
        if (code == ERROR_FILE_NOT_FOUND && isFolder(folder)) return names;
        throwUnreadable(code);
    }
    do {
        if (isShown(entry, folders)) names.push_back(fromWide(entry.cFileName));
    } while (FindNextFileW(search.get(), &entry));
    if (GetLastError() != ERROR_NO_MORE_FILES) throwUnreadable(GetLastError());
    return names;
}

/// As the system's own lists are sorted.
void sortNames(std::vector<std::u16string>& names) {
    std::ranges::stable_sort(names, [](const std::u16string& a, const std::u16string& b) {
        return lstrcmpiW(asWide(a.c_str()), asWide(b.c_str())) < 0;
    });
}

}  // namespace

std::u16string folderOfDrive(std::u16string_view path) {
    if (!isOnDrive(path)) throw platformError(Platform::PathNotFound);
    std::wstring given = toWide(path);
    // Without the backslash it would be the folder that the process has open on that drive.
    if (given.size() < kRootLength) given += L'\\';
    std::vector<wchar_t> full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr) + 1);
    const DWORD length =
        GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length < kRootLength || length >= full.size()) throw platformError(Platform::PathNotFound);
    std::u16string folder = fromWide({full.data(), length});
    // The name of a device, like "C:\NUL", is on no drive.
    if (!isOnDrive(folder)) throw platformError(Platform::PathNotFound);
    while (folder.size() > kRootLength && folder.back() == u'\\') folder.pop_back();
    return folder;
}

std::vector<std::u16string> foldersIn(const std::u16string& folder) {
    std::vector<std::u16string> names = namesIn(folder, true);
    sortNames(names);
    return names;
}

/// The system matches a pattern with the short names of files as well: it is asked for all of them.
std::vector<std::u16string> filesIn(const std::u16string& folder, std::u16string_view patterns) {
    std::vector<std::u16string> names = namesIn(folder, false);
    std::erase_if(names, [&](const std::u16string& name) { return !matchesPatterns(name, patterns); });
    sortNames(names);
    return names;
}

}  // namespace vrx
