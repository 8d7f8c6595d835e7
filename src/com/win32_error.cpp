#include "com/win32_error.h"

#include <windows.h>

namespace vrx {
namespace {

struct Row {
    DWORD code;
    Platform number;
};

constexpr Row kRows[] = {
    {ERROR_FILE_NOT_FOUND, Platform::FileNotFound},
    {ERROR_PATH_NOT_FOUND, Platform::PathNotFound},
    {ERROR_INVALID_DRIVE, Platform::PathNotFound},
    {ERROR_BAD_NETPATH, Platform::PathNotFound},
    {ERROR_BAD_NET_NAME, Platform::PathNotFound},
    {ERROR_ACCESS_DENIED, Platform::PathFileAccess},
    {ERROR_SHARING_VIOLATION, Platform::PermissionDenied},
    {ERROR_LOCK_VIOLATION, Platform::PermissionDenied},
    {ERROR_WRITE_PROTECT, Platform::PermissionDenied},
    {ERROR_DISK_FULL, Platform::DiskFull},
    {ERROR_HANDLE_DISK_FULL, Platform::DiskFull},
    {ERROR_NOT_READY, Platform::DiskNotReady},
    {ERROR_FILE_EXISTS, Platform::FileAlreadyExists},
    {ERROR_ALREADY_EXISTS, Platform::FileAlreadyExists},
    {ERROR_INVALID_NAME, Platform::BadFileName},
    {ERROR_BAD_PATHNAME, Platform::BadFileName},
    {ERROR_FILENAME_EXCED_RANGE, Platform::BadFileName},
    {ERROR_NOT_ENOUGH_MEMORY, Platform::OutOfMemory},
    {ERROR_OUTOFMEMORY, Platform::OutOfMemory},
    {ERROR_NO_SYSTEM_RESOURCES, Platform::OutOfMemory},
    {ERROR_NO_MORE_USER_HANDLES, Platform::OutOfMemory},
};

}  // namespace

Platform platformOfWin32(unsigned long code) {
    for (const Row& row : kRows) {
        if (row.code == code) return row.number;
    }
    return Platform::DeviceIoError;
}

Error win32Error(unsigned long code) { return platformError(platformOfWin32(code)); }

}  // namespace vrx
