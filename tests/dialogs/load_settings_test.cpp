// What the load dialogs ask the settings component for and what they give it, in their order.

#include <gtest/gtest.h>

#include "common/host_program.h"
#include "dialogs/frmLoadHDR.h"
#include "dialogs/frmLoadImage.h"
#include "dialogs/frmSaveHDR.h"
#include "dialogs/frmSaveImage.h"
#include "dialogs/settings_store.h"
#include "host.h"
#include "pattern/editor/frmPattern.h"
#include "settings_recorder.h"

namespace {

using Calls = std::vector<std::u16string>;

class LoadDialogSettings : public testing::Test {
  protected:
    const std::u16string folder_ = vrx::hostFolder();
    host::SettingsRecorder recorder_;
    const vrx::ComPtr<vrx::VrxPreviewImg> preview_{new vrx::VrxPreviewImg};

    void SetUp() override { vrx::releaseSettingsComponent(); }
    void TearDown() override { vrx::releaseSettingsComponent(); }

    template <class Dialog, class... Needed>
    static void openAndClose(const std::u16string& root, Needed&... needed) {
        Dialog dialog(needed...);
        dialog.setREGKEY(root);
        dialog.load(nullptr);
        EXPECT_TRUE(dialog.isLoaded());
        dialog.unload();
        EXPECT_FALSE(dialog.isLoaded());
    }
};

TEST_F(LoadDialogSettings, OfTheHdrDialogAreFolderAndPreview) {
    openAndClose<vrx::frmLoadHDR>(u"Software\\Shop", *preview_.get());
    EXPECT_EQ(recorder_.journal.calls, (Calls{
                                           u"read Software\\Shop\\ImageHDR|Path|" + folder_,
                                           u"read Software\\Shop\\ImageHDR|Preview|1",
                                           u"write Software\\Shop\\ImageHDR|Path|" + folder_,
                                           u"write Software\\Shop\\ImageHDR|Preview|1",
                                       }));
}

TEST_F(LoadDialogSettings, OfTheImageDialogAreFolderPreviewAndType) {
    recorder_.journal.stored = u"0";
    openAndClose<vrx::frmLoadImage>(u"Software\\Shop", *preview_.get());
    EXPECT_EQ(recorder_.journal.calls, (Calls{
                                           u"read Software\\Shop\\ImageLoader|Path|" + folder_,
                                           u"read Software\\Shop\\ImageLoader|Preview|1",
                                           u"read Software\\Shop\\ImageLoader|Type|0",
                                           u"write Software\\Shop\\ImageLoader|Path|" + folder_,
                                           u"write Software\\Shop\\ImageLoader|Preview|0",
                                           u"write Software\\Shop\\ImageLoader|Type|0",
                                       }));
}

TEST_F(LoadDialogSettings, WithoutARootLieUnderTheBareSuffix) {
    openAndClose<vrx::frmLoadHDR>(u"", *preview_.get());
    ASSERT_EQ(recorder_.journal.calls.size(), 4U);
    EXPECT_EQ(recorder_.journal.calls.front(), u"read \\ImageHDR|Path|" + folder_);
}

TEST_F(LoadDialogSettings, ThatTheComponentRefusesAreTheDefaults) {
    recorder_.journal.answer = E_ACCESSDENIED;
    openAndClose<vrx::frmLoadHDR>(u"Software\\Shop", *preview_.get());
    ASSERT_EQ(recorder_.journal.calls.size(), 4U);
    EXPECT_EQ(recorder_.journal.calls[2], u"write Software\\Shop\\ImageHDR|Path|" + folder_);
    EXPECT_EQ(recorder_.journal.calls[3], u"write Software\\Shop\\ImageHDR|Preview|1");
}

TEST_F(LoadDialogSettings, OfFiveDialogsComeFromOneComponentOfWhichOnlyTheClassIsRegistered) {
    ASSERT_EQ(host::settingsComponent().unregisterMachine(), S_OK);
    openAndClose<vrx::frmLoadHDR>(u"Software\\Shop", *preview_.get());
    openAndClose<vrx::frmLoadImage>(u"Software\\Shop", *preview_.get());
    openAndClose<vrx::frmSaveHDR>(u"Software\\Shop", *preview_.get());
    openAndClose<vrx::frmSaveImage>(u"Software\\Shop");
    openAndClose<vrx::frmPattern>(u"Software\\Shop");
    EXPECT_EQ(recorder_.journal.made, 1);
    // Two, three, three, three and two values, each read and written.
    EXPECT_EQ(recorder_.journal.calls.size(), 26U);
    EXPECT_EQ(host::settingsComponent().registerMachine(), S_OK);
}

TEST_F(LoadDialogSettings, OfBothDialogsComeFromOneComponent) {
    openAndClose<vrx::frmLoadHDR>(u"Software\\Shop", *preview_.get());
    openAndClose<vrx::frmLoadImage>(u"Software\\Shop", *preview_.get());
    EXPECT_EQ(recorder_.journal.made, 1);
}

}  // namespace
