// The dialog of CVrxHDR.Save: what it remembers, writes and tells.

#include <gtest/gtest.h>

#include "com/win_resource.h"
#include "common/file_io.h"
#include "foreign_reader.h"
#include "save_hdr_fixture.h"

using Box = host::MessageBox;
using host::FileBytes;

namespace {

TEST_F(SaveHdr, TypingPicHdrWithTypeHdrSavesPicHdrHdr) {
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic.hdr", kHdr); });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.hdr.hdr"});
}

TEST_F(SaveHdr, SavingIntoTheRootOfDriveCGivesTheNameWithOneBackslash) {
    remember(L"Path", L"C:\\");
    const std::wstring file = L"C:\\vrx_save_test.hdr";
    DeleteFileW(file.c_str());
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"vrx_save_test", kHdr); });
    EXPECT_TRUE(host::exists(file));
    const Box box =
        boxDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"vrx_save_test", kHdr); }, IDNO);
    EXPECT_EQ(box.text.substr(0, box.text.find(L'\r')), file);
    DeleteFileW(file.c_str());
}

TEST_F(SaveHdr, WithBmpOrHdrSelectedTheJpegControlsAreDisabledButTheStoredQualityIsStillWrittenAtUnload) {
    remember(L"JPGDetail", L"40");
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        for (const int type : {kHdr, kJpg, kBmp}) {
            dialog.choose(IDC_COMBO1, type);
            for (const int id : {IDC_LABEL4, IDC_LABEL5, IDC_LABEL6, IDC_LABEL7, IDC_SLIDER1})
                EXPECT_EQ(dialog.isEnabled(id), type == kJpg) << id;
        }
        remember(L"JPGDetail", L"1");
    });
    EXPECT_EQ(remembered(L"JPGDetail"), L"40");
    EXPECT_EQ(remembered(L"Type"), L"2");
}

TEST_F(SaveHdr, AQualityOf87StoredInTheSettingsShowsTheSliderAt17AndIsWrittenBackAs87UnlessTheSliderMoves) {
    remember(L"JPGDetail", L"87");
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.choose(IDC_COMBO1, kJpg);
        EXPECT_EQ(dialog.position(IDC_SLIDER1), 17);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"87");
        dialog.notify(IDC_SLIDER1, TB_ENDTRACK);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"87");
    });
    EXPECT_EQ(remembered(L"JPGDetail"), L"87");
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.move(IDC_SLIDER1, 18);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"90");
        dialog.move(IDC_SLIDER1, 17, TB_ENDTRACK);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"85");
    });
    EXPECT_EQ(remembered(L"JPGDetail"), L"85");
}

TEST_F(SaveHdr, OnAFirstRunShowsTheHostsFolderTypeZeroAndQuality85) {
    const host::RegistryFolder nothingStored;
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_EQ(dialog.row(IDC_COMBO1), kHdr);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"85");
        EXPECT_EQ(dialog.position(IDC_SLIDER1), 17);
    });
    EXPECT_EQ(remembered(L"Path"), host::programFolder());
    EXPECT_EQ(remembered(L"Type"), L"0");
    EXPECT_EQ(remembered(L"JPGDetail"), L"85");
}

TEST_F(SaveHdr, RemembersItsValuesForTheNextTimeApartFromThoseOfTheImageDialog) {
    const std::wstring inner = folder_ / L"inner";
    ASSERT_TRUE(CreateDirectoryW(inner.c_str(), nullptr));
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        dialog.choose(IDC_COMBO1, kJpg);
        dialog.move(IDC_SLIDER1, 4);
        dialog.selectFolder(L"inner");
        SendMessageW(dialog.window(), WM_COMMAND, MAKEWPARAM(IDC_DIR1, LBN_DBLCLK),
                     reinterpret_cast<LPARAM>(dialog.control(IDC_DIR1)));
    });
    EXPECT_EQ(remembered(L"Path"), inner);
    EXPECT_EQ(host::registryText(HKEY_LOCAL_MACHINE, key_ + L"\\ImageSaver", L"Type"), L"(none)");
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_EQ(dialog.row(IDC_COMBO1), kJpg);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"20");
        EXPECT_TRUE(dialog.isEnabled(IDC_SLIDER1));
        dialog.saveAs(L"pic", kHdr);
    });
    EXPECT_TRUE(host::exists(inner + L"\\pic.hdr"));
}

TEST_F(SaveHdr, OpensOnTheHostsFolderWhenTheStoredOneIsGone) {
    remember(L"Path", folder_ / L"gone");
    remember(L"Type", L"1");
    remember(L"JPGDetail", L"none");
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_EQ(dialog.row(IDC_COMBO1), kJpg);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"85");
    });
    EXPECT_EQ(remembered(L"Path"), host::programFolder());
}

TEST_F(SaveHdr, WritesTheFileOfSaveHdr) {
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kHdr); });
    EXPECT_EQ(bytes(L"pic.hdr"), radianceFile());
}

TEST_F(SaveHdr, WritesTheBitmapOfConvertHdrToBmpWithTheExposureAndGammaOfTheSliders) {
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.move(IDC_SLIDER2, 155);
        dialog.move(IDC_SLIDER3, 20);
        dialog.saveAs(L"pic", kBmp);
    });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.bmp"});
    EXPECT_EQ(bytes(L"pic.bmp"), bitmapFile());
    EXPECT_EQ(pixelsIn(bytes(L"pic.bmp")), picture_.bitmap(15.5F, 1.2F));
}

TEST_F(SaveHdr, LeavesTheTemporaryPictureInTheHostsFolder) {
    const std::wstring temporary = host::programFolder() + L"\\temp.BMP";
    host::writeBytes(temporary, {1, 2, 3});
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kJpg); });
    EXPECT_EQ(host::readBytes(temporary), bitmapFile());
    DeleteFileW(temporary.c_str());
}

TEST_F(SaveHdr, WritesAJpegOfThePicturesSize) {
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kJpg); });
    const vrx::test::Picture read = vrx::test::readByAnother(bytes(L"pic.jpg"));
    EXPECT_EQ(read.width, 40u);
    EXPECT_EQ(read.height, 30u);
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.jpg"});
}

TEST_F(SaveHdr, WritesASmallerJpegAtALowerQuality) {
    EXPECT_EQ(hdr_.set(darkPicture(200, 200)), S_OK);
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"fine", kJpg); });
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.move(IDC_SLIDER1, 2);
        dialog.saveAs(L"coarse", kJpg);
    });
    EXPECT_LT(bytes(L"coarse.jpg").size() * 2, bytes(L"fine.jpg").size());
}

TEST_F(SaveHdr, GivesANameOutsideTheCodePageToAJpeg) {
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"\u5929", kJpg); });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"\u5929.jpg"});
}

TEST_F(SaveHdr, KeepsTheTemporaryPictureElsewhereOnlyWhereTheHostsFolderTakesNoFiles) {
    EXPECT_TRUE(vrx::takesFiles({folder_.path().begin(), folder_.path().end()}));
    EXPECT_TRUE(folder_.names().empty());
    // Takes no files from anybody.
    EXPECT_FALSE(vrx::takesFiles(u"Z:\\sys"));
}

TEST_F(SaveHdr, TellsWhatIsInTheWayOfTheTemporaryPicture) {
    const std::wstring inTheWay = host::programFolder() + L"\\temp.BMP";
    DeleteFileW(inTheWay.c_str());
    ASSERT_TRUE(CreateDirectoryW(inTheWay.c_str(), nullptr));
    expectAborted(L"pic", kBmp, L"Path/File access error");
    RemoveDirectoryW(inTheWay.c_str());
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SaveHdr, SavesAPictureUnderTheNameOfTheTemporaryOne) {
    remember(L"Path", host::programFolder());
    const std::wstring file = host::programFolder() + L"\\temp.bmp";
    DeleteFileW(file.c_str());
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"temp", kBmp); });
    EXPECT_EQ(host::readBytes(file), bitmapFile());
    DeleteFileW(file.c_str());
}

TEST_F(SaveHdr, AsksForANameWhenThereIsNone) {
    const Box box = boxDuring([](const OpenSaveDialog& dialog) {
        dialog.press(IDC_COMMAND1);
        EXPECT_TRUE(dialog.isOpen());
    });
    EXPECT_EQ(box.text, L"Insert the File Name");
    EXPECT_EQ(box.title, L"Save Picture");
    EXPECT_TRUE(box.exclamation);
    EXPECT_TRUE(box.onlyOk);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SaveHdr, SavesOnEnterInTheName) {
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.setName(L"pic");
        dialog.enter();
        EXPECT_TRUE(dialog.closes());
    });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.hdr"});
}

TEST_F(SaveHdr, DoesNothingOnEnterInANameOfBlanksButTriesItOnTheButton) {
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        dialog.enter();
        dialog.setName(L"  ");
        dialog.enter();
        EXPECT_TRUE(dialog.isOpen());
        EXPECT_TRUE(folder_.names().empty());
        dialog.press(IDC_COMMAND1);
        EXPECT_TRUE(dialog.closes());
    });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"  .hdr"});
}

TEST_F(SaveHdr, AsksBeforeItReplacesAFile) {
    const std::wstring file = folder_.write(L"pic.hdr", {1, 2, 3});
    Box box = boxDuring(
        [](const OpenSaveDialog& dialog) {
            dialog.saveAs(L"pic", kHdr);
            EXPECT_TRUE(dialog.isOpen());
        },
        IDNO);
    EXPECT_EQ(box.text, file + L"\rFile already exist.\r\r Replace the File?");
    EXPECT_EQ(box.title, L"Save Picture");
    EXPECT_TRUE(box.exclamation);
    EXPECT_TRUE(box.yesNo);
    EXPECT_EQ(bytes(L"pic.hdr"), (FileBytes{1, 2, 3}));

    box = boxDuring(
        [](const OpenSaveDialog& dialog) {
            dialog.saveAs(L"pic", kHdr);
            EXPECT_TRUE(dialog.closes());
        },
        IDYES);
    EXPECT_TRUE(box.yesNo);
    EXPECT_EQ(bytes(L"pic.hdr"), radianceFile());
}

TEST_F(SaveHdr, TellsWhatDoesNotWorkAndStaysOpen) {
    ASSERT_TRUE(CreateDirectoryW((folder_ / L"folder.bmp").c_str(), nullptr));
    folder_.write(L"locked.bmp", {1});
    SetFileAttributesW((folder_ / L"locked.bmp").c_str(), FILE_ATTRIBUTE_READONLY);
    const std::vector<std::wstring> before = folder_.names();
    expectAborted(L"folder", kBmp, L"Path/File access error");
    expectAborted(L"locked", kBmp, L"Path/File access error");
    expectAborted(L"no*", kBmp, L"Bad file name or number");
    expectAborted(L"f*", kBmp, L"Bad file name or number");
    expectAborted(L"part:of", kJpg, L"Bad file name or number");
    expectAborted(L"what?", kHdr, L"Bad file name or number");
    expectAborted(L"none\\pic", kBmp, L"Path not found");
    EXPECT_EQ(folder_.names(), before);
    EXPECT_EQ(bytes(L"locked.bmp"), (FileBytes{1}));
}

TEST_F(SaveHdr, TellsThatAnHdrFileCannotBeWrittenAfterTheWritersOwnMessage) {
    ASSERT_TRUE(CreateDirectoryW((folder_ / L"folder.hdr").c_str(), nullptr));
    expectAborted(L"folder", kHdr, L"File Error!");
    const std::vector<Box> boxes =
        during([](const OpenSaveDialog& dialog) { dialog.saveAs(L"folder", kHdr); });
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text.find(L"Cannot write " + (folder_ / L"folder.hdr")), 0u);
    EXPECT_TRUE(boxes[0].exclamation);
}

TEST_F(SaveHdr, TellsThatANameIsTooLong) {
    const std::wstring name(300, L'n');
    const std::vector<Box> boxes = during([&](const OpenSaveDialog& dialog) { dialog.saveAs(name, kBmp); });
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text.find(L"Save aborted : "), 0u);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SaveHdr, TellsThatTheFolderHasGoneMeanwhile) {
    const std::wstring inner = folder_ / L"inner";
    ASSERT_TRUE(CreateDirectoryW(inner.c_str(), nullptr));
    remember(L"Path", inner);
    expectAborted(L"pic", kBmp, L"Path not found", [&] { RemoveDirectoryW(inner.c_str()); });
    EXPECT_EQ(remembered(L"Path"), inner);
}

TEST_F(SaveHdr, TellsThatAJpegCannotBeWrittenAndCloses) {
    // A quality that the codec does not know.
    remember(L"JPGDetail", L"0");
    folder_.write(L"pic.jpg", {1, 2, 3});
    const std::vector<Box> boxes = during(
        [](const OpenSaveDialog& dialog) {
            dialog.saveAs(L"pic", kJpg);
            EXPECT_TRUE(dialog.closes());
        },
        IDYES);
    ASSERT_EQ(boxes.size(), 3u);
    EXPECT_TRUE(boxes[0].yesNo);
    EXPECT_EQ(boxes[1].text, L"Failed to save to JPG");
    EXPECT_EQ(boxes[2].text, L"Failed to save the picture to the file: '" + (folder_ / L"pic.jpg") + L"'");
    EXPECT_TRUE(boxes[2].exclamation);
    EXPECT_TRUE(boxes[2].onlyOk);
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.jpg"});
    EXPECT_EQ(bytes(L"pic.jpg"), (FileBytes{1, 2, 3}));
}

TEST_F(SaveHdr, AJpegThatCannotBeCopiedToItsPlaceTellsTheRealReason) {
    ASSERT_TRUE(CreateDirectoryW((folder_ / L"folder.jpg").c_str(), nullptr));
    folder_.write(L"locked.jpg", {1});
    folder_.write(L"open.jpg", {2});
    SetFileAttributesW((folder_ / L"locked.jpg").c_str(), FILE_ATTRIBUTE_READONLY);
    const std::vector<std::wstring> before = folder_.names();
    expectAborted(L"folder", kJpg, L"Path/File access error");
    expectAborted(L"locked", kJpg, L"Path/File access error");
    expectAborted(L"none\\pic", kJpg, L"Path not found");
    {
        const vrx::KernelHandle user =
            vrx::validHandle(CreateFileW((folder_ / L"open.jpg").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                         nullptr, OPEN_EXISTING, 0, nullptr));
        expectAborted(L"open", kJpg, L"Permission denied");
    }
    EXPECT_EQ(folder_.names(), before);
    EXPECT_EQ(bytes(L"locked.jpg"), (FileBytes{1}));
    EXPECT_EQ(bytes(L"open.jpg"), (FileBytes{2}));
}

TEST_F(SaveHdr, ListsTheFilesOfTheChosenType) {
    for (const wchar_t* name : {L"a.hdr", L"b.jpg", L"c.bmp"}) folder_.write(name, {});
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_EQ(dialog.rows(IDC_COMBO1), (std::vector<std::wstring>{L"*.HDR", L"*.JPG", L"*.BMP"}));
        EXPECT_EQ(dialog.files(), std::vector<std::wstring>{L"a.hdr"});
        dialog.choose(IDC_COMBO1, kBmp);
        EXPECT_EQ(dialog.files(), std::vector<std::wstring>{L"c.bmp"});
    });
}

}  // namespace
