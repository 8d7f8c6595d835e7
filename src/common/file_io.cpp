#include "common/file_io.h"

#include <algorithm>

#include "com/variant_convert.h"
#include "common/win32_error.h"

namespace vrx {
namespace {

constexpr int kSiblingTries = 100;
constexpr std::size_t kMaxTransfer = 1U << 30;

[[noreturn]] void throwLastError() { throw win32Error(GetLastError()); }

/// A path as the system takes it. A zero character would cut it short, and mean another file.
std::wstring systemPath(const std::u16string& path) {
    if (path.find(u'\0') != std::u16string::npos) throw platformError(Platform::BadFileName);
    return toWide(path);
}

bool isFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

KernelHandle openForReading(const std::wstring& path) {
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    KernelHandle file = validHandle(CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING,
                                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) throwLastError();
    // Reading from a console or a pipe could wait for ever.
    if (GetFileType(file.get()) != FILE_TYPE_DISK) throw platformError(Platform::PathFileAccess);
    return file;
}

std::uint64_t sizeOf(HANDLE file) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file, &size)) throwLastError();
    return static_cast<std::uint64_t>(size.QuadPart);
}

void writeAll(HANDLE file, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), kMaxTransfer));
        if (!WriteFile(file, bytes.data(), count, &written, nullptr)) throwLastError();
        if (written == 0) throw platformError(Platform::DiskFull);
        bytes = bytes.subspan(written);
    }
}

/// Refuses what a new file must not take the place of.
void checkTarget(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return;
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) {
        throw platformError(Platform::PathFileAccess);
    }
}

}  // namespace

Bytes readFileAndZero(const std::u16string& path) {
    const std::wstring name = systemPath(path);
    if (isFolder(GetFileAttributesW(name.c_str()))) throw platformError(Platform::PathFileAccess);
    const KernelHandle file = openForReading(name);
    const std::uint64_t size = sizeOf(file.get());
    Bytes bytes(size + 1);
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(size), &read, nullptr)) throwLastError();
    bytes.data()[read] = 0;
    bytes.shrink(std::size_t{read} + 1);
    return bytes;
}

FileReplacement::FileReplacement(const std::u16string& path) : path_(systemPath(path)) {
    checkTarget(path_);
    if (openSibling()) return;
    const DWORD error = GetLastError();
    // The folder takes no new files; a file that is there already may still be written.
    if (error != ERROR_ACCESS_DENIED || GetFileAttributesW(path_.c_str()) == INVALID_FILE_ATTRIBUTES) {
        throw win32Error(error);
    }
}

FileReplacement::~FileReplacement() {
    file_.reset();
    if (!sibling_.empty()) DeleteFileW(sibling_.c_str());
}

bool FileReplacement::openSibling() {
    const std::wstring folder = path_.substr(0, path_.find_last_of(L"\\/:") + 1);
    for (int i = 0; i < kSiblingTries; ++i) {
        const auto number =
            static_cast<unsigned>(GetCurrentProcessId() * 131 + GetTickCount() + static_cast<unsigned>(i));
        std::wstring name = folder + L"~vrx" + std::to_wstring(number) + L".tmp";
        file_ = validHandle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        if (file_) {
            sibling_ = std::move(name);
            return true;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) return false;
    }
    return false;
}

void FileReplacement::write(std::span<const std::uint8_t> bytes) {
    if (file_) {
        writeAll(file_.get(), bytes);
    } else {
        waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    }
}

void FileReplacement::commit() {
    if (!file_) return overwriteTarget();
    file_.reset();
    if (!MoveFileExW(sibling_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING)) throwLastError();
    sibling_.clear();
}

void FileReplacement::overwriteTarget() {
    const KernelHandle target = validHandle(CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr,
                                                        TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target) throwLastError();
    writeAll(target.get(), waiting_);
}

}  // namespace vrx
