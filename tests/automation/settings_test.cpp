// What the dialogs remember, through the settings component and through one that the tests provide.

#include <gtest/gtest.h>
#include <windows.h>

#include <future>
#include <string>
#include <vector>

#include "common/host_program.h"
#include "dialogs/settings_store.h"
#include "host.h"
#include "registry_folder.h"
#include "settings_recorder.h"

using host::registryText;
using vrx::SettingsStore;

namespace {

using namespace vrx::settings;

std::u16string programFolder() {
    const std::wstring folder = host::programFolder();
    return {folder.begin(), folder.end()};
}

class Settings : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(host::settingsComponent().registerMachine(), S_OK); }
    void TearDown() override { vrx::releaseSettingsComponent(); }

    const host::RegistryFolder folder_;
    const std::wstring key_ = host::RegistryFolder::kSubkey;
    const SettingsStore store_{std::u16string(key_.begin(), key_.end())};
};

TEST_F(Settings, OfAFirstRunAreTheHostsFolderTypeIndex0JpegQuality85AndTheDesignedPreview) {
    EXPECT_EQ(store_.read(kImageSaverPath), programFolder());
    EXPECT_EQ(store_.read(kImageSaverType), 0);
    EXPECT_EQ(store_.read(kImageSaverQuality), 85);
    EXPECT_EQ(store_.read(kImageLoaderPreview), 1);
    EXPECT_EQ(store_.read(kPatternWidth), 3735);
}

TEST_F(Settings, AreReadBackAsTheyWereWritten) {
    store_.write(kHdrSaverPath, u"C:\\Bilder\\\u00C4\u4E2D");
    store_.write(kHdrSaverType, 2);
    store_.write(kHdrSaverQuality, 87);
    EXPECT_EQ(store_.read(kHdrSaverPath), u"C:\\Bilder\\\u00C4\u4E2D");
    EXPECT_EQ(store_.read(kHdrSaverType), 2);
    EXPECT_EQ(store_.read(kHdrSaverQuality), 87);
}

TEST_F(Settings, LieInTheMachinesHiveAsTexts) {
    store_.write(kImageLoaderPreview, 0);
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, key_ + L"\\ImageLoader", L"Preview"), L"0");
}

TEST_F(Settings, ThatMeanNothingAreTheDefaultAndOthersTheNearestValue) {
    const std::wstring saver = key_ + L"\\ImageSaver";
    host::setRegistryText(HKEY_LOCAL_MACHINE, saver, L"JPGDetail", L"fine");
    host::setRegistryText(HKEY_LOCAL_MACHINE, saver, L"Type", L"9");
    EXPECT_EQ(store_.read(kImageSaverQuality), 85);
    EXPECT_EQ(store_.read(kImageSaverType), 1);
}

TEST_F(Settings, AreTheDefaultsAndAreNotKeptWithoutTheComponent) {
    ASSERT_EQ(host::settingsComponent().unregisterMachine(), S_OK);
    vrx::releaseSettingsComponent();
    store_.write(kHdrSaverQuality, 50);
    store_.write(kHdrSaverPath, u"C:\\Pics");
    EXPECT_EQ(store_.read(kHdrSaverQuality), 85);
    EXPECT_EQ(store_.read(kHdrSaverPath), programFolder());
    ASSERT_EQ(host::settingsComponent().registerMachine(), S_OK);
    EXPECT_EQ(store_.read(kHdrSaverQuality), 85);
    store_.write(kHdrSaverQuality, 50);
    EXPECT_EQ(store_.read(kHdrSaverQuality), 50);
}

TEST_F(Settings, AreTheDefaultsWithoutCom) {
    std::async(std::launch::async, [this] {
        EXPECT_EQ(store_.read(kHdrSaverQuality), 85);
        store_.write(kHdrSaverQuality, 50);
    }).wait();
    EXPECT_EQ(registryText(HKEY_LOCAL_MACHINE, key_ + L"\\HDRSaver", L"JPGDetail"), L"(none)");
}

/// With a component of the test's own in the place of the registered one.
class RecordedSettings : public Settings {
  protected:
    void TearDown() override {
        Settings::TearDown();
        EXPECT_EQ(journal_.alive, 0);
    }

    host::SettingsRecorder recorder_;
    host::SettingsJournal& journal_ = recorder_.journal;
};

TEST_F(RecordedSettings, AreAskedForBySubkeyNameAndDefault) {
    const SettingsStore store(u"Software\\Shop");
    EXPECT_EQ(store.read(kImageSaverPath), u"kept");
    EXPECT_EQ(store.read(kImageSaverQuality), 85);
    store.write(kImageSaverPath, u"C:\\Pics");
    store.write(kImageSaverType, 1);
    const std::vector<std::u16string> expected{
        u"read Software\\Shop\\ImageSaver|Path|" + programFolder(),
        u"read Software\\Shop\\ImageSaver|JPGDetail|85",
        u"write Software\\Shop\\ImageSaver|Path|C:\\Pics",
        u"write Software\\Shop\\ImageSaver|Type|1",
    };
    EXPECT_EQ(journal_.calls, expected);
}

TEST_F(RecordedSettings, OfAnOwnerWhoseRegkeyIsEmptyAreStoredUnderTheBareSuffix) {
    const SettingsStore store(u"");
    store.write(kImageSaverType, 1);
    EXPECT_EQ(journal_.calls, std::vector<std::u16string>{u"write \\ImageSaver|Type|1"});
}

TEST_F(RecordedSettings, OfTwoDialogsOfDifferentKindsShareTheOneSettingsRegistryInstance) {
    const SettingsStore loader(u"Software\\One");
    const SettingsStore saver(u"Software\\Two");
    EXPECT_EQ(loader.read(kImageLoaderPath), u"kept");
    EXPECT_EQ(saver.read(kImageSaverPath), u"kept");
    saver.write(kImageSaverType, 1);
    EXPECT_EQ(journal_.made, 1);
    EXPECT_EQ(journal_.alive, 1);
    vrx::releaseSettingsComponent();
    EXPECT_EQ(journal_.alive, 0);
    saver.write(kImageSaverType, 1);
    EXPECT_EQ(journal_.made, 2);
}

/// A component whose class is all that is registered of it: COM cannot carry its interface to other threads.
class SettingsWithoutProxyInformation : public RecordedSettings {
  protected:
    void SetUp() override {
        RecordedSettings::SetUp();
        ASSERT_EQ(host::settingsComponent().unregisterMachine(), S_OK);
    }
    void TearDown() override {
        RecordedSettings::TearDown();
        EXPECT_EQ(host::settingsComponent().registerMachine(), S_OK);
    }
};

TEST_F(SettingsWithoutProxyInformation, AreServedByOneComponentAllTheSame) {
    for (const auto* root : {u"One", u"Two", u"Three", u"Four", u"Five"}) {
        const SettingsStore store(root);
        EXPECT_EQ(store.read(kImageSaverPath), u"kept");
        store.write(kImageSaverType, 1);
    }
    EXPECT_EQ(journal_.made, 1);
    EXPECT_EQ(journal_.alive, 1);
    EXPECT_EQ(journal_.calls.size(), 10u);
}

TEST_F(SettingsWithoutProxyInformation, AreServedByOneComponentOnEachThreadThatCannotShare) {
    store_.write(kImageSaverType, 1);
    std::async(std::launch::async, [this] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        {
            host::SettingsRecorder other;
            for (int i = 0; i < 5; ++i) store_.write(kImageSaverType, 1);
            EXPECT_EQ(other.journal.made, 1);
            EXPECT_EQ(other.journal.calls.size(), 5u);
            // What the table holds of a thread goes with it.
        }
        CoUninitialize();
    }).wait();
    store_.write(kImageSaverType, 1);
    EXPECT_EQ(journal_.made, 1);
    EXPECT_EQ(journal_.calls.size(), 2u);
}

TEST_F(RecordedSettings, AreTheDefaultsWhereTheComponentRefuses) {
    journal_.answer = E_ACCESSDENIED;
    EXPECT_EQ(store_.read(kHdrLoaderPath), programFolder());
    EXPECT_EQ(store_.read(kHdrLoaderPreview), 1);
    store_.write(kHdrLoaderPreview, 0);
    EXPECT_EQ(journal_.calls.size(), 3u);
}

TEST_F(Settings, DoNotKeepTheLibraryInMemory) {
    EXPECT_EQ(store_.read(kHdrLoaderPreview), 1);
    EXPECT_FALSE(vrx::moduleInUse());
}

TEST_F(Settings, ServeOneApartmentAfterAnother) {
    const auto useIt = [this] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        store_.write(kHdrSaverQuality, store_.read(kHdrSaverQuality) - 1);
        CoUninitialize();
    };
    std::async(std::launch::async, useIt).wait();
    std::async(std::launch::async, useIt).wait();
    EXPECT_EQ(store_.read(kHdrSaverQuality), 83);
}

TEST_F(Settings, ServeTwoApartmentsAtTheSameTime) {
    EXPECT_EQ(store_.read(kHdrSaverQuality), 85);
    const auto useIt = [this] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        for (int i = 0; i < 50; ++i) store_.write(kHdrSaverQuality, store_.read(kHdrSaverQuality));
        CoUninitialize();
    };
    auto one = std::async(std::launch::async, useIt);
    auto two = std::async(std::launch::async, useIt);
    one.wait();
    two.wait();
    EXPECT_EQ(store_.read(kHdrSaverQuality), 85);
}

TEST(HostProgram, IsThisOne) {
    EXPECT_EQ(vrx::hostFolder(), programFolder());
    EXPECT_EQ(vrx::hostPath(), programFolder() + u"\\automation_tests.exe");
}

}  // namespace
