// Registration writes what hosts expect, and unregistration leaves the registry as it was.

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "com/win_resource.h"
#include "host.h"
#include "type_library_table.h"

namespace {

using Lines = std::vector<std::wstring>;

constexpr bool kWide = sizeof(void*) == 8;
constexpr const wchar_t* kPlatform = kWide ? L"\\0\\win64" : L"\\0\\win32";
constexpr const wchar_t* kOtherPlatform = kWide ? L"\\0\\win32" : L"\\0\\win64";

void exportValues(HKEY key, const std::wstring& path, Lines& lines) {
    wchar_t name[1024];
    std::vector<BYTE> data(65536);
    for (DWORD index = 0;; ++index) {
        DWORD length = static_cast<DWORD>(std::size(name));
        DWORD size = static_cast<DWORD>(data.size());
        DWORD type = 0;
        const LSTATUS status = RegEnumValueW(key, index, name, &length, nullptr, &type, data.data(), &size);
        if (status == ERROR_NO_MORE_ITEMS) return;
        ASSERT_EQ(status, ERROR_SUCCESS);
        std::wstring line = path + L'|' + name + L'|' + std::to_wstring(type) + L'|';
        for (DWORD i = 0; i < size; ++i) line += static_cast<wchar_t>(data[i] + 1);
        lines.push_back(line);
    }
}

void exportKey(HKEY parent, const wchar_t* subkey, const std::wstring& path, Lines& lines) {
    vrx::RegistryKey key;
    ASSERT_EQ(RegOpenKeyExW(parent, subkey, 0, KEY_READ, key.put()), ERROR_SUCCESS);
    lines.push_back(path);
    exportValues(key.get(), path, lines);
    wchar_t name[256];
    for (DWORD index = 0;; ++index) {
        DWORD length = static_cast<DWORD>(std::size(name));
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            break;
        exportKey(key.get(), name, path + L'\\' + name, lines);
    }
}

/// All classes of the machine and of the user, sorted.
Lines exportClasses() {
    Lines lines;
    exportKey(HKEY_LOCAL_MACHINE, L"Software\\Classes", L"machine", lines);
    exportKey(HKEY_CURRENT_USER, L"Software\\Classes", L"user", lines);
    std::ranges::sort(lines);
    return lines;
}

std::wstring read(HKEY root, const std::wstring& path, const wchar_t* name = L"") {
    vrx::RegistryKey key;
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    DWORD type = REG_NONE;
    if (RegOpenKeyExW(root, (L"Software\\Classes\\" + path).c_str(), 0, KEY_READ, key.put()) !=
            ERROR_SUCCESS ||
        RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(text), &size) !=
            ERROR_SUCCESS) {
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

bool exists(HKEY root, const std::wstring& path) {
    vrx::RegistryKey key;
    return RegOpenKeyExW(root, (L"Software\\Classes\\" + path).c_str(), 0, KEY_READ, key.put()) ==
           ERROR_SUCCESS;
}

/// What tool boxes look for, and nothing that says a page on the Internet may use it.
void expectControl(HKEY root, const published::Class& expected) {
    const std::wstring key = L"CLSID\\" + identifier(expected.name);
    EXPECT_TRUE(exists(root, key + L"\\Control"));
    EXPECT_FALSE(exists(root, key + L"\\Insertable"));
    EXPECT_EQ(read(root, key + L"\\MiscStatus"), L"0");
    // Recompose on resize 1, cannot link inside 16, inside out 128, activate when visible 256, set client
    // site first 131072.
    EXPECT_EQ(read(root, key + L"\\MiscStatus\\1"), L"131473");
    const std::wstring picture = read(root, key + L"\\ToolboxBitmap32");
    const std::wstring file = host::component().path() + L", ";
    ASSERT_EQ(picture.substr(0, file.size()), file);
    const int number = _wtoi(picture.c_str() + file.size());
    const HMODULE module = GetModuleHandleW(host::component().path().c_str());
    const vrx::Bitmap bitmap(LoadBitmapW(module, MAKEINTRESOURCEW(number)));
    BITMAP description{};
    EXPECT_EQ(GetObjectW(bitmap.get(), sizeof description, &description),
              static_cast<int>(sizeof description));
    EXPECT_EQ(description.bmWidth, 16);
    EXPECT_EQ(description.bmHeight, 15);

    const std::wstring categories = key + L"\\Implemented Categories\\";
    EXPECT_TRUE(exists(root, categories + L"{40FC6ED4-2438-11CF-A3DB-080036F12502}"));   // controls
    EXPECT_TRUE(exists(root, categories + L"{0DE86A57-2BAA-11CF-A229-00AA003D7352}"));   // property bags
    EXPECT_TRUE(exists(root, categories + L"{0DE86A53-2BAA-11CF-A229-00AA003D7352}"));   // streams
    EXPECT_TRUE(exists(root, categories + L"{0DE86A52-2BAA-11CF-A229-00AA003D7352}"));   // storages
    EXPECT_FALSE(exists(root, categories + L"{7DD95801-9882-11CF-9FA9-00AA006C42C4}"));  // safe for scripting
    EXPECT_FALSE(exists(root, categories + L"{7DD95802-9882-11CF-9FA9-00AA006C42C4}"));  // for initialising
}

void expectLibrary(HKEY root, const std::string& name, const wchar_t* resource) {
    const std::wstring key = L"TypeLib\\" + identifier(name) + L"\\1.0";
    EXPECT_EQ(read(root, key).substr(0, name.size()), wide(name));
    EXPECT_EQ(read(root, key + kPlatform), host::component().path() + resource);
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
        expectClass(root, row);
        if (row.isControl) expectControl(root, row);
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

/// Whether a line of the export names the library or anything of its own.
bool isOurs(const std::wstring& line) {
    if (line.find(L"VrxCommon") != std::wstring::npos) return true;
    return std::ranges::any_of(published::kIdentifiers, [&](const published::Identifier& row) {
        return line.find(wide(row.guid)) != std::wstring::npos;
    });
}

vrx::RegistryKey createKey(HKEY parent, const wchar_t* path, DWORD options = REG_OPTION_NON_VOLATILE) {
    vrx::RegistryKey key;
    RegCreateKeyExW(parent, path, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, key.put(), nullptr);
    return key;
}

class Registration : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(host::component().unregisterMachine(), S_OK);
        // The keys that all software shares stay when the library goes; a new user has none of them yet.
        for (const wchar_t* shared : {L"CLSID", L"Interface", L"TypeLib"}) {
            vrx::RegistryKey key;
            RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(L"Software\\Classes\\") + shared).c_str(), 0,
                            nullptr, 0, KEY_READ, nullptr, key.put(), nullptr);
        }
        before_ = exportClasses();
        for (const std::wstring& line : before_)
            ASSERT_FALSE(isOurs(line)) << std::string(line.begin(), line.end());
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
    // Systems that show the user's classes to COM create the class from there.
    vrx::RegistryKey merged;
    const bool shown =
        RegOpenKeyExW(HKEY_CLASSES_ROOT, L"VrxCommon.CVrxHDR", 0, KEY_READ, merged.put()) == ERROR_SUCCESS;
    EXPECT_EQ(static_cast<bool>(host::create(L"VrxCommon.CVrxHDR")), shown);
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
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                              foreign.put(), nullptr),
              ERROR_SUCCESS);
    foreign.reset();
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, foreign.put()), ERROR_SUCCESS);
    foreign.reset();
    ASSERT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.c_str()), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.substr(0, path.find_last_of(L'\\')).c_str()),
              ERROR_SUCCESS);
    EXPECT_EQ(exportClasses(), before_);
}

TEST_F(Registration, LeavesProgramIdsAndTypeLibrariesToTheLibraryOfTheOtherPlatform) {
    ASSERT_EQ(host::component().registerMachine(), S_OK);
    const std::wstring library = L"TypeLib\\" + identifier("VrxCommon") + L"\\1.0";
    const std::wstring other = L"Software\\Classes\\" + library + kOtherPlatform;
    ASSERT_TRUE(createKey(HKEY_LOCAL_MACHINE, other.c_str()));
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"VrxCommon.CVrxFun\\CLSID"), identifier("CVrxFun"));
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"VrxCommon.CVrxFun.1\\CLSID"), identifier("CVrxFun"));
    EXPECT_NE(read(HKEY_LOCAL_MACHINE, library), L"(none)");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, library + kPlatform), L"(none)");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"CLSID\\" + identifier("CVrxFun")), L"(none)");

    for (const std::wstring& key : {other, other.substr(0, other.find_last_of(L'\\'))})
        ASSERT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, key.c_str()), ERROR_SUCCESS);
    ASSERT_EQ(host::component().unregisterMachine(), S_OK);
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

/// Registers for a machine whose keys lie below a key of the test's own.
HRESULT registerBelow(HKEY machine) {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine);
    const HRESULT result = host::component().registerMachine();
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    return result;
}

TEST(RefusedRegistration, TakesBackWhatItWrote) {
    const vrx::RegistryKey machine = createKey(HKEY_CURRENT_USER, L"Software\\VrxTest");
    const vrx::RegistryKey classes = createKey(machine.get(), L"Software\\Classes");
    // The system keeps lasting keys out of a volatile one; the classes come after type libraries and
    // interfaces.
    const vrx::RegistryKey blocked = createKey(classes.get(), L"CLSID", REG_OPTION_VOLATILE);
    createKey(classes.get(), L"TypeLib");
    createKey(classes.get(), L"Interface");
    Lines before;
    exportKey(machine.get(), L"", L"machine", before);
    EXPECT_EQ(registerBelow(machine.get()), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    Lines after;
    exportKey(machine.get(), L"", L"machine", after);
    EXPECT_EQ(after, before);
    for (const wchar_t* key : {L"Software\\Classes\\CLSID", L"Software\\Classes\\TypeLib",
                               L"Software\\Classes\\Interface", L"Software\\Classes", L"Software"}) {
        RegDeleteKeyW(machine.get(), key);
    }
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\VrxTest"), ERROR_SUCCESS);
}

TEST(RefusedRegistration, TellsTheReasonOfTheSystem) {
    const vrx::RegistryKey gone = createKey(HKEY_CURRENT_USER, L"Software\\VrxTest");
    ASSERT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\VrxTest"), ERROR_SUCCESS);
    EXPECT_EQ(registerBelow(gone.get()), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
}

}  // namespace
