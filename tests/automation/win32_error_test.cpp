// Error codes of the operating system as VB numbers.

#include "com/win32_error.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <utility>

namespace {

TEST(Win32Error, BecomesTheNumberThatVbHostsKnow) {
    const std::pair<DWORD, int> expected[] = {
        {ERROR_FILE_NOT_FOUND, 53},
        {ERROR_PATH_NOT_FOUND, 76},
        {ERROR_ACCESS_DENIED, 75},
        {ERROR_SHARING_VIOLATION, 70},
        {ERROR_LOCK_VIOLATION, 70},
        {ERROR_WRITE_PROTECT, 70},
        {ERROR_DISK_FULL, 61},
        {ERROR_HANDLE_DISK_FULL, 61},
        {ERROR_NOT_READY, 71},
        {ERROR_FILE_EXISTS, 58},
        {ERROR_ALREADY_EXISTS, 58},
        {ERROR_INVALID_NAME, 52},
        {ERROR_BAD_PATHNAME, 52},
        {ERROR_FILENAME_EXCED_RANGE, 52},
        {ERROR_NOT_ENOUGH_MEMORY, 7},
        {ERROR_OUTOFMEMORY, 7},
        {ERROR_NO_SYSTEM_RESOURCES, 7},
        {ERROR_NO_MORE_USER_HANDLES, 7},
        {ERROR_CRC, 57},
        {0xFFFFFFFF, 57},
    };
    for (const auto& [code, number] : expected) {
        EXPECT_EQ(static_cast<int>(vrx::platformOfWin32(code)), number) << "code " << code;
    }
}

TEST(Win32Error, CarriesTheTextOfItsNumberAndNoSource) {
    const vrx::Error error = vrx::win32Error(ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(error.number, 53);
    EXPECT_TRUE(error.source.empty());
    EXPECT_TRUE(error.description == u"File not found");
}

}  // namespace
