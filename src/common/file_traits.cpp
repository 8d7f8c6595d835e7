#include "common/file_traits.h"

#include <winioctl.h>

#include "com/win32_error.h"

namespace vrx {
namespace {

// Those that SetFileAttributes sets.
constexpr DWORD kSettable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                            FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_TEMPORARY | FILE_ATTRIBUTE_OFFLINE |
                            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

/// Compressed or not, where the folder's default is the other. It is a matter of room on the disk only.
void compress(HANDLE file, bool compressed) {
    USHORT format = compressed ? COMPRESSION_FORMAT_DEFAULT : COMPRESSION_FORMAT_NONE;
    DWORD answered = 0;
    DeviceIoControl(file, FSCTL_SET_COMPRESSION, &format, sizeof format, nullptr, 0, &answered, nullptr);
}

}  // namespace

FileTraits::FileTraits(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) throw win32Error(GetLastError());
    attributes_ = data.dwFileAttributes;
    created_ = data.ftCreationTime;
    rights_ = rightsOf(path);
}

FileTraits::Rights FileTraits::rightsOf(const std::wstring& path) {
    DWORD size = 0;
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size) &&
        GetLastError() == ERROR_ACCESS_DENIED) {
        throw win32Error(ERROR_ACCESS_DENIED);
    }
    Rights rights(size);
    if (size == 0 || !GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size)) {
        return {};
    }
    return rights;
}

bool FileTraits::giveRights(const std::wstring& path, HANDLE file) const {
    const bool compressed = (attributes_ & FILE_ATTRIBUTE_COMPRESSED) != 0;
    const bool isCompressed = (GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_COMPRESSED) != 0;
    if (compressed != isCompressed) compress(file, compressed);

    // Most files have what they inherit from their folder, and so has the new one.
    if (rights_.empty() || rightsOf(path) == rights_) return true;
    Rights rights = rights_;
    auto* const descriptor = reinterpret_cast<SECURITY_DESCRIPTOR*>(rights.data());
    // Without the request the system drops the mark that some rights are inherited.
    if ((descriptor->Control & SE_DACL_AUTO_INHERITED) != 0) descriptor->Control |= SE_DACL_AUTO_INHERIT_REQ;
    return SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor) != FALSE;
}

void FileTraits::giveCreationTime(HANDLE file) const { SetFileTime(file, &created_, nullptr, nullptr); }

bool FileTraits::giveAttributes(const std::wstring& path) const {
    const DWORD settable = attributes_ & kSettable;
    return SetFileAttributesW(path.c_str(), settable != 0 ? settable : FILE_ATTRIBUTE_NORMAL) != FALSE;
}

}  // namespace vrx
