// What Windows Explorer shows of the DLLs in their properties.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

namespace {

class VersionInfo {
  public:
    explicit VersionInfo(const wchar_t* file) {
        DWORD ignored = 0;
        bytes_.resize(GetFileVersionInfoSizeW(file, &ignored));
        GetFileVersionInfoW(file, 0, static_cast<DWORD>(bytes_.size()), bytes_.data());
    }

    [[nodiscard]] std::wstring text(const wchar_t* name) const {
        const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
        void* found = nullptr;
        UINT length = 0;
        if (bytes_.empty() || !VerQueryValueW(bytes_.data(), path.c_str(), &found, &length)) return {};
        return static_cast<const wchar_t*>(found);
    }

  private:
    std::vector<char> bytes_;
};

class VersionInfoOf : public testing::TestWithParam<const wchar_t*> {};

TEST_P(VersionInfoOf, NamesCompanyCopyrightAndProduct) {
    const VersionInfo info(GetParam());
    EXPECT_EQ(info.text(L"CompanyName"), L"The VrxCommon authors");
    EXPECT_EQ(info.text(L"LegalCopyright"), L"Copyright (c) 2026 The VrxCommon authors. MIT licence.");
    EXPECT_EQ(info.text(L"ProductName"), L"VrxCommon");
}

TEST_P(VersionInfoOf, DescribesTheFile) {
    EXPECT_FALSE(VersionInfo(GetParam()).text(L"FileDescription").empty());
}

INSTANTIATE_TEST_SUITE_P(EveryLibrary, VersionInfoOf,
                         testing::Values(L"VrxCommon.dll", L"VrxSettings.dll", L"ijl10.dll"));

}  // namespace
