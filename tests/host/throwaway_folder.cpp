#include "throwaway_folder.h"

#include <windows.h>

#include <algorithm>

#include "com/win_resource.h"

using vrx::FindHandle;
using vrx::KernelHandle;
using vrx::validHandle;

namespace host {
namespace {

std::wstring freshPath() {
    static int count = 0;
    wchar_t temporary[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 1, temporary);
    // The short name of a user's folder would not be the path that a call gives back.
    wchar_t folder[MAX_PATH + 1] = {};
    const DWORD longLength = GetLongPathNameW(temporary, folder, MAX_PATH + 1);
    const std::wstring base =
        longLength > 0 ? std::wstring(folder, longLength) : std::wstring(temporary, length);
    return base + L"vrx_test_" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(++count);
}

void removeFile(const std::wstring& path) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
}

std::vector<std::wstring> namesIn(const std::wstring& folder, bool folders) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    const auto search = validHandle<FindHandle>(FindFirstFileW((folder + L"\\*").c_str(), &found));
    for (bool more = static_cast<bool>(search); more; more = FindNextFileW(search.get(), &found)) {
        const std::wstring name = found.cFileName;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (name != L"." && name != L".." && (folders || !isFolder)) names.push_back(name);
    }
    std::ranges::sort(names);
    return names;
}

void removeFolder(const std::wstring& path) {
    for (const std::wstring& name : namesIn(path, false)) removeFile(path + L"\\" + name);
    for (const std::wstring& name : namesIn(path, true)) removeFolder(path + L"\\" + name);
    RemoveDirectoryW(path.c_str());
}

}  // namespace

ThrowawayFolder::ThrowawayFolder() : path_(freshPath()) { CreateDirectoryW(path_.c_str(), nullptr); }

ThrowawayFolder::~ThrowawayFolder() { removeFolder(L"\\\\?\\" + path_); }

std::wstring ThrowawayFolder::write(const std::wstring& name, const FileBytes& bytes) const {
    writeBytes(*this / name, bytes);
    return *this / name;
}

std::vector<std::wstring> ThrowawayFolder::names() const { return namesIn(path_, true); }

FileBytes readBytes(const std::wstring& path) {
    const KernelHandle file = validHandle(
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file) return {};
    FileBytes bytes(GetFileSize(file.get(), nullptr));
    DWORD read = 0;
    ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    bytes.resize(read);
    return bytes;
}

void writeBytes(const std::wstring& path, const FileBytes& bytes) {
    const KernelHandle file =
        validHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    if (file) WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

bool exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

}  // namespace host
