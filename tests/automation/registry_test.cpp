// Registration writes what hosts expect, and unregistration leaves the registry as it was.

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/win_resource.h"
#include "host.h"
#include "type_library_table.h"

namespace {

using Lines = std::vector<std::wstring>;

void exportKey(HKEY root, const std::wstring& path, Lines& lines) {
    vrx::RegistryKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return;
    lines.push_back(path);
    wchar_t name[16384];
    for (DWORD index = 0;; ++index) {
        DWORD length = static_cast<DWORD>(std::size(name));
        DWORD type = 0;
        DWORD size = 0;
        if (RegEnumValueW(key.get(), index, name, &length, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) break;
        std::vector<BYTE> data(size);
        RegQueryValueExW(key.get(), name, nullptr, &type, data.data(), &size);
        std::wstring line = path + L'|' + name + L'|' + std::to_wstring(type) + L'|';
        for (BYTE byte : data) line += std::to_wstring(byte) + L' ';
        lines.push_back(line);
    }
    for (DWORD index = 0;; ++index) {
        DWORD length = static_cast<DWORD>(std::size(name));
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        exportKey(root, path + L'\\' + name, lines);
    }
}

/// All classes of the machine and of the user, sorted.
Lines exportClasses() {
    Lines lines;
    exportKey(HKEY_LOCAL_MACHINE, L"Software\\Classes", lines);
    lines.push_back(L"----");
    exportKey(HKEY_CURRENT_USER, L"Software\\Classes", lines);
    std::ranges::sort(lines);
    return lines;
}

std::wstring read(HKEY root, const std::wstring& path, const wchar_t* name = L"") {
    vrx::RegistryKey key;
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    DWORD type = REG_NONE;
    if (RegOpenKeyExW(root, (L"Software\\Classes\\" + path).c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS ||
        RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS) {
        return L"(none)";
    }
    return type == REG_SZ ? text : L"(of another type)";
}

std::wstring wide(const std::string& text) { return {text.begin(), text.end()}; }

std::wstring identifier(const std::string& name) {
    for (const published::Identifier& row : published::kIdentifiers) {
        if (row.name == name) return wide(row.guid);
    }
    return L"(unknown)";
}

void expectClass(HKEY root, const published::Class& expected) {
    const std::wstring classId = identifier(expected.name);
    const std::wstring programId = L"VrxCommon." + wide(expected.name);
    const std::wstring key = L"CLSID\\" + classId;
    EXPECT_EQ(read(root, programId + L"\\CLSID"), classId);
    EXPECT_EQ(read(root, programId + L"\\CurVer"), programId + L".1");
    EXPECT_EQ(read(root, programId + L".1\\CLSID"), classId);
    EXPECT_NE(read(root, programId), L"(none)");
    EXPECT_NE(read(root, programId + L".1"), L"(none)");
    EXPECT_NE(read(root, key), L"(none)");
    EXPECT_EQ(read(root, key + L"\\InprocServer32"), host::component().path());
    EXPECT_EQ(read(root, key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(read(root, key + L"\\ProgID"), programId + L".1");
    EXPECT_EQ(read(root, key + L"\\VersionIndependentProgID"), programId);
    EXPECT_EQ(read(root, key + L"\\TypeLib"), identifier("VrxCommon"));
    EXPECT_EQ(read(root, key + L"\\Version"), L"1.0");
    vrx::RegistryKey programmable;
    EXPECT_EQ(RegOpenKeyExW(root, (L"Software\\Classes\\" + key + L"\\Programmable").c_str(), 0, KEY_READ,
                            programmable.put()),
              ERROR_SUCCESS);
}

void expectLibrary(HKEY root, const std::string& name, const wchar_t* resource) {
    const std::wstring key = L"TypeLib\\" + identifier(name) + L"\\1.0";
    EXPECT_EQ(read(root, key).substr(0, name.size()), wide(name));
    EXPECT_EQ(read(root, key + L"\\0\\win32"), host::component().path() + resource);
    EXPECT_EQ(read(root, key + L"\\FLAGS"), L"0");
    EXPECT_EQ(read(root, key + L"\\HELPDIR"), host::programFolder());
}

void expectInterface(HKEY root, const std::string& name, const wchar_t* proxy) {
    const std::wstring key = L"Interface\\" + identifier(name);
    EXPECT_EQ(read(root, key), wide(name));
    EXPECT_EQ(read(root, key + L"\\ProxyStubClsid32"), proxy);
    EXPECT_EQ(read(root, key + L"\\TypeLib"), identifier("VrxCommon"));
    EXPECT_EQ(read(root, key + L"\\TypeLib", L"Version"), L"1.0");
}

void expectRegistered(HKEY root) {
    for (const published::Class& row : published::kClasses) {
        SCOPED_TRACE(row.name);
        if (row.creatable) expectClass(root, row);
    }
    expectLibrary(root, "VrxCommon", L"\\1");
    expectLibrary(root, "VrxTypeLib", L"\\2");
    for (const published::Interface& row : published::kInterfaces) {
        expectInterface(root, row.name, L"{00020424-0000-0000-C000-000000000046}");
    }
    for (const published::Interface& row : published::kEvents) {
        expectInterface(root, row.name, L"{00020420-0000-0000-C000-000000000046}");
    }
}

class Registration : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(host::component().unregisterMachine(), S_OK);
        // The keys that all software shares stay when the library goes; a new user has none of them yet.
        for (const wchar_t* shared : {L"CLSID", L"Interface", L"TypeLib"}) {
            vrx::RegistryKey key;
            RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(L"Software\\Classes\\") + shared).c_str(), 0, nullptr, 0,
                            KEY_READ, nullptr, key.put(), nullptr);
        }
        before_ = exportClasses();
    }
    void TearDown() override { EXPECT_EQ(host::component().registerMachine(), S_OK); }

    Lines before_;
};

TEST_F(Registration, ForTheMachineWritesWhatHostsExpect) {
    ASSERT_EQ(host::component().registerMachine(), S_OK);
    expectRegistered(HKEY_LOCAL_MACHINE);
}

TEST_F(Registration, ForTheUserWritesTheSameThere) {
    ASSERT_EQ(host::component().install(true, L"user"), S_OK);
    expectRegistered(HKEY_CURRENT_USER);
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"VrxCommon.CVrxHDR\\CLSID"), L"(none)");
    EXPECT_TRUE(host::create(L"VrxCommon.CVrxHDR"));
    EXPECT_EQ(host::component().install(false, L"USER"), S_OK);
}

TEST_F(Registration, OfTheMachineIsTakenBackWhole) {
    ASSERT_EQ(host::component().registerMachine(), S_OK);
    EXPECT_GT(exportClasses().size(), before_.size() + 100);
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
    EXPECT_EQ(exportClasses(), before_);
}

TEST_F(Registration, OfTheUserIsTakenBackWhole) {
    ASSERT_EQ(host::component().install(true, L"user"), S_OK);
    EXPECT_GT(exportClasses().size(), before_.size() + 100);
    ASSERT_EQ(host::component().install(false, L"user"), S_OK);
    EXPECT_EQ(exportClasses(), before_);
}

TEST_F(Registration, TwiceIsTakenBackByUnregisteringOnce) {
    ASSERT_EQ(host::component().registerMachine(), S_OK);
    ASSERT_EQ(host::component().registerMachine(), S_OK);
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
    EXPECT_EQ(host::component().unregisterMachine(), S_OK);
    EXPECT_EQ(exportClasses(), before_);
}

TEST_F(Registration, LeavesWhatOthersWroteBelowItsKeys) {
    ASSERT_EQ(host::component().registerMachine(), S_OK);
    const std::wstring path = L"Software\\Classes\\CLSID\\" + identifier("CVrxFun") + L"\\Foreign";
    vrx::RegistryKey foreign;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, foreign.put(),
                              nullptr),
              ERROR_SUCCESS);
    foreign.reset();
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, foreign.put()), ERROR_SUCCESS);
    foreign.reset();
    ASSERT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.c_str()), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.substr(0, path.find_last_of(L'\\')).c_str()), ERROR_SUCCESS);
    EXPECT_EQ(exportClasses(), before_);
}

TEST_F(Registration, RefusesAnUnknownInstallCommand) {
    EXPECT_EQ(host::component().install(true, L"everybody"), E_INVALIDARG);
    EXPECT_EQ(exportClasses(), before_);
}

TEST_F(Registration, WithoutAnInstallCommandIsForTheMachine) {
    ASSERT_EQ(host::component().install(true, nullptr), S_OK);
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"VrxCommon.CVrxHDR\\CLSID"), identifier("CVrxHDR"));
    ASSERT_EQ(host::component().install(false, L""), S_OK);
    EXPECT_EQ(exportClasses(), before_);
}

}  // namespace
