// The dialog of CVrxImage.Save.

#include <gtest/gtest.h>

#include "VrxCommon.h"
#include "failure.h"
#include "foreign_reader.h"
#include "host.h"
#include "rgbe_picture.h"
#include "save_dialog_test.h"

using host::FileBytes;
using Box = host::MessageBox;

namespace {

enum Type { kJpg, kBmp };

class SaveImage : public SaveDialogTest {
  protected:
    SaveImage() : SaveDialogTest(L"Save Picture", L"\\ImageSaver") {}

    void SetUp() override {
        SaveDialogTest::SetUp();
        setRoot(key_);
    }
    void setRoot(const std::wstring& root) const {
        EXPECT_EQ(image_->put_REGKEY(vrx::Bstr(SysAllocString(root.c_str())).get()), S_OK);
    }
    [[nodiscard]] HRESULT save() const override {
        return image_->Save(vrx::Bstr(SysAllocString(input_.c_str())).get());
    }
    [[nodiscard]] FileBytes bytes(const std::wstring& name) const { return host::readBytes(folder_ / name); }
    /// The image becomes this file's picture, by way of what Load_BMP leaves.
    void hold(const std::wstring& file) const {
        vrx::SafeArray pixels;
        BmpInfo info{};
        SAFEARRAY* array = nullptr;
        EXPECT_EQ(image_->Load_BMP(vrx::Bstr(SysAllocString(file.c_str())).get()), S_OK);
        EXPECT_EQ(image_->Get_BMP(&array, &info), S_OK);
        EXPECT_EQ(image_->Set_BMP(&array, &info), S_OK);
        pixels.reset(array);
    }

    const vrx::ComPtr<_CVrxImage> image_ = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
    const host::ThrowawayFolder pictures_;
    std::wstring input_ =
        pictures_.write(L"owner.bmp", host::bmpFile(40, 30, host::RgbePicture(40, 30).bitmap(0, 1)));
};

TEST_F(SaveImage, BmpSavingNeverReEncodesTheFileWrittenIsByteForByteTheOwnersBmpFile) {
    // Bytes behind the picture that no encoder would write.
    FileBytes odd = host::readBytes(input_);
    odd.insert(odd.end(), {'o', 'd', 'd'});
    input_ = pictures_.write(L"odd.bmp", odd);
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kBmp); });
    EXPECT_EQ(bytes(L"pic.bmp"), odd);
    EXPECT_EQ(host::readBytes(input_), odd);
}

TEST_F(SaveImage, ANameTypedWithItsExtensionGetsASecondOne) {
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"a.jpg", kJpg); });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"a.jpg.jpg"});
}

TEST_F(SaveImage, WritesAJpegOfThePicture) {
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kJpg); });
    const vrx::test::Picture read = vrx::test::readByAnother(bytes(L"pic.jpg"));
    EXPECT_EQ(read.width, 40u);
    EXPECT_EQ(read.height, 30u);
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.jpg"});
}

TEST_F(SaveImage, WritesAJpegIntoAFolderWhoseNameTheCodePageHasOnlyAlmost) {
    // In a western code page the nearest letter to the stroked l is the plain one.
    for (const wchar_t* name : {L"\u0142dir", L"ldir"}) CreateDirectoryW((folder_ / name).c_str(), nullptr);
    remember(L"Path", folder_ / L"\u0142dir");
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kJpg); });
    EXPECT_EQ(vrx::test::readByAnother(bytes(L"\u0142dir\\pic.jpg")).width, 40u);
}

TEST_F(SaveImage, IsTheImageItselfByWayOfItsTemporaryFileWhenNoFileIsGiven) {
    const std::wstring temporary = host::programFolder() + L"\\ImageTemp.bmp";
    hold(input_);
    DeleteFileW(temporary.c_str());
    const FileBytes pixels = pixelsIn(host::readBytes(input_));
    input_.clear();
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        EXPECT_EQ(pixelsIn(host::readBytes(temporary)), pixels);
        dialog.saveAs(L"pic", kBmp);
    });
    EXPECT_EQ(bytes(L"pic.bmp"), host::readBytes(temporary));
    DeleteFileW(temporary.c_str());
}

TEST_F(SaveImage, OfAnImageWithoutPixelsSavesOneBlackPixel) {
    input_.clear();
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kBmp); });
    EXPECT_EQ(bytes(L"pic.bmp").size(), 58u);
    EXPECT_EQ(pixelsIn(bytes(L"pic.bmp")), FileBytes({0, 0, 0, 0}));
    DeleteFileW((host::programFolder() + L"\\ImageTemp.bmp").c_str());
}

TEST_F(SaveImage, OnAFirstRunShowsTheHostsFolderTypeZeroAndQuality85) {
    const host::RegistryFolder nothingStored;
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_EQ(dialog.rows(IDC_COMBO1), (std::vector<std::wstring>{L"*.JPG", L"*.BMP"}));
        EXPECT_EQ(dialog.row(IDC_COMBO1), kJpg);
        EXPECT_EQ(dialog.text(IDC_LABEL5), L"85");
        EXPECT_EQ(dialog.position(IDC_SLIDER1), 17);
        EXPECT_TRUE(dialog.isEnabled(IDC_SLIDER1));
    });
    EXPECT_EQ(remembered(L"Path"), host::programFolder());
    EXPECT_EQ(remembered(L"Type"), L"0");
    EXPECT_EQ(remembered(L"JPGDetail"), L"85");
}

TEST_F(SaveImage, RemembersItsValuesForTheNextTime) {
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.move(IDC_SLIDER1, 4);
        dialog.choose(IDC_COMBO1, kBmp);
        EXPECT_FALSE(dialog.isEnabled(IDC_SLIDER1));
    });
    EXPECT_EQ(remembered(L"Path"), folder_.path());
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_EQ(dialog.row(IDC_COMBO1), kBmp);
        EXPECT_EQ(dialog.position(IDC_SLIDER1), 4);
        EXPECT_FALSE(dialog.isEnabled(IDC_SLIDER1));
    });
    EXPECT_EQ(remembered(L"JPGDetail"), L"20");
}

TEST_F(SaveImage, AnOwnerWhoseRegkeyIsEmptyStillStoresItsValuesUnderTheBareSuffix) {
    constexpr wchar_t kBareKey[] = L"ImageSaver";
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kBareKey);
    setRoot(L"");
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.choose(IDC_COMBO1, kBmp); });
    EXPECT_EQ(host::registryText(HKEY_LOCAL_MACHINE, kBareKey, L"Type"), L"1");
    EXPECT_EQ(host::registryText(HKEY_LOCAL_MACHINE, kBareKey, L"JPGDetail"), L"85");
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kBareKey);
}

TEST_F(SaveImage, AsksForANameWhenThereIsNone) {
    const Box box = boxDuring([](const OpenSaveDialog& dialog) {
        dialog.press(IDC_COMMAND1);
        EXPECT_TRUE(dialog.isOpen());
    });
    EXPECT_EQ(box.text, L"Insert the File Name");
    EXPECT_EQ(box.title, L"Save Picture");
    EXPECT_TRUE(box.exclamation);
}

TEST_F(SaveImage, AsksBeforeItReplacesAFile) {
    const std::wstring file = folder_.write(L"pic.bmp", {1, 2, 3});
    Box box = boxDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kBmp); }, IDNO);
    EXPECT_EQ(box.text, file + L"\rFile already exist.\r\r Replace the File?");
    EXPECT_EQ(box.title, L"Save Picture");
    EXPECT_TRUE(box.yesNo);
    EXPECT_EQ(bytes(L"pic.bmp"), (FileBytes{1, 2, 3}));
    box = boxDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kBmp); }, IDYES);
    EXPECT_EQ(bytes(L"pic.bmp"), host::readBytes(input_));
}

TEST_F(SaveImage, TellsThatAFileCannotBeCopiedOntoItself) {
    input_ = folder_.write(L"same.bmp", host::readBytes(input_));
    const FileBytes before = host::readBytes(input_);
    expectAborted(L"same", kBmp, L"Permission denied");
    EXPECT_EQ(host::readBytes(input_), before);
}

TEST_F(SaveImage, TellsThatTheOwnersFileIsGoneOrNoPicture) {
    input_ = pictures_ / L"missing.bmp";
    expectAborted(L"pic", kBmp, L"File not found");
    expectAborted(L"pic", kJpg, L"File not found");
    input_ = pictures_.write(L"text.bmp", {'n', 'o', 'n', 'e'});
    expectAborted(L"pic", kJpg, L"Invalid picture");
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SaveImage, TellsThatAJpegCannotBeWrittenAndCloses) {
    remember(L"JPGDetail", L"0");
    const std::vector<Box> boxes = during([](const OpenSaveDialog& dialog) {
        dialog.saveAs(L"pic", kJpg);
        EXPECT_TRUE(dialog.closes());
    });
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text, L"Failed to save to JPG");
    EXPECT_EQ(boxes[1].text, L"Failed to save the picture to the file: '" + (folder_ / L"pic.jpg") + L"'");
    EXPECT_TRUE(boxes[1].exclamation);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SaveImage, EmptiesTheClipboard) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    SetClipboardData(CF_TEXT, GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 4));
    CloseClipboard();
    quietlyDuring([](const OpenSaveDialog&) { EXPECT_FALSE(IsClipboardFormatAvailable(CF_TEXT)); });
}

TEST_F(SaveImage, IsReachedByTheKeyboardInTheOrderOfReading) {
    expectNamesInOrder(
        {L"Save in:", L"..", L"Folders", L"Files", L"Name:", L"Type:", L"JPG Detail:", L"Save", L"Cancel"});
}

TEST_F(SaveImage, LeavesNothingBehindAfter200Openings) { expectNothingLeftAfterOpenings(); }

}  // namespace
