// The lists of drives, folders and files of the file dialogs, as they follow each other.

#include "dialogs/file_browser.h"

#include "browser_dialog.h"
#include "common/message_loop.h"
#include "dialogs/resource.h"
#include "gdi_handles.h"
#include "message_box_watcher.h"
#include "window_driver.h"

using host::MessageBoxWatcher;

namespace {

class FileBrowserTest : public BrowserTest {
  protected:
    [[nodiscard]] std::wstring ownRoot() const { return folder_.path().substr(0, 3); }
    [[nodiscard]] std::wstring ownDrive() const {
        return {static_cast<wchar_t>(folder_.path()[0] | 0x20), L':'};
    }
    void focus(int id) const {
        SetForegroundWindow(dialog_.window());
        SetFocus(control(id));
        ASSERT_EQ(GetFocus(), control(id));
    }
};

TEST_F(FileBrowserTest, ShowsAFolderItsFilesAndItsDrive) {
    makeFile(L"a.hdr");
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(folder(), folder_.path());
    EXPECT_EQ(files(), Rows{L"a.hdr"});
    EXPECT_EQ(drive(), ownDrive());
}

TEST_F(FileBrowserTest, OpensAFolderOnADoubleClickAndTheFilesFollow) {
    makeFolder(L"inner");
    makeFile(L"inner\\a.hdr");
    ASSERT_TRUE(open(folder_.path()));
    doubleClick(IDC_DIR1, L"inner");
    EXPECT_EQ(folder(), folder_ / L"inner");
    EXPECT_EQ(files(), Rows{L"a.hdr"});
}

TEST_F(FileBrowserTest, SelectsAFolderOnAClickWithoutOpeningIt) {
    makeFolder(L"inner");
    ASSERT_TRUE(open(folder_.path()));
    click(IDC_DIR1, L"inner");
    EXPECT_EQ(selected(IDC_DIR1), L"inner");
    EXPECT_EQ(folder(), folder_.path());
}

TEST_F(FileBrowserTest, OpensTheSelectedFolderOnEnter) {
    makeFolder(L"inner");
    ASSERT_TRUE(open(folder_.path()));
    select(IDC_DIR1, L"inner");
    focus(IDC_DIR1);
    EXPECT_TRUE(browser_.handleEnter());
    EXPECT_EQ(folder(), folder_ / L"inner");
}

TEST_F(FileBrowserTest, GoesToTheRootOnADoubleClickOnItsRow) {
    ASSERT_TRUE(open(folder_.path()));
    send(IDC_DIR1, LB_SETTOPINDEX, 0);
    doubleClick(IDC_DIR1, ownRoot());
    EXPECT_EQ(folder(), ownRoot());
    EXPECT_EQ(rows(IDC_DIR1).front(), ownRoot());
}

TEST_F(FileBrowserTest, GoesUpOneFolderByItsButtonAndByBackspaceInTheListOfFolders) {
    makeFolder(L"inner");
    makeFolder(L"inner\\more");
    makeFile(L"a.hdr");
    ASSERT_TRUE(open(folder_ / L"inner\\more"));
    goUp();
    EXPECT_EQ(folder(), folder_ / L"inner");
    press(IDC_DIR1, VK_BACK);
    EXPECT_EQ(folder(), folder_.path());
    EXPECT_EQ(files(), Rows{L"a.hdr"});
}

TEST_F(FileBrowserTest, GoesUpFromAFolderUnderTheRootToTheRoot) {
    ASSERT_TRUE(open(folder_.path().substr(0, folder_.path().find(L'\\', 3))));
    goUp();
    EXPECT_EQ(folder(), ownRoot());
    goUp();
    EXPECT_EQ(folder(), ownRoot());
}

TEST_F(FileBrowserTest, StaysInAFolderOfOneLetterUnderTheRoot) {
    std::wstring path = ownRoot() + L"Z";
    while (host::exists(path)) --path.back();
    ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    EXPECT_TRUE(open(path));
    goUp();
    EXPECT_EQ(folder(), path);
    RemoveDirectoryW(path.c_str());
}

TEST_F(FileBrowserTest, TellsOfAFileThatIsSelectedByMouseAndByKeyboard) {
    makeFile(L"a.hdr");
    makeFile(L"b.hdr");
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(file(), L"");
    click(IDC_FILE1, L"a.hdr");
    EXPECT_EQ(owner_.chosen, 1);
    EXPECT_EQ(file(), L"a.hdr");
    press(IDC_FILE1, VK_DOWN);
    EXPECT_EQ(owner_.chosen, 2);
    EXPECT_EQ(file(), L"b.hdr");
    EXPECT_EQ(owner_.opened, 0);
}

TEST_F(FileBrowserTest, TellsOfAFileThatIsOpenedByADoubleClickAndByEnter) {
    makeFile(L"a.hdr");
    ASSERT_TRUE(open(folder_.path()));
    doubleClick(IDC_FILE1, L"a.hdr");
    EXPECT_EQ(owner_.opened, 1);
    focus(IDC_FILE1);
    EXPECT_TRUE(browser_.handleEnter());
    EXPECT_EQ(owner_.opened, 2);
}

TEST_F(FileBrowserTest, LeavesEnterToTheDialogWhereItMeansNothing) {
    makeFile(L"a.hdr");
    ASSERT_TRUE(open(folder_.path()));
    focus(IDC_FILE1);
    EXPECT_FALSE(browser_.handleEnter());
    focus(IDC_COMMAND3);
    EXPECT_FALSE(browser_.handleEnter());
    EXPECT_EQ(owner_.opened, 0);
}

TEST_F(FileBrowserTest, ShowsTheFilesOfAnotherTypeAndTellsOfTheUsersChoiceOnly) {
    makeFile(L"a.hdr");
    makeFile(L"b.jpg");
    ASSERT_TRUE(open(folder_.path()));
    EXPECT_EQ(browser_.type(), 0);
    browser_.setType(1);
    EXPECT_EQ(owner_.types, 0);
    EXPECT_EQ(files(), Rows{L"b.jpg"});
    chooseType(2);
    EXPECT_EQ(owner_.types, 1);
    EXPECT_EQ(browser_.type(), 2);
    EXPECT_EQ(files(), (Rows{L"a.hdr", L"b.jpg"}));
}

TEST_F(FileBrowserTest, FollowsTheDriveToItsRoot) {
    const OtherDrive other(folder_.path()[0]);
    dialog_.attach();
    ASSERT_TRUE(open(folder_.path()));
    chooseDrive(other.letter());
    EXPECT_EQ(folder(), other.root());
    EXPECT_EQ(rows(IDC_DIR1).front(), other.root());
}

TEST_F(FileBrowserTest, FollowsTheArrowKeysInTheClosedListOfDrives) {
    const OtherDrive other(folder_.path()[0]);
    dialog_.attach();
    ASSERT_TRUE(open(folder_.path()));
    const bool below = rowOfDrive(other.letter()) > rowOfDrive(folder_.path()[0]);
    // Drives that are not ready may stand between the two.
    const MessageBoxWatcher watcher;
    press(IDC_DRIVE1, below ? VK_END : VK_HOME);
    EXPECT_NE(folder(), folder_.path());
    EXPECT_EQ(folder().size(), 3U);
}

TEST_F(FileBrowserTest, WaitsForTheListOfDrivesToCloseBeforeItFollows) {
    const OtherDrive other(folder_.path()[0]);
    dialog_.attach();
    ASSERT_TRUE(open(folder_.path()));
    send(IDC_DRIVE1, CB_SHOWDROPDOWN, TRUE);
    chooseDrive(other.letter());
    EXPECT_EQ(folder(), folder_.path());
    send(IDC_DRIVE1, CB_SHOWDROPDOWN, FALSE);
    EXPECT_EQ(folder(), other.root());
}

TEST_F(FileBrowserTest, StaysInItsFolderWhenTheSameDriveIsChosenAgain) {
    ASSERT_TRUE(open(folder_.path()));
    chooseDrive(folder_.path()[0]);
    EXPECT_EQ(folder(), folder_.path());
}

TEST_F(FileBrowserTest, TellsThatADriveIsNotReadyAndComesBackToTheLastOneThatWorked) {
    const EmptyDrive empty;
    dialog_.attach();
    ASSERT_TRUE(open(folder_.path()));
    ASSERT_NE(rowOfDrive(empty.letter()), CB_ERR);
    MessageBoxWatcher watcher;
    chooseDrive(empty.letter());
    const auto boxes = watcher.boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].text, L"Drive not ready");
    EXPECT_EQ(boxes[0].title, L"Errore");
    EXPECT_TRUE(boxes[0].onlyOk);
    EXPECT_EQ(drive(), ownDrive());
    EXPECT_EQ(folder(), ownRoot());
}

TEST_F(FileBrowserTest, ComesBackFromADriveNotReadyToTheOneChosenLast) {
    const EmptyDrive empty;
    const OtherDrive other(folder_.path()[0]);
    dialog_.attach();
    ASSERT_TRUE(open(folder_.path()));
    chooseDrive(other.letter());
    MessageBoxWatcher watcher;
    chooseDrive(empty.letter());
    EXPECT_EQ(watcher.boxes().size(), 1U);
    EXPECT_EQ(folder(), other.root());
    EXPECT_EQ(send(IDC_DRIVE1, CB_GETCURSEL), rowOfDrive(other.letter()));
}

TEST_F(FileBrowserTest, KeepsItsListsForAFolderThatCannotBeShown) {
    makeFile(L"a.hdr");
    ASSERT_TRUE(open(folder_.path()));
    const Rows folders = rows(IDC_DIR1);
    for (const std::wstring& path :
         {folder_ / L"missing", folder_ / L"a.hdr", std::wstring(L"\\\\server\\share"),
          std::wstring(L"\\\\?\\") + folder_.path(), std::wstring(L"relative"), std::wstring(L"C:relative"),
          std::wstring(L"C:\\NUL"), std::wstring(L"C:\\in<valid"), std::wstring()}) {
        EXPECT_FALSE(open(path)) << path;
    }
    EXPECT_EQ(folder(), folder_.path());
    EXPECT_EQ(rows(IDC_DIR1), folders);
    EXPECT_EQ(files(), Rows{L"a.hdr"});
}

TEST_F(FileBrowserTest, BearsThatTheFolderShownIsRemoved) {
    makeFolder(L"outer");
    makeFolder(L"outer\\inner");
    ASSERT_TRUE(open(folder_ / L"outer"));
    ASSERT_TRUE(RemoveDirectoryW((folder_ / L"outer\\inner").c_str()));
    doubleClick(IDC_DIR1, L"inner");
    EXPECT_EQ(folder(), folder_ / L"outer");
    ASSERT_TRUE(RemoveDirectoryW((folder_ / L"outer").c_str()));
    chooseType(2);
    EXPECT_EQ(files(), Rows{});
    goUp();
    EXPECT_EQ(folder(), folder_.path());
}

TEST_F(FileBrowserTest, TakesAFolderWithABackslashAtItsEndADriveAloneAndOneWithOtherSlashes) {
    ASSERT_TRUE(open(folder_.path() + L"\\"));
    EXPECT_EQ(folder(), folder_.path());
    ASSERT_TRUE(open(ownRoot().substr(0, 2)));
    EXPECT_EQ(folder(), ownRoot());
    makeFolder(L"inner");
    ASSERT_TRUE(open(folder_.path() + L"/inner/../inner"));
    EXPECT_EQ(folder(), folder_ / L"inner");
}

TEST_F(FileBrowserTest, ListsFoldersBeyondTheLengthThatPathsUsuallyHave) {
    std::wstring path = folder_.path();
    for (int level = 0; level < 4; ++level) {
        path += L"\\" + std::wstring(90, static_cast<wchar_t>(L'a' + level));
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr));
    }
    host::writeBytes(L"\\\\?\\" + path + L"\\deep.hdr", {});
    ASSERT_TRUE(open(path));
    EXPECT_EQ(folder(), path);
    EXPECT_EQ(files(), Rows{L"deep.hdr"});
    goUp();
    EXPECT_EQ(foldersInside(), Rows{std::wstring(90, L'd')});
}

TEST_F(FileBrowserTest, KeepsNoPicturesOrDeviceContexts) {
    const auto useOnce = [] {
        CountingOwner owner;
        vrx::FileBrowser browser(owner);
        const BrowserDialog dialog(browser);
        EXPECT_TRUE(browser.setFolder(u"C:\\"));
        UpdateWindow(dialog.window());
        static_cast<void>(vrx::doEvents());
    };
    useOnce();
    const std::size_t before = host::freeGdiHandles();
    for (int i = 0; i < 3; ++i) useOnce();
    EXPECT_GE(host::freeGdiHandles(), before);
}

}  // namespace
