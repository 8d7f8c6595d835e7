// Files that take the place of others: what a power cut leaves, what the new file keeps of the old one.

#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <array>
#include <string>
#include <vector>

#include "common/file_io.h"
#include "ground/error.h"
#include "import_patch.h"
#include "throwaway_folder.h"

using host::FileBytes;
using vrx::FileReplacement;

namespace {

constexpr std::array<std::uint8_t, 3> kNew = {7, 8, 9};
const FileBytes kNewBytes(kNew.begin(), kNew.end());
const FileBytes kOldBytes = {1, 2, 3, 4};

std::u16string nameOf(const std::wstring& path) { return {path.begin(), path.end()}; }

void replace(const std::wstring& path) {
    FileReplacement file(nameOf(path));
    file.write(kNew);
    file.commit();
}

int errorOfReplacing(const std::wstring& path) {
    try {
        replace(path);
    } catch (const vrx::Error& error) {
        return error.number;
    }
    return 0;
}

template <class Function>
Function* kernel(const char* name) {
    return host::systemFunction<Function>(L"kernel32.dll", name);
}

/// The calls that matter for a power cut, in their order.
std::string order;
bool flushFails = false;

BOOL WINAPI recordWrite(HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
    order += 'W';
    return kernel<decltype(WriteFile)>("WriteFile")(file, bytes, count, written, overlapped);
}

BOOL WINAPI recordFlush(HANDLE file) {
    order += 'F';
    if (flushFails) SetLastError(ERROR_DISK_FULL);
    return flushFails ? FALSE : kernel<decltype(FlushFileBuffers)>("FlushFileBuffers")(file);
}

BOOL WINAPI recordMove(const wchar_t* from, const wchar_t* to, DWORD flags) {
    order += 'M';
    return kernel<decltype(MoveFileExW)>("MoveFileExW")(from, to, flags);
}

BOOL WINAPI refuseMove(const wchar_t*, const wchar_t*, DWORD) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

HANDLE WINAPI refuseNewFiles(const wchar_t* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                             DWORD disposition, DWORD flags, HANDLE original) {
    if (disposition == CREATE_NEW) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return kernel<decltype(CreateFileW)>("CreateFileW")(path, access, share, security, disposition, flags,
                                                        original);
}

BOOL WINAPI refuseRights(const wchar_t*, SECURITY_INFORMATION, void*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

/// The rights of a file as text.
std::wstring rightsOf(const std::wstring& path) {
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::uint8_t> descriptor(size);
    wchar_t* text = nullptr;
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size) ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor.data(), SDDL_REVISION_1,
                                                              DACL_SECURITY_INFORMATION, &text, nullptr)) {
        return {};
    }
    std::wstring rights(text);
    LocalFree(text);
    return rights;
}

/// From now on only the owner of a file may do anything with it.
void keepFromOthers(const std::wstring& path) {
    PSECURITY_DESCRIPTOR owner = nullptr;
    PSID user = nullptr;
    ASSERT_EQ(GetNamedSecurityInfoW(const_cast<wchar_t*>(path.c_str()), SE_FILE_OBJECT,
                                    OWNER_SECURITY_INFORMATION, &user, nullptr, nullptr, nullptr, &owner),
              static_cast<DWORD>(ERROR_SUCCESS));
    std::array<std::uint8_t, 256> memory{};
    auto* const list = reinterpret_cast<ACL*>(memory.data());
    ASSERT_TRUE(InitializeAcl(list, memory.size(), ACL_REVISION));
    ASSERT_TRUE(AddAccessAllowedAce(list, ACL_REVISION, FILE_ALL_ACCESS, user));
    SECURITY_DESCRIPTOR descriptor;
    ASSERT_TRUE(InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
    ASSERT_TRUE(SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE));
    ASSERT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, &descriptor));
    LocalFree(owner);
}

class Replacement : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const std::wstring old_ = folder_.write(L"a.bin", kOldBytes);
    HMODULE const own_ = GetModuleHandleW(nullptr);

    void SetUp() override {
        order.clear();
        flushFails = false;
    }
    void expectOnly(const FileBytes& bytes) const {
        EXPECT_EQ(host::readBytes(old_), bytes);
        EXPECT_EQ(folder_.names(), std::vector<std::wstring>({L"a.bin"}));
    }
};

TEST_F(Replacement, FlushesBeforeItRenames) {
    const host::ImportPatch write(own_, "WriteFile", recordWrite);
    const host::ImportPatch flush(own_, "FlushFileBuffers", recordFlush);
    const host::ImportPatch move(own_, "MoveFileExW", recordMove);
    ASSERT_TRUE(write && flush && move);
    replace(old_);
    EXPECT_EQ(order, "WFM");
    replace(folder_ / L"new.bin");
    EXPECT_EQ(order, "WFMWFM");
}

TEST_F(Replacement, ThatCannotBeFlushedLeavesTheOldFile) {
    const host::ImportPatch flush(own_, "FlushFileBuffers", recordFlush);
    flushFails = true;
    EXPECT_EQ(errorOfReplacing(old_), 61);
    expectOnly(kOldBytes);
}

TEST_F(Replacement, ThatCannotBeRenamedLeavesTheOldFile) {
    const host::ImportPatch move(own_, "MoveFileExW", refuseMove);
    SetFileAttributesW(old_.c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(errorOfReplacing(old_), 61);
    expectOnly(kOldBytes);
}

TEST_F(Replacement, KeepsTheAttributesOfTheTarget) {
    for (const DWORD attributes :
         {DWORD{FILE_ATTRIBUTE_HIDDEN}, DWORD{FILE_ATTRIBUTE_SYSTEM},
          DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE}, DWORD{FILE_ATTRIBUTE_NORMAL}}) {
        ASSERT_TRUE(SetFileAttributesW(old_.c_str(), attributes));
        const DWORD before = GetFileAttributesW(old_.c_str());
        replace(old_);
        EXPECT_EQ(GetFileAttributesW(old_.c_str()), before);
        expectOnly(kNewBytes);
    }
}

TEST_F(Replacement, KeepsTheAccessRightsOfTheTarget) {
    const std::wstring usual = rightsOf(old_);
    keepFromOthers(old_);
    const std::wstring before = rightsOf(old_);
    ASSERT_NE(before, usual);
    replace(old_);
    EXPECT_EQ(rightsOf(old_), before);
    expectOnly(kNewBytes);
}

TEST_F(Replacement, HasTheAccessRightsOfTheTargetBeforeAnyByteIsInIt) {
    keepFromOthers(old_);
    FileReplacement file(nameOf(old_));
    const std::vector<std::wstring> names = folder_.names();
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(rightsOf(folder_ / (names[0] == L"a.bin" ? names[1] : names[0])), rightsOf(old_));
}

TEST_F(Replacement, OfATargetWhoseAccessRightsCannotBeGivenOnOverwritesIt) {
    keepFromOthers(old_);
    const std::wstring before = rightsOf(old_);
    const host::ImportPatch rights(own_, "SetFileSecurityW", refuseRights);
    const host::ImportPatch flush(own_, "FlushFileBuffers", recordFlush);
    ASSERT_TRUE(rights);
    replace(old_);
    expectOnly(kNewBytes);
    EXPECT_EQ(rightsOf(old_), before);
    EXPECT_EQ(order, "F");
}

TEST_F(Replacement, InAFolderThatTakesNoFilesOverwritesTheTargetAndFlushesIt) {
    const host::ImportPatch refuse(own_, "CreateFileW", refuseNewFiles);
    const host::ImportPatch write(own_, "WriteFile", recordWrite);
    const host::ImportPatch flush(own_, "FlushFileBuffers", recordFlush);
    replace(old_);
    expectOnly(kNewBytes);
    EXPECT_EQ(order, "WF");
    EXPECT_EQ(errorOfReplacing(folder_ / L"new.bin"), 75);
}

TEST_F(Replacement, OfAReadOnlyTargetIsRefusedAndLeavesIt) {
    SetFileAttributesW(old_.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(errorOfReplacing(old_), 75);
    expectOnly(kOldBytes);
}

TEST_F(Replacement, OfATargetThatIsOpenElsewhereIsRefusedAndLeavesIt) {
    const auto lock = vrx::validHandle(
        CreateFileW(old_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_EQ(errorOfReplacing(old_), 70);
    expectOnly(kOldBytes);
}

TEST_F(Replacement, OfAMissingTargetMakesAFileLikeAnyOther) {
    const std::wstring path = folder_ / L"new.bin";
    replace(path);
    EXPECT_EQ(host::readBytes(path), kNewBytes);
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & ~DWORD{FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_ARCHIVE}, 0U);
    EXPECT_EQ(rightsOf(path), rightsOf(old_));
}

TEST_F(Replacement, KeepsTheTimeOfCreationOfTheTarget) {
    FILETIME created{};
    {
        const auto file =
            vrx::validHandle(CreateFileW(old_.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        const FILETIME before{0, 0x01C00000};
        ASSERT_TRUE(SetFileTime(file.get(), &before, nullptr, nullptr));
        ASSERT_TRUE(GetFileTime(file.get(), &created, nullptr, nullptr));
    }
    if (created.dwHighDateTime != 0x01C00000) GTEST_SKIP() << "the volume keeps no time of creation";
    replace(old_);
    const auto file =
        vrx::validHandle(CreateFileW(old_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    FILETIME after{};
    GetFileTime(file.get(), &after, nullptr, nullptr);
    EXPECT_EQ(CompareFileTime(&after, &created), 0);
}

}  // namespace
