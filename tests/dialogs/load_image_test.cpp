// The dialog of CVrxImage.Load: choosing, cancelling, the preview, and what it remembers.

#include "hdr_host.h"
#include "leaks.h"
#include "load_dialog_driver.h"
#include "mouse.h"

using host::choose;
using host::eventually;
using host::eventuallyShows;
using host::FileBytes;
using host::item;
using host::press;
using host::textOf;

namespace {

constexpr wchar_t kCaption[] = L"Load Picture";
constexpr wchar_t kViewer[] = L"Viewer";

constexpr COLORREF kRed = RGB(200, 30, 40);
constexpr COLORREF kGreen = RGB(10, 180, 60);

FileBytes colorOf(COLORREF color) { return {GetBValue(color), GetGValue(color), GetRValue(color)}; }

class LoadImageFile : public host::LoadDialogTest {
  protected:
    const vrx::ComPtr<_CVrxImage> image_ = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
    const std::wstring red_ = folder_.write(L"red.bmp", host::bmpFile(40, 20, kRed));
    const std::wstring green_ = folder_.write(L"green.bmp", host::bmpFile(20, 40, kGreen));

    void SetUp() override {
        LoadDialogTest::SetUp();
        store(L"\\ImageLoader", L"Type", L"1");
        ASSERT_EQ(image_->put_REGKEY(vrx::Bstr(SysAllocString(kKey)).get()), S_OK);
    }
    [[nodiscard]] std::wstring loadFrom(const std::wstring& suggestion, std::function<void(HWND)> act) {
        return LoadDialogTest::load(image_, kCaption, suggestion, std::move(act));
    }
    /// In the folder of the pictures, which are of the type chosen last.
    [[nodiscard]] std::wstring load(std::function<void(HWND)> act) {
        return loadFrom(folder_ / L"any.bmp", std::move(act));
    }
};

TEST_F(LoadImageFile, OpenGivesBackTheChosenFile) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  press(dialog, IDC_COMMAND1);
              }),
              red_);
}

TEST_F(LoadImageFile, EnterAndDoubleClickOpenTheFile) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"green.bmp");
                  host::type(dialog, IDC_FILE1, VK_RETURN);
              }),
              green_);
    EXPECT_EQ(load([&](HWND dialog) { host::doubleClick(dialog, IDC_FILE1, L"red.bmp"); }), red_);
}

TEST_F(LoadImageFile, CancelAlwaysGivesBackAnEmptyName) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kRed)));
                  press(dialog, IDC_COMMAND2);
              }),
              L"");
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  host::type(dialog, IDC_FILE1, VK_ESCAPE);
              }),
              L"");
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
              }),
              L"");
}

TEST_F(LoadImageFile, ShowsTheSelectedFileWithItsNameAndSize) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kRed)));
                  EXPECT_TRUE(eventually([&] { return textOf(dialog, IDC_LABEL7) == L"20"; }));
                  EXPECT_EQ(textOf(dialog, IDC_LABEL6), L"40");
                  EXPECT_EQ(textOf(dialog, IDC_TEXT1), L"red.bmp");
              }),
              L"");
}

TEST_F(LoadImageFile, HasFourTypesAndNoSliders) {
    EXPECT_EQ(load([&](HWND dialog) {
                  for (const wchar_t* type : {L"*.JPG", L"*.BMP", L"*.GIF", L"*.*"})
                      EXPECT_GE(SendMessageW(item(dialog, IDC_COMBO1), CB_FINDSTRINGEXACT,
                                             static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(type)),
                                0);
                  EXPECT_EQ(SendMessageW(item(dialog, IDC_COMBO1), CB_GETCOUNT, 0, 0), 4);
                  EXPECT_EQ(item(dialog, IDC_SLIDER1), nullptr);
                  EXPECT_EQ(textOf(dialog, IDC_CHECK1), L"Preview");
                  EXPECT_EQ(textOf(dialog, IDC_COMMAND1), L"Open");
                  EXPECT_EQ(textOf(dialog, IDC_COMMAND2), L"Cancel");
              }),
              L"");
}

TEST_F(LoadImageFile, WithPreviewOffOpenGivesBackWhateverNameTheLastFileClickBuilt) {
    EXPECT_EQ(load([&](HWND dialog) {
                  host::setCheck(dialog, false);
                  choose(dialog, L"red.bmp");
                  EXPECT_TRUE(eventually([&] { return textOf(dialog, IDC_TEXT1) == L"red.bmp"; }));
                  press(dialog, IDC_COMMAND3);
                  EXPECT_TRUE(eventually([&] { return host::rowOf(dialog, IDC_FILE1, L"red.bmp") < 0; }));
                  EXPECT_EQ(textOf(dialog, IDC_LABEL6), L"");
                  press(dialog, IDC_COMMAND1);
              }),
              red_);
}

TEST_F(LoadImageFile, WithPreviewOnAndAReadablePictureTheNameIsRebuiltFromTheListsAtTheMomentOfOpen) {
    const std::wstring above = folder_.path().substr(0, folder_.path().rfind(L'\\'));
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kRed)));
                  press(dialog, IDC_COMMAND3);
                  EXPECT_TRUE(eventually([&] { return host::rowOf(dialog, IDC_FILE1, L"red.bmp") < 0; }));
                  press(dialog, IDC_COMMAND1);
              }),
              above + L"\\");
}

TEST_F(LoadImageFile, AFileThatThePreviewCannotReadLeavesTheSizeLabelsUnchanged) {
    const std::wstring text = folder_.write(L"text.bmp", {'n', 'o', 'n', 'e'});
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"red.bmp");
                  EXPECT_TRUE(eventually([&] { return textOf(dialog, IDC_LABEL7) == L"20"; }));
                  choose(dialog, L"text.bmp");
                  EXPECT_TRUE(eventually([&] { return textOf(dialog, IDC_TEXT1) == L"text.bmp"; }));
                  host::settle(dialog);
                  EXPECT_EQ(textOf(dialog, IDC_LABEL6), L"40");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL7), L"20");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kRed)));
                  press(dialog, IDC_COMMAND1);
              }),
              text);
}

TEST_F(LoadImageFile, TheStoredTypeIndexSelectsTheRowOnTheNextOpening) {
    EXPECT_EQ(load([&](HWND dialog) {
                  EXPECT_EQ(host::typeOf(dialog), L"*.BMP");
                  EXPECT_GE(host::rowOf(dialog, IDC_FILE1, L"red.bmp"), 0);
                  host::pick(dialog, IDC_COMBO1, L"*.GIF");
                  EXPECT_TRUE(eventually([&] { return host::rowOf(dialog, IDC_FILE1, L"red.bmp") < 0; }));
              }),
              L"");
    EXPECT_EQ(setting(L"\\ImageLoader", L"Type"), L"2");
    EXPECT_EQ(load([&](HWND dialog) { EXPECT_EQ(host::typeOf(dialog), L"*.GIF"); }), L"");
}

TEST_F(LoadImageFile, AStoredTypeIndexBeyondTheRowsIsTheLastRow) {
    store(L"\\ImageLoader", L"Type", L"9");
    EXPECT_EQ(load([&](HWND dialog) { EXPECT_EQ(host::typeOf(dialog), L"*.*"); }), L"");
}

TEST_F(LoadImageFile, AFirstRunShowsTheHostsFolderJpegFilesAndThePreviewOn) {
    const host::RegistryFolder empty;
    EXPECT_EQ(loadFrom(L"",
                       [](HWND dialog) {
                           EXPECT_TRUE(host::isChecked(dialog));
                           EXPECT_EQ(host::typeOf(dialog), L"*.JPG");
                       }),
              L"");
    EXPECT_EQ(setting(L"\\ImageLoader", L"Path"), host::programFolder());
    EXPECT_EQ(setting(L"\\ImageLoader", L"Preview"), L"1");
    EXPECT_EQ(setting(L"\\ImageLoader", L"Type"), L"0");
}

TEST_F(LoadImageFile, RemembersFolderAndPreviewApartFromTheHdrDialog) {
    EXPECT_EQ(load([&](HWND dialog) { host::setCheck(dialog, false); }), L"");
    EXPECT_EQ(setting(L"\\ImageLoader", L"Path"), folder_.path());
    EXPECT_EQ(setting(L"\\ImageLoader", L"Preview"), L"0");

    const host::Hdr hdr;
    ASSERT_EQ(hdr->put_REGKEY(vrx::Bstr(SysAllocString(kKey)).get()), S_OK);
    EXPECT_EQ(LoadDialogTest::load(hdr, L"Load HDR Picture", L"",
                                   [](HWND dialog) { EXPECT_TRUE(host::isChecked(dialog)); }),
              L"");
    EXPECT_EQ(setting(L"\\ImageHDR", L"Path"), host::programFolder());

    EXPECT_EQ(loadFrom(L"",
                       [](HWND dialog) {
                           EXPECT_FALSE(host::isChecked(dialog));
                           EXPECT_GE(host::rowOf(dialog, IDC_FILE1, L"red.bmp"), 0);
                       }),
              L"");
}

TEST_F(LoadImageFile, OpensOnTheHostsFolderWhenTheStoredOneHasGone) {
    store(L"\\ImageLoader", L"Path", folder_ / L"gone");
    EXPECT_EQ(loadFrom(L"", [](HWND) {}), L"");
    EXPECT_EQ(setting(L"\\ImageLoader", L"Path"), host::programFolder());
}

TEST_F(LoadImageFile, AClickOnThePreviewShowsThePictureInItsOwnSize) {
    EXPECT_EQ(
        load([&](HWND dialog) {
            const DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
            const host::Pixels view = host::shownIn(item(dialog, IDC_VRXPREVIMG));
            host::click(item(dialog, IDC_VRXPREVIMG), view.width / 2, view.height / 2);
            choose(dialog, L"red.bmp");
            EXPECT_TRUE(eventuallyShows(dialog, colorOf(kRed)));
            EXPECT_EQ(host::windowOf(thread, kViewer), nullptr);

            host::click(item(dialog, IDC_VRXPREVIMG), view.width / 2, view.height / 2);
            HWND viewer = nullptr;
            EXPECT_TRUE(eventually([&] { return (viewer = host::windowOf(thread, kViewer)) != nullptr; }));
            FileBytes bits = host::bmpFile(40, 20, kRed);
            bits.erase(bits.begin(), bits.begin() + 54);
            EXPECT_TRUE(eventually([&] {
                const host::Pixels shown = host::shownIn(item(viewer, IDC_IMGPREVIEW));
                const host::Pixels middle =
                    host::partOf(shown, (shown.width - 40) / 2, (shown.height - 20) / 2, 40, 20);
                return middle == host::pixels24(40, 20, bits);
            }));
            PostMessageW(viewer, WM_CLOSE, 0, 0);
            EXPECT_TRUE(eventually([&] { return IsWindowEnabled(dialog) != FALSE; }));
        }),
        L"");
}

TEST_F(LoadImageFile, TheViewerOpenedByAClickOnThePreviewHasTheCrossPointerToo) {
    EXPECT_EQ(
        load([&](HWND dialog) {
            const DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
            choose(dialog, L"red.bmp");
            EXPECT_TRUE(eventuallyShows(dialog, colorOf(kRed)));
            const host::Pixels view = host::shownIn(item(dialog, IDC_VRXPREVIMG));
            host::click(item(dialog, IDC_VRXPREVIMG), view.width / 2, view.height / 2);
            HWND viewer = nullptr;
            EXPECT_TRUE(eventually([&] { return (viewer = host::windowOf(thread, kViewer)) != nullptr; }));
            RECT shown{};
            GetWindowRect(item(viewer, IDC_IMGPREVIEW), &shown);
            host::moveMouse({(shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2});
            EXPECT_TRUE(
                eventually([&] { return host::pointerOver(item(viewer, IDC_IMGPREVIEW)) == IDC_CROSS; }));
            PostMessageW(viewer, WM_CLOSE, 0, 0);
            EXPECT_TRUE(eventually([&] { return IsWindowEnabled(dialog) != FALSE; }));
        }),
        L"");
}

TEST_F(LoadImageFile, OpensWithTheFocusWhereAFileIsChosen) {
    EXPECT_EQ(load([](HWND dialog) {
                  EXPECT_TRUE(eventually([&] { return host::focusIn(dialog) == item(dialog, IDC_FILE1); }));
              }),
              L"");
}

TEST_F(LoadImageFile, ItsListsHaveNamesForScreenReaders) {
    EXPECT_EQ(load([](HWND dialog) {
                  EXPECT_EQ(
                      host::namesOfTabStops(dialog),
                      (std::vector<std::wstring>{L"Search in:", L"..", L"Folders", L"Files", L"Name:",
                                                 L"Type:", L"Preview", L"Preview", L"Open", L"Cancel"}));
              }),
              L"");
}

TEST_F(LoadImageFile, LeavesNothingBehindAfterTwoHundredOpenings) {
    host::expectNothingLeft([&] { EXPECT_EQ(load([](HWND) {}), L""); });
}

}  // namespace
