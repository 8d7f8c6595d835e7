// Failures as hosts see them, late-bound and early-bound, of members that the classes do not support.

#include <gtest/gtest.h>
#include <windows.h>

#include "VrxCommon.h"
#include "host.h"

using vrx::ComPtr;

namespace {

constexpr HRESULT kNotSupported = static_cast<HRESULT>(0x800A01BD);  // 445

struct Row {
    const wchar_t* className;
    const wchar_t* member;
};

class UnsupportedMember : public testing::TestWithParam<Row> {};

TEST_P(UnsupportedMember, FailsWithNumberSourceAndDescription) {
    const ComPtr<IDispatch> object =
        host::create((std::wstring(L"VrxCommon.") + GetParam().className).c_str());
    ASSERT_TRUE(object);
    const host::Outcome outcome = host::call(*object, GetParam().member, {host::Text(L"x")});
    EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.scode, kNotSupported);
    EXPECT_EQ(outcome.wCode, 0);
    EXPECT_EQ(outcome.source, GetParam().className);
    EXPECT_EQ(outcome.description, L"Object doesn't support this action");
    EXPECT_EQ(V_VT(&outcome.result.get()), VT_EMPTY);
}

constexpr Row kRows[] = {{L"CVrxHDR", L"Load"}, {L"CVrxImage", L"Save"}, {L"CVrxPattern", L"Load"}};

INSTANTIATE_TEST_SUITE_P(Of, UnsupportedMember, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Row>& row) {
                             const std::wstring name = row.param.className;
                             return std::string(name.begin(), name.end());
                         });

TEST(EarlyBoundFailure, LeavesErrorInformationWithTheThread) {
    const auto object = host::createDirectly(CLSID_CVrxHDR).as<_CVrxHDR>();
    ASSERT_TRUE(object);
    SetErrorInfo(0, nullptr);
    BSTR result = reinterpret_cast<BSTR>(1);
    EXPECT_EQ(object->Load(nullptr, &result), kNotSupported);
    EXPECT_EQ(result, nullptr);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    vrx::Bstr source;
    vrx::Bstr description;
    GUID guid{};
    info->GetSource(source.put());
    info->GetDescription(description.put());
    info->GetGUID(&guid);
    EXPECT_STREQ(source.get(), L"CVrxHDR");
    EXPECT_STREQ(description.get(), L"Object doesn't support this action");
    EXPECT_TRUE(guid == IID__CVrxHDR);
}

TEST(EarlyBoundCall, WithoutAPlaceForItsResultIsRefused) {
    const auto object = host::createDirectly(CLSID_CVrxPattern).as<_CVrxPattern>();
    ASSERT_TRUE(object);
    EXPECT_EQ(object->get_REGKEY(nullptr), E_POINTER);
}

}  // namespace
