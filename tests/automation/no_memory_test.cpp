// A process without memory.

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>

#include "VrxCommon.h"
#include "com/win_resource.h"
#include "host.h"
#include "import_patch.h"
#include "throwaway_folder.h"

namespace {

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

bool memoryIsGone = false;
int requests = 0;

void* __cdecl allocate(std::size_t size) { return ++requests, memoryIsGone ? nullptr : std::malloc(size); }
void* __cdecl allocateCleared(std::size_t count, std::size_t size) {
    return ++requests, memoryIsGone ? nullptr : std::calloc(count, size);
}
void* __cdecl allocateAgain(void* block, std::size_t size) {
    return ++requests, memoryIsGone ? nullptr : std::realloc(block, size);
}

/// A copy of the library that has thrown nothing yet, whose run-time asks the test for memory.
class FreshLibrary : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const vrx::Module library_{LoadLibraryW(
        folder_.write(L"copy.dll", host::readBytes(host::programFolder() + L"\\VrxCommon.dll")).c_str())};
    const host::ImportPatch malloc_{library_.get(), "malloc", allocate};
    const host::ImportPatch calloc_{library_.get(), "calloc", allocateCleared};
    const host::ImportPatch realloc_{library_.get(), "realloc", allocateAgain};

    void SetUp() override {
        ASSERT_TRUE(library_);
        ASSERT_TRUE(malloc_);
    }
    void TearDown() override { memoryIsGone = false; }

    HRESULT create(vrx::ComPtr<_CVrxHDR>& object) const {
        const auto getClassObject = reinterpret_cast<GetClassObject>(
            reinterpret_cast<void*>(GetProcAddress(library_.get(), "DllGetClassObject")));
        vrx::ComPtr<IClassFactory> factory;
        const HRESULT result = getClassObject(CLSID_CVrxHDR, IID_PPV_ARGS(factory.put()));
        return FAILED(result) ? result : factory->CreateInstance(nullptr, IID_PPV_ARGS(object.put()));
    }

    static HRESULT load(_CVrxHDR& object, const wchar_t* file) {
        const vrx::Bstr name(SysAllocString(file));
        return object.Load_HDR(name.get(), nullptr);
    }
};

TEST_F(FreshLibrary, FailsWithOutOfMemoryWhenMemoryIsGoneFromTheFirstCallOn) {
    vrx::ComPtr<_CVrxHDR> object;
    memoryIsGone = true;
    EXPECT_EQ(create(object), E_OUTOFMEMORY);
    EXPECT_FALSE(object);
    EXPECT_GT(requests, 0);
    memoryIsGone = false;
    EXPECT_EQ(create(object), S_OK);
}

TEST_F(FreshLibrary, FailsWithOutOfMemoryWhenMemoryIsGoneAfterTheObjectIsMade) {
    vrx::ComPtr<_CVrxHDR> object;
    ASSERT_EQ(create(object), S_OK);
    memoryIsGone = true;
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(load(*object, L"Z:\\no such folder\\no such picture.hdr"),
                  static_cast<HRESULT>(0x800A0007));
    }
    memoryIsGone = false;
    EXPECT_EQ(load(*object, L"Z:\\no such folder\\no such picture.hdr"), static_cast<HRESULT>(0x800A004C));
}

DWORD WINAPI loadWithoutMemory(void* object) {
    const vrx::Bstr name(SysAllocString(L"Z:\\no such picture.hdr"));
    return static_cast<DWORD>(static_cast<_CVrxHDR*>(object)->Load_HDR(name.get(), nullptr));
}

TEST_F(FreshLibrary, SurvivesThreadsThatBeginWithoutMemory) {
    vrx::ComPtr<_CVrxHDR> object;
    ASSERT_EQ(create(object), S_OK);
    memoryIsGone = true;
    // The object serves one thread at a time here.
    for (int i = 0; i < 100; ++i) {
        const HANDLE thread = CreateThread(nullptr, 0, loadWithoutMemory, object.operator->(), 0, nullptr);
        ASSERT_NE(thread, nullptr);
        WaitForSingleObject(thread, INFINITE);
        DWORD result = 0;
        GetExitCodeThread(thread, &result);
        CloseHandle(thread);
        EXPECT_EQ(result, 0x800A0007u);
    }
}

}  // namespace
