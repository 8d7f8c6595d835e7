// Failures as early-bound hosts see them.

#include <gtest/gtest.h>
#include <windows.h>

#include "VrxCommon.h"
#include "host.h"

using vrx::ComPtr;

namespace {

constexpr HRESULT kInvalidPicture = static_cast<HRESULT>(0x800A01E1);  // 481

TEST(EarlyBoundFailure, LeavesErrorInformationWithTheThread) {
    const auto object = host::createDirectly(CLSID_CVrxImage).as<_CVrxImage>();
    ASSERT_TRUE(object);
    SetErrorInfo(0, nullptr);
    BSTR path = nullptr;
    BSTR result = reinterpret_cast<BSTR>(1);
    EXPECT_EQ(object->Save_BMP(&path, &result), kInvalidPicture);
    EXPECT_EQ(result, nullptr);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    vrx::Bstr source;
    vrx::Bstr description;
    GUID guid{};
    info->GetSource(source.put());
    info->GetDescription(description.put());
    info->GetGUID(&guid);
    EXPECT_STREQ(source.get(), L"CVrxImage");
    EXPECT_STREQ(description.get(), L"Invalid picture");
    EXPECT_TRUE(guid == IID__CVrxImage);
}

TEST(EarlyBoundCall, WithoutAPlaceForItsResultIsRefused) {
    const auto object = host::createDirectly(CLSID_CVrxPattern).as<_CVrxPattern>();
    ASSERT_TRUE(object);
    EXPECT_EQ(object->get_REGKEY(nullptr), E_POINTER);
}

}  // namespace
