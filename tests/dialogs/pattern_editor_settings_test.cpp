// What the pattern editor remembers between uses.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dialogs/resource.h"
#include "dialogs/settings_store.h"
#include "pattern/CVrxPattern.h"
#include "pattern/editor/modal_editor.h"
#include "pattern_driver.h"
#include "registry_folder.h"
#include "settings_recorder.h"
#include "throwaway_folder.h"

using host::eventually;
using host::PatternWindow;
using host::registryText;
using vrx::ComPtr;

namespace {

class PatternEditorSettings : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(host::settingsComponent().registerMachine(), S_OK);
        setKey(root_);
    }

    void setKey(const std::wstring& key) const {
        pattern_->put_REGKEY(vrx::Bstr(SysAllocString(key.c_str())).get());
    }
    void store(const wchar_t* name, const std::wstring& text) const {
        host::setRegistryText(HKEY_LOCAL_MACHINE, root_ + L"\\Pattern", name, text);
    }
    [[nodiscard]] std::wstring stored(const wchar_t* name) const {
        return registryText(HKEY_LOCAL_MACHINE, root_ + L"\\Pattern", name);
    }
    [[nodiscard]] long widthAtFirst() const {
        long width = 0;
        static_cast<void>(edit([&](const PatternWindow& editor) { width = editor.size().cx; }));
        return width;
    }

    [[nodiscard]] std::wstring edit(const std::function<void(const PatternWindow&)>& act) const {
        return host::editPattern(*pattern_, L"0-255;1000-16711680;", act);
    }

    const ComPtr<_CVrxPattern> pattern_ = host::create(L"VrxCommon.CVrxPattern").as<_CVrxPattern>();
    const host::RegistryFolder registry_;
    const host::ThrowawayFolder folder_;
    const std::wstring root_ = host::RegistryFolder::kSubkey;
};

TEST_F(PatternEditorSettings, OfAFirstRunAreTheHostsFolderAnd3735Twips) {
    EXPECT_EQ(widthAtFirst(), 249);
    EXPECT_EQ(stored(L"Path"), host::programFolder());
    EXPECT_EQ(stored(L"Width"), L"3735");
}

TEST_F(PatternEditorSettings, KeepTheWindowsWidth) {
    static_cast<void>(edit([](const PatternWindow& editor) { editor.resize(612); }));
    EXPECT_EQ(stored(L"Width"), L"9180");
    EXPECT_EQ(widthAtFirst(), 612);
}

TEST_F(PatternEditorSettings, BoundTheWidth) {
    store(L"Width", L"15");
    EXPECT_EQ(widthAtFirst(), 249);
    store(L"Width", L"99999");
    EXPECT_EQ(widthAtFirst(), 1000);
    store(L"Width", L"wide");
    EXPECT_EQ(widthAtFirst(), 249);
}

TEST_F(PatternEditorSettings, AreWrittenAfterCancelToo) {
    static_cast<void>(edit([](const PatternWindow& editor) {
        editor.resize(500);
        editor.click(IDC_COMMAND4);
    }));
    EXPECT_EQ(stored(L"Width"), L"7500");
}

TEST_F(PatternEditorSettings, KeepTheFolderOfTheLastFileWithABackslash) {
    static_cast<void>(folder_.write(L"a.VGR", {'7', ';'}));
    static_cast<void>(
        edit([&](const PatternWindow& editor) { editor.chooseFile(IDM_ITEMLOAD, folder_ / L"a.VGR"); }));
    EXPECT_EQ(stored(L"Path"), folder_.path() + L"\\");
}

TEST_F(PatternEditorSettings, LeadTheFileDialogsToTheFolder) {
    store(L"Path", folder_.path());
    static_cast<void>(edit([&](const PatternWindow& editor) {
        const HWND dialog = editor.openByMenu(IDM_ITEMSAVE);
        host::setText(dialog, host::kFileNameEdit, L"here.VGR");
        editor.end(dialog, IDOK);
        EXPECT_TRUE(eventually([&] { return host::exists(folder_ / L"here.VGR"); }));
    }));
}

TEST_F(PatternEditorSettings, AreNeitherReadNorWrittenWithoutAKey) {
    // Where a root without a name would lead.
    host::setRegistryText(HKEY_LOCAL_MACHINE, L"Pattern", L"Width", L"9000");
    setKey(L"");
    EXPECT_EQ(widthAtFirst(), 249);
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, L"Pattern", L"Path"), L"(none)");
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, L"Pattern", L"Width"), L"9000");
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Pattern");
}

TEST(RecordedPatternEditorSettings, AreReadAndWrittenFolderFirst) {
    vrx::releaseSettingsComponent();
    const std::wstring folder = host::programFolder();
    const std::u16string path(folder.begin(), folder.end());
    {
        host::SettingsRecorder recorder;
        // The program's own copy of the class: the DLL keeps the component that it has met before.
        const ComPtr<_CVrxPattern> pattern(new vrx::CVrxPattern(vrx::modalPatternDialog()));
        pattern->put_REGKEY(vrx::Bstr(SysAllocString(L"Software\\Shop")).get());
        static_cast<void>(host::editPattern(*pattern, L"", [](const PatternWindow&) {}));
        EXPECT_EQ(
            recorder.journal.calls,
            (std::vector<std::u16string>{
                u"read Software\\Shop\\Pattern|Path|" + path, u"read Software\\Shop\\Pattern|Width|3735",
                u"write Software\\Shop\\Pattern|Path|kept", u"write Software\\Shop\\Pattern|Width|3735"}));
        vrx::releaseSettingsComponent();
    }
}

}  // namespace
