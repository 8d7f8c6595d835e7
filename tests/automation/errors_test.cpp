// Failures as early-bound hosts see them.

#include <gtest/gtest.h>
#include <windows.h>

#include "VrxCommon.h"
#include "host.h"

using vrx::ComPtr;

namespace {

constexpr HRESULT kPathNotFound = static_cast<HRESULT>(0x800A004C);  // 76
constexpr wchar_t kNowhere[] = L"Z:\\no such folder\\picture.bmp";

TEST(EarlyBoundFailure, LeavesErrorInformationWithTheThread) {
    const auto object = host::createDirectly(CLSID_CVrxImage).as<_CVrxImage>();
    ASSERT_TRUE(object);
    SetErrorInfo(0, nullptr);
    vrx::Bstr path(SysAllocString(kNowhere));
    BSTR place = path.get();
    BSTR result = reinterpret_cast<BSTR>(1);
    EXPECT_EQ(object->Save_BMP(&place, &result), kPathNotFound);
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
    EXPECT_STREQ(description.get(), L"Path not found");
    EXPECT_TRUE(guid == IID__CVrxImage);
}

TEST(EarlyBoundFailure, LeadsToItsRowOfTheHelpFileBesideTheLibrary) {
    const auto object = host::createDirectly(CLSID_CVrxImage).as<_CVrxImage>();
    ASSERT_TRUE(object);
    vrx::Bstr path(SysAllocString(kNowhere));
    BSTR place = path.get();
    BSTR result = nullptr;
    EXPECT_EQ(object->Save_BMP(&place, &result), kPathNotFound);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    vrx::Bstr file;
    DWORD context = 0;
    info->GetHelpFile(file.put());
    info->GetHelpContext(&context);
    EXPECT_STREQ(file.get(), (host::programFolder() + L"\\VrxCommon.chm").c_str());
    EXPECT_EQ(context, 10076u);
}

TEST(LateBoundFailure, LeadsToItsRowOfTheHelpFileBesideTheLibrary) {
    const std::wstring file = host::programFolder() + L"\\VrxCommon.chm";
    const auto image = host::create(L"VrxCommon.CVrxImage");
    const host::Outcome failed = host::call(*image, L"Save_BMP", {host::Text(kNowhere)});
    EXPECT_EQ(failed.helpFile, file);
    EXPECT_EQ(failed.helpContext, 10076u);
    const host::Outcome mistyped =
        host::call(*image, L"Convert_BMP_to_JPG", {host::Text(L"a"), host::Text(L"b")});
    EXPECT_EQ(mistyped.helpFile, file);
    EXPECT_EQ(mistyped.helpContext, 10013u);
    const auto settings = host::create(L"VrxSettings.SettingsRegistry");
    const host::Outcome refused = host::call(
        *settings, L"WriteValue", {host::integer(1), host::Text(L"a"), host::Text(L"b"), host::Text(L"c")});
    EXPECT_EQ(refused.helpFile, file);
    EXPECT_EQ(refused.helpContext, 10005u);
}

TEST(EarlyBoundCall, WithoutAPlaceForItsResultIsRefused) {
    const auto object = host::createDirectly(CLSID_CVrxPattern).as<_CVrxPattern>();
    ASSERT_TRUE(object);
    EXPECT_EQ(object->get_REGKEY(nullptr), E_POINTER);
}

}  // namespace
