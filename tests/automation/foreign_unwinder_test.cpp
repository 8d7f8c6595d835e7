// Failures in a host that has another unwinder of the same compiler loaded.

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include "VrxCommon.h"
#include "com/com_ptr.h"
#include "com/win_resource.h"
#include "host.h"
#include "throwaway_folder.h"

namespace {

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

vrx::ComPtr<IDispatch> createHdrOf(HMODULE library) {
    const auto getClassObject = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
    vrx::ComPtr<IClassFactory> factory;
    vrx::ComPtr<IDispatch> object;
    getClassObject(CLSID_CVrxHDR, IID_PPV_ARGS(factory.put()));
    if (factory) factory->CreateInstance(nullptr, IID_PPV_ARGS(object.put()));
    return object;
}

TEST(ForeignUnwinder, DoesNotKeepFailuresFromTheHost) {
    const vrx::Module unwinder(
        LoadLibraryW((host::programFolder() + L"\\fake_unwinder\\libgcc_s_dw2-1.dll").c_str()));
    ASSERT_TRUE(unwinder);
    const host::ThrowawayFolder folder;
    const std::wstring copy =
        folder.write(L"copy.dll", host::readBytes(host::programFolder() + L"\\VrxCommon.dll"));
    {
        const vrx::Module library(LoadLibraryW(copy.c_str()));
        const vrx::ComPtr<IDispatch> hdr = createHdrOf(library.get());
        ASSERT_TRUE(hdr);
        const host::Outcome outcome =
            host::call(*hdr, L"Load_HDR", {host::Text((folder / L"missing.hdr").c_str())});
        EXPECT_EQ(outcome.scode, static_cast<HRESULT>(0x800A0035));
    }
}

}  // namespace
