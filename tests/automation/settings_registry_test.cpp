// The settings component: texts in the registry, for compiled and for script hosts.

#include <gtest/gtest.h>
#include <windows.h>

#include <future>
#include <string>

#include "VrxSettings.h"
#include "failure.h"
#include "host.h"
#include "registry_folder.h"

using host::call;
using host::integer;
using host::Outcome;
using host::registryText;
using host::Text;
using vrx::Bstr;
using vrx::ComPtr;

namespace {

constexpr long kMachine = static_cast<long>(0x80000002);
constexpr long kUser = static_cast<long>(0x80000001);

std::wstring textOf(const Bstr& text) { return {text.get(), text.get() + SysStringLen(text.get())}; }

Bstr bstr(const std::wstring& text) {
    return Bstr(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
}

class SettingsRegistry : public testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(host::settingsComponent().registerMachine(), S_OK); }

    void SetUp() override {
        CoCreateInstance(CLSID_SettingsRegistry, nullptr, CLSCTX_INPROC_SERVER, IID__SettingsRegistry,
                         reinterpret_cast<void**>(registry_.put()));
        ASSERT_TRUE(registry_);
    }

    HRESULT write(long hive, const std::wstring& subkey, const std::wstring& name, const std::wstring& text) {
        return registry_->WriteValue(hive, bstr(subkey).get(), bstr(name).get(), bstr(text).get());
    }
    std::wstring read(long hive, const std::wstring& subkey, const std::wstring& name) {
        Bstr byDefault = bstr(L"default");
        BSTR passed = byDefault.get();
        Bstr result;
        const HRESULT code =
            registry_->ReadValue(hive, bstr(subkey).get(), bstr(name).get(), &passed, result.put());
        return FAILED(code) ? L"(failed)" : textOf(result);
    }

    const host::RegistryFolder folder_;
    const std::wstring key_ = host::RegistryFolder::kSubkey;
    ComPtr<_SettingsRegistry> registry_;
};

TEST_F(SettingsRegistry, AnswersTheDefaultWhereNothingIsStored) {
    EXPECT_EQ(read(kMachine, key_, L"Path"), L"default");
    EXPECT_EQ(write(kMachine, key_, L"Type", L"1"), S_OK);
    EXPECT_EQ(read(kMachine, key_, L"Path"), L"default");
}

TEST_F(SettingsRegistry, ReadsBackWhatItWrote) {
    for (const std::wstring& text : {std::wstring(L"C:\\Pics"), std::wstring(), std::wstring(L" 85 "),
                                     std::wstring(L"\u00E9\u4E2D\U0001F600"), std::wstring(16000, L'x')}) {
        EXPECT_EQ(write(kMachine, key_ + L"\\ImageSaver", L"Path", text), S_OK);
        EXPECT_EQ(read(kMachine, key_ + L"\\ImageSaver", L"Path"), text);
    }
}

TEST_F(SettingsRegistry, StoresTextsBelowTheGivenHive) {
    write(kMachine, key_ + L"\\A", L"Name", L"of the machine");
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, key_ + L"\\A", L"Name"), L"of the machine");
    EXPECT_EQ(registryText(HKEY_CURRENT_USER, key_ + L"\\A", L"Name"), L"(none)");
    write(kUser, key_ + L"\\B", L"Name", L"of the user");
    EXPECT_EQ(registryText(HKEY_CURRENT_USER, key_ + L"\\B", L"Name"), L"of the user");
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, key_ + L"\\B", L"Name"), L"(none)");
    EXPECT_EQ(read(kUser, key_ + L"\\A", L"Name"), L"default");
}

TEST_F(SettingsRegistry, TakesASubkeyWithOrWithoutABackslashAtEitherEnd) {
    for (const std::wstring& subkey : {key_, L"\\" + key_, key_ + L"\\", L"\\\\" + key_ + L"\\\\"}) {
        EXPECT_EQ(write(kMachine, subkey, L"Name", subkey), S_OK);
        EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, key_, L"Name"), subkey);
        EXPECT_EQ(read(kMachine, subkey, L"Name"), subkey);
    }
}

TEST_F(SettingsRegistry, TakesAnEmptySubkeyForTheHiveItself) {
    for (const wchar_t* subkey : {L"", L"\\"}) {
        EXPECT_EQ(write(kUser, subkey, L"VrxAutomationTest", L"text"), S_OK);
        EXPECT_EQ(read(kUser, subkey, L"VrxAutomationTest"), L"text");
        EXPECT_EQ(registryText(HKEY_CURRENT_USER, L"", L"VrxAutomationTest"), L"text");
        RegDeleteValueW(HKEY_CURRENT_USER, L"VrxAutomationTest");
    }
}

TEST_F(SettingsRegistry, TakesAnEmptyNameForTheKeysOwnValue) {
    EXPECT_EQ(write(kMachine, key_, L"", L"own"), S_OK);
    EXPECT_EQ(read(kMachine, key_, L""), L"own");
}

/// The system makes no lasting key below one that lasts until the next start only.
class RefusingMachine : public SettingsRegistry {
  protected:
    void SetUp() override {
        SettingsRegistry::SetUp();
        vrx::RegistryKey key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, key_.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_READ,
                                  nullptr, key.put(), nullptr),
                  ERROR_SUCCESS);
    }

    const std::wstring refused_ = key_ + L"\\ImageSaver";
};

TEST_F(RefusingMachine, HasItsTextsWrittenToTheUsersHive) {
    EXPECT_EQ(write(kMachine, refused_, L"Path", L"C:\\Pics"), S_OK);
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, refused_, L"Path"), L"(none)");
    EXPECT_EQ(registryText(HKEY_CURRENT_USER, refused_, L"Path"), L"C:\\Pics");
    EXPECT_EQ(read(kMachine, refused_, L"Path"), L"C:\\Pics");
}

TEST_F(SettingsRegistry, LooksIntoTheUsersHiveFirst) {
    host::setRegistryText(HKEY_LOCAL_MACHINE, key_, L"Path", L"of the machine");
    EXPECT_EQ(read(kMachine, key_, L"Path"), L"of the machine");
    host::setRegistryText(HKEY_CURRENT_USER, key_, L"Path", L"of the user");
    EXPECT_EQ(read(kMachine, key_, L"Path"), L"of the user");
}

TEST_F(SettingsRegistry, ReadsBackWhatTheMachinesHiveTakesAfterItHasRefused) {
    host::setRegistryText(HKEY_CURRENT_USER, key_, L"Path", L"old");
    host::setRegistryText(HKEY_CURRENT_USER, key_, L"Other", L"stays");
    EXPECT_EQ(write(kMachine, key_, L"Path", L"new"), S_OK);
    EXPECT_EQ(read(kMachine, key_, L"Path"), L"new");
    EXPECT_EQ(read(kMachine, key_, L"Other"), L"stays");
}

TEST_F(SettingsRegistry, ReadsNumbersAsDecimalText) {
    const DWORD small = 85;
    const DWORD minusOne = 0xFFFFFFFF;
    const long long large = -5000000000;
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"a", REG_DWORD, &small, sizeof small);
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"b", REG_DWORD, &minusOne, sizeof minusOne);
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"c", REG_QWORD, &large, sizeof large);
    EXPECT_EQ(read(kMachine, key_, L"a"), L"85");
    EXPECT_EQ(read(kMachine, key_, L"b"), L"-1");
    EXPECT_EQ(read(kMachine, key_, L"c"), L"-5000000000");
}

TEST_F(SettingsRegistry, FillsInTheVariablesOfATextThatIsMeantToHaveSome) {
    SetEnvironmentVariableW(L"VRX_AUTOMATION_TEST", L"filled");
    const std::wstring text = L"<%VRX_AUTOMATION_TEST%>";
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"a", REG_EXPAND_SZ, text.c_str(),
                           (text.size() + 1) * sizeof(wchar_t));
    host::setRegistryText(HKEY_LOCAL_MACHINE, key_, L"b", text);
    EXPECT_EQ(read(kMachine, key_, L"a"), L"<filled>");
    EXPECT_EQ(read(kMachine, key_, L"b"), text);
}

TEST_F(SettingsRegistry, AnswersTheDefaultForBytesThatAreNoText) {
    const char bytes[] = {1, 2, 3};
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"a", REG_BINARY, bytes, sizeof bytes);
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"b", REG_DWORD, bytes, sizeof bytes);
    EXPECT_EQ(read(kMachine, key_, L"a"), L"default");
    EXPECT_EQ(read(kMachine, key_, L"b"), L"default");
}

TEST_F(SettingsRegistry, ReadsATextWithoutAnEnd) {
    const wchar_t text[] = {L'a', L'b', L'c'};
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"a", REG_SZ, text, sizeof text);
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"b", REG_SZ, text, sizeof text - 1);
    host::setRegistryValue(HKEY_LOCAL_MACHINE, key_, L"c", REG_SZ, nullptr, 0);
    EXPECT_EQ(read(kMachine, key_, L"a"), L"abc");
    EXPECT_EQ(read(kMachine, key_, L"b").substr(0, 2), L"ab");
    EXPECT_EQ(read(kMachine, key_, L"c"), L"");
}

TEST_F(SettingsRegistry, RefusesWhatIsNoHive) {
    Bstr result;
    for (const long hive : {0L, 1L, -1L, static_cast<long>(0x80000004), static_cast<long>(0x80000099)}) {
        BSTR none = nullptr;
        EXPECT_EQ(host::failureOf(registry_->ReadValue(hive, bstr(key_).get(), nullptr, &none, result.put()))
                      .number,
                  5);
        EXPECT_EQ(host::failureOf(registry_->WriteValue(hive, bstr(key_).get(), nullptr, nullptr)).number, 5);
    }
}

TEST_F(SettingsRegistry, RefusesAZeroCharacterInANameOrSubkey) {
    const std::wstring zero(L"a\0b", 3);
    EXPECT_EQ(host::failureOf(write(kMachine, key_ + L"\\" + zero, L"n", L"t")).number, 5);
    EXPECT_EQ(host::failureOf(write(kMachine, key_, zero, L"t")).number, 5);
    EXPECT_EQ(read(kMachine, key_, zero), L"(failed)");
}

TEST_F(SettingsRegistry, FailsForAKeyThatCannotBe) {
    const std::wstring impossible = key_ + L"\\" + std::wstring(300, L'k');
    EXPECT_TRUE(FAILED(write(kMachine, impossible, L"n", L"t")));
    EXPECT_EQ(read(kMachine, impossible, L"n"), L"default");
}

TEST_F(SettingsRegistry, TakesNoTextForAnEmptyOne) {
    EXPECT_EQ(registry_->WriteValue(kMachine, bstr(key_).get(), nullptr, nullptr), S_OK);
    Bstr result;
    EXPECT_EQ(registry_->ReadValue(kMachine, bstr(key_).get(), nullptr, nullptr, result.put()), S_OK);
    EXPECT_EQ(textOf(result), L"");
    EXPECT_EQ(registry_->ReadValue(kMachine, bstr(key_).get(), bstr(L"none").get(), nullptr, result.put()),
              S_OK);
    EXPECT_EQ(textOf(result), L"");
    EXPECT_EQ(registry_->ReadValue(kMachine, bstr(key_).get(), nullptr, nullptr, nullptr), E_POINTER);
}

TEST_F(SettingsRegistry, LeavesTheDefaultAlone) {
    Bstr byDefault = bstr(L"default");
    BSTR passed = byDefault.get();
    Bstr result;
    registry_->ReadValue(kMachine, bstr(key_).get(), bstr(L"n").get(), &passed, result.put());
    EXPECT_EQ(passed, byDefault.get());
    EXPECT_NE(result.get(), byDefault.get());
    EXPECT_EQ(textOf(byDefault), L"default");
}

TEST_F(SettingsRegistry, ServesScripts) {
    const ComPtr<IDispatch> script = host::create(L"VrxSettings.SettingsRegistry");
    ASSERT_TRUE(script);
    EXPECT_TRUE(host::create(L"VrxSettings.SettingsRegistry.1"));
    EXPECT_EQ(host::idOf(*script, L"ReadValue"), 1);
    EXPECT_EQ(host::idOf(*script, L"WriteValue"), 2);
    const Text subkey(host::RegistryFolder::kSubkey);
    EXPECT_EQ(call(*script, L"WriteValue", {integer(kMachine), subkey, Text(L"n"), integer(85)}).code, S_OK);
    const Outcome stored =
        call(*script, L"ReadValue", {integer(kMachine), subkey, Text(L"n"), Text(L"default")});
    ASSERT_EQ(V_VT(&stored.result.get()), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&stored.result.get()), L"85");
    vrx::Variant byDefault = vrx::makeText(u"default");
    const Outcome absent = call(*script, L"ReadValue",
                                {integer(kMachine), subkey, Text(L"m"), host::reference(byDefault.get())});
    ASSERT_EQ(V_VT(&absent.result.get()), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&absent.result.get()), L"default");
}

TEST_F(SettingsRegistry, IsCalledDirectlyFromEveryApartment) {
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__SettingsRegistry, registry_.get(), &stream), S_OK);
    const auto there = std::async(std::launch::async, [&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        void* object = nullptr;
        CoGetInterfaceAndReleaseStream(stream, IID__SettingsRegistry, &object);
        if (object) static_cast<_SettingsRegistry*>(object)->Release();
        CoUninitialize();
        return object;
    });
    there.wait();
    EXPECT_EQ(const_cast<std::future<void*>&>(there).get(), registry_.get());
}

TEST_F(SettingsRegistry, MayBeUnloadedWithItsLastObject) {
    EXPECT_EQ(host::settingsComponent().canUnload(), S_FALSE);
    IUnknown* last = registry_.detach();
    EXPECT_EQ(last->Release(), 0u);
    EXPECT_EQ(host::settingsComponent().canUnload(), S_OK);
}

std::wstring classText(HKEY root, const std::wstring& key) {
    return registryText(root, L"Software\\Classes\\" + key, L"");
}

constexpr wchar_t kClassId[] = L"{DAF7DF2D-190A-11D1-8048-444553540000}";
constexpr wchar_t kInterfaceId[] = L"{A618ABD1-F900-4274-8F31-E6F63B6E6CA7}";

void expectRegistered(HKEY root) {
    const std::wstring classKey = std::wstring(L"CLSID\\") + kClassId;
    EXPECT_EQ(classText(root, L"VrxSettings.SettingsRegistry\\CLSID"), kClassId);
    EXPECT_EQ(classText(root, L"VrxSettings.SettingsRegistry\\CurVer"), L"VrxSettings.SettingsRegistry.1");
    EXPECT_EQ(classText(root, L"VrxSettings.SettingsRegistry.1\\CLSID"), kClassId);
    EXPECT_EQ(classText(root, classKey + L"\\InprocServer32"), host::settingsComponent().path());
    EXPECT_EQ(classText(root, std::wstring(L"Interface\\") + kInterfaceId), L"_SettingsRegistry");
}

void expectUnregistered(HKEY root) {
    for (const std::wstring& key :
         {std::wstring(L"VrxSettings.SettingsRegistry"), std::wstring(L"VrxSettings.SettingsRegistry.1"),
          std::wstring(L"CLSID\\") + kClassId, std::wstring(L"Interface\\") + kInterfaceId}) {
        EXPECT_EQ(classText(root, key), L"(none)");
    }
}

TEST_F(SettingsRegistry, RegistersForTheMachineAndForOneUser) {
    expectRegistered(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(host::settingsComponent().unregisterMachine(), S_OK);
    expectUnregistered(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(host::settingsComponent().install(true, L"user"), S_OK);
    expectRegistered(HKEY_CURRENT_USER);
    expectUnregistered(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(host::settingsComponent().install(false, L"user"), S_OK);
    expectUnregistered(HKEY_CURRENT_USER);
    EXPECT_EQ(host::settingsComponent().registerMachine(), S_OK);
}

}  // namespace
