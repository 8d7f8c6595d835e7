// What stays in a process that unloads the libraries again.

#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "com/win_resource.h"
#include "host.h"
#include "kernel_handles.h"
#include "throwaway_folder.h"

namespace {

/// How many more the process can have.
std::size_t freeThreadSlots() {
    std::vector<DWORD> slots;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) slots.push_back(slot);
    for (const DWORD slot : slots) TlsFree(slot);
    return slots.size();
}

class UnloadedLibrary : public testing::TestWithParam<const wchar_t*> {
  protected:
    const host::ThrowawayFolder folder_;
    // A copy: the test program has the library loaded.
    const std::wstring path_ =
        folder_.write(L"copy.dll", host::readBytes(host::programFolder() + L"\\" + GetParam()));

    void loadAndUnload() const {
        { const vrx::Module module(LoadLibraryW(path_.c_str())); }
        ASSERT_EQ(GetModuleHandleW(path_.c_str()), nullptr);
    }
};

TEST_P(UnloadedLibrary, LeavesNoThreadSlotsAndHandles) {
    loadAndUnload();
    const std::size_t slots = freeThreadSlots();
    const std::size_t handles = host::kernelHandles();
    for (int i = 0; i < 20; ++i) loadAndUnload();
    EXPECT_EQ(freeThreadSlots(), slots);
    EXPECT_EQ(host::kernelHandles(), handles);
}

INSTANTIATE_TEST_SUITE_P(Of, UnloadedLibrary,
                         testing::Values(L"VrxCommon.dll", L"VrxSettings.dll", L"ijl10.dll"));

}  // namespace
