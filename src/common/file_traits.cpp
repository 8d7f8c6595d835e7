#include "common/file_traits.h"

#include <winioctl.h>

#include "com/win32_error.h"

namespace vrx {
namespace {

// Those that SetFileAttributes sets.
constexpr DWORD kSettable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                            FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_TEMPORARY | FILE_ATTRIBUTE_OFFLINE |
                            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

// Bytes of most files' descriptors.
constexpr std::size_t kUsualRights = 512;

/// Compressed or not, where the folder's default is the other. It is a matter of room on the disk only.
void compress(HANDLE file, bool compressed) {
    USHORT format = compressed ? COMPRESSION_FORMAT_DEFAULT : COMPRESSION_FORMAT_NONE;
    DWORD answered = 0;
    DeviceIoControl(file, FSCTL_SET_COMPRESSION, &format, sizeof format, nullptr, 0, &answered, nullptr);
}

/// None where the system does not tell.
DWORD attributesOf(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES ? attributes : 0;
}

}  // namespace

FileTraits::FileTraits(DWORD attributes, HANDLE file) : attributes_(attributes) {
    if (!GetFileTime(file, &created_, nullptr, nullptr)) throw win32Error(GetLastError());
    rights_ = rightsOf(file);
}

FileTraits::Rights FileTraits::rightsOf(HANDLE file) {
    Rights rights(kUsualRights);
    DWORD size = 0;
    const auto read = [&] {
        return GetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, rights.data(),
                                       static_cast<DWORD>(rights.size()), &size) != FALSE;
    };
    bool done = read();
    if (!done && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        rights.resize(size);
        done = read();
    }
    if (!done) return {};
    rights.resize(GetSecurityDescriptorLength(rights.data()));
    return rights;
}

bool FileTraits::giveRights(const std::wstring& path, HANDLE file) const {
    const bool compressed = (attributes_ & FILE_ATTRIBUTE_COMPRESSED) != 0;
    const bool isCompressed = (attributesOf(path) & FILE_ATTRIBUTE_COMPRESSED) != 0;
    if (compressed != isCompressed) compress(file, compressed);

    // Most files have what they inherit from their folder, and so has the new one.
    if (rights_.empty() || rightsOf(file) == rights_) return true;
    Rights rights = rights_;
    auto* const descriptor = reinterpret_cast<SECURITY_DESCRIPTOR*>(rights.data());
    // Without the request the system drops the mark that some rights are inherited.
    if ((descriptor->Control & SE_DACL_AUTO_INHERITED) != 0) descriptor->Control |= SE_DACL_AUTO_INHERIT_REQ;
    return SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor) != FALSE;
}

void FileTraits::giveCreationTime(HANDLE file) const { SetFileTime(file, &created_, nullptr, nullptr); }

/// A file that has been written to gets the archive attribute when it is closed at the latest.
bool FileTraits::hasAttributes(const std::wstring& path) const {
    return (attributes_ & FILE_ATTRIBUTE_ARCHIVE) != 0 &&
           (attributesOf(path) & kSettable) == (attributes_ & kSettable);
}

bool FileTraits::giveAttributes(const std::wstring& path) const {
    const DWORD settable = attributes_ & kSettable;
    return SetFileAttributesW(path.c_str(), settable != 0 ? settable : FILE_ATTRIBUTE_NORMAL) != FALSE;
}

}  // namespace vrx
