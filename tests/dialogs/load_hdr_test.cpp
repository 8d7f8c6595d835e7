// The dialog of CVrxHDR.Load: choosing, cancelling, the preview, and what it remembers.

#include "leaks.h"
#include "load_hdr_driver.h"

using host::choose;
using host::colorOf;
using host::eventually;
using host::eventuallyShows;
using host::item;
using host::kBlue;
using host::kOrange;
using host::LoadHdr;
using host::moveSlider;
using host::press;
using host::RgbePicture;
using host::textOf;

namespace {

constexpr wchar_t kViewer[] = L"Viewer";

TEST_F(LoadHdr, OpenGivesBackTheChosenFile) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  press(dialog, IDC_COMMAND1);
              }),
              orange_);
}

TEST_F(LoadHdr, EnterOpensTheChosenFile) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"blue.hdr");
                  host::type(dialog, IDC_FILE1, VK_RETURN);
              }),
              blue_);
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  host::type(dialog, IDC_SLIDER1, VK_RETURN);
              }),
              orange_);
}

TEST_F(LoadHdr, DoubleClickOpensTheFile) {
    EXPECT_EQ(load([&](HWND dialog) { host::doubleClick(dialog, IDC_FILE1, L"orange.hdr"); }), orange_);
}

TEST_F(LoadHdr, CancelAlwaysGivesBackAnEmptyNameEvenAfterAFileWasSelected) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange)));
                  press(dialog, IDC_COMMAND2);
              }),
              L"");
}

TEST_F(LoadHdr, EscAndTheFramesButtonCancel) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  host::type(dialog, IDC_FILE1, VK_ESCAPE);
              }),
              L"");
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
              }),
              L"");
}

TEST_F(LoadHdr, SelectingAFileInADrivesRootGivesOneBackslash) {
    constexpr wchar_t kInRoot[] = L"C:\\vrx_test_root.hdr";
    host::writeBytes(kInRoot, RgbePicture(8, 8).fill(kOrange).file());
    EXPECT_EQ(loadFrom(L"C:\\any.hdr",
                       [&](HWND dialog) {
                           choose(dialog, L"vrx_test_root.hdr");
                           press(dialog, IDC_COMMAND1);
                       }),
              kInRoot);
    DeleteFileW(kInRoot);
}

TEST_F(LoadHdr, WithPreviewOffSelectingAFileOnlyFillsText1AndTheChosenFileAndNoDecodingStarts) {
    const host::Listener listener(hdr_);
    EXPECT_EQ(load([&](HWND dialog) {
                  host::setCheck(dialog, false);
                  choose(dialog, L"orange.hdr");
                  EXPECT_TRUE(eventually([&] { return textOf(dialog, IDC_TEXT1) == L"orange.hdr"; }));
                  moveSlider(dialog, IDC_SLIDER1, 170, TB_THUMBPOSITION);
                  press(dialog, IDC_COMMAND1);
              }),
              orange_);
    EXPECT_EQ(listener.log, "");
    EXPECT_EQ(exposure(), 17);
}

TEST_F(LoadHdr, ShowsTheSelectedFileWithItsNameAndSize) {
    EXPECT_EQ(load([&](HWND dialog) {
                  EXPECT_EQ(textOf(dialog, IDC_LABEL6) + textOf(dialog, IDC_LABEL7), L"");
                  choose(dialog, L"orange.hdr");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange)));
                  EXPECT_EQ(textOf(dialog, IDC_TEXT1), L"orange.hdr");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL6), L"40");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL7), L"20");

                  RECT sized{};
                  GetWindowRect(item(dialog, IDC_PICTURE1), &sized);
                  EXPECT_EQ(sized.right - sized.left, 43);
                  EXPECT_EQ(sized.bottom - sized.top, 23);
                  EXPECT_FALSE(IsWindowVisible(item(dialog, IDC_PICTURE1)));
              }),
              L"");
}

TEST_F(LoadHdr, ShowsTheCaptionsAndRowsThatItIsGiven) {
    EXPECT_EQ(load([&](HWND dialog) {
                  EXPECT_EQ(textOf(dialog, IDC_LABEL1), L"Search in:");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL2), L"Name:");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL3), L"Type:");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL8), L"Exposure");
                  EXPECT_EQ(textOf(dialog, IDC_LABEL9), L"Gamma");
                  EXPECT_EQ(textOf(dialog, IDC_CHECK1), L"Preview");
                  EXPECT_EQ(textOf(dialog, IDC_COMMAND1), L"Open");
                  EXPECT_EQ(textOf(dialog, IDC_COMMAND2), L"Cancel");
                  EXPECT_EQ(SendMessageW(item(dialog, IDC_COMBO1), CB_GETCOUNT, 0, 0), 2);
                  EXPECT_EQ(host::typeOf(dialog), L"*.HDR");
                  EXPECT_EQ(SendMessageW(item(dialog, IDC_SLIDER1), TBM_GETRANGEMAX, 0, 0), 320);
                  EXPECT_EQ(SendMessageW(item(dialog, IDC_SLIDER1), TBM_GETPOS, 0, 0), 160);
                  EXPECT_EQ(SendMessageW(item(dialog, IDC_SLIDER2), TBM_GETRANGEMAX, 0, 0), 200);
                  EXPECT_EQ(SendMessageW(item(dialog, IDC_SLIDER2), TBM_GETPOS, 0, 0), 100);
              }),
              L"");
}

TEST_F(LoadHdr, FiltersByTheChosenTypeAndGoesUpOneFolder) {
    static_cast<void>(folder_.write(L"notes.txt", {'n'}));
    CreateDirectoryW((folder_ / L"below").c_str(), nullptr);
    EXPECT_EQ(
        loadFrom(
            folder_ / L"below\\any.hdr",
            [&](HWND dialog) {
                press(dialog, IDC_COMMAND3);
                EXPECT_TRUE(eventually([&] { return host::rowOf(dialog, IDC_FILE1, L"blue.hdr") >= 0; }));
                EXPECT_LT(host::rowOf(dialog, IDC_FILE1, L"notes.txt"), 0);
                host::pick(dialog, IDC_COMBO1, L"*.*");
                EXPECT_TRUE(eventually([&] { return host::rowOf(dialog, IDC_FILE1, L"notes.txt") >= 0; }));
            }),
        L"");
}

TEST_F(LoadHdr, OpenOfAFileThatCannotBeDecodedGivesBackItsName) {
    const std::wstring text = folder_.write(L"text.hdr", {'n', 'o', 'n', 'e'});
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"text.hdr");
                  moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBPOSITION);
                  press(dialog, IDC_COMMAND1);
              }),
              text);
}

TEST_F(LoadHdr, OpenWithoutASelectionGivesBackAnEmptyName) {
    EXPECT_EQ(load([&](HWND dialog) { press(dialog, IDC_COMMAND1); }), L"");
}

TEST_F(LoadHdr, ASliderRepaintsALoadedPictureDuringTheDragAndAtItsEnd) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange)));
                  moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBTRACK);
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 15)));
                  moveSlider(dialog, IDC_SLIDER1, 145, TB_THUMBPOSITION);
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 14.5F)));
                  moveSlider(dialog, IDC_SLIDER2, 150, TB_THUMBPOSITION);
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 14.5F, 2.5F)));
              }),
              L"");
}

TEST_F(LoadHdr, ASliderIsMovedByTheKeyboardToo) {
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"orange.hdr");
                  host::type(dialog, IDC_SLIDER1, VK_PRIOR);
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 15)));
                  host::type(dialog, IDC_SLIDER1, VK_LEFT);
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 14.9F)));
              }),
              L"");
}

TEST_F(LoadHdr, AppliesTheSlidersWhenItOpensAndLeavesThemAppliedAfterCancel) {
    hdr_.view(3, 5);
    const host::Listener listener(hdr_);
    EXPECT_EQ(load([&](HWND) {}), L"");
    EXPECT_EQ(exposure(), 16);
    EXPECT_EQ(gamma(), 2);
    EXPECT_EQ(listener.log, "");
}

TEST_F(LoadHdr, AClickOnThePreviewOpensTheZoomWindow) {
    EXPECT_EQ(
        load([&](HWND dialog) {
            choose(dialog, L"orange.hdr");
            EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange)));
            const DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
            const host::Pixels shown = host::shownIn(item(dialog, IDC_VRXPREVIMG));
            host::click(item(dialog, IDC_VRXPREVIMG), shown.width / 2, shown.height / 2);
            HWND viewer = nullptr;
            EXPECT_TRUE(eventually([&] { return (viewer = host::windowOf(thread, kViewer)) != nullptr; }));
            EXPECT_FALSE(IsWindowEnabled(dialog));
            PostMessageW(viewer, WM_CLOSE, 0, 0);
            EXPECT_TRUE(eventually([&] { return !IsWindow(viewer); }));
            EXPECT_TRUE(eventually([&] { return IsWindowEnabled(dialog) != FALSE; }));

            host::type(dialog, IDC_VRXPREVIMG, VK_SPACE);
            EXPECT_TRUE(eventually([&] { return (viewer = host::windowOf(thread, kViewer)) != nullptr; }));
            PostMessageW(viewer, WM_CLOSE, 0, 0);
            EXPECT_TRUE(eventually([&] { return IsWindowEnabled(dialog) != FALSE; }));
        }),
        L"");
}

TEST_F(LoadHdr, AClickOnAnEmptyPreviewDoesNothing) {
    EXPECT_EQ(load([&](HWND dialog) {
                  host::click(item(dialog, IDC_VRXPREVIMG), 20, 20);
                  host::type(dialog, IDC_VRXPREVIMG, VK_SPACE);
                  host::settle(dialog);
                  EXPECT_EQ(host::windowOf(GetWindowThreadProcessId(dialog, nullptr), kViewer), nullptr);
              }),
              L"");
}

TEST_F(LoadHdr, AFirstRunShowsTheHostsFolderWithThePreviewOn) {
    EXPECT_EQ(loadFrom(L"",
                       [](HWND dialog) {
                           EXPECT_TRUE(host::isChecked(dialog));
                           press(dialog, IDC_COMMAND2);
                       }),
              L"");
    EXPECT_EQ(setting(L"\\ImageHDR", L"Path"), host::programFolder());
    EXPECT_EQ(setting(L"\\ImageHDR", L"Preview"), L"1");
}

TEST_F(LoadHdr, RemembersFolderAndPreviewButNotTheType) {
    EXPECT_EQ(load([&](HWND dialog) {
                  host::setCheck(dialog, false);
                  host::pick(dialog, IDC_COMBO1, L"*.*");
              }),
              L"");
    EXPECT_EQ(setting(L"\\ImageHDR", L"Path"), folder_.path());
    EXPECT_EQ(setting(L"\\ImageHDR", L"Preview"), L"0");
    EXPECT_EQ(setting(L"\\ImageHDR", L"Type"), L"(none)");
    EXPECT_EQ(loadFrom(L"",
                       [&](HWND dialog) {
                           EXPECT_FALSE(host::isChecked(dialog));
                           EXPECT_EQ(host::typeOf(dialog), L"*.HDR");
                           choose(dialog, L"blue.hdr");
                           press(dialog, IDC_COMMAND1);
                       }),
              blue_);
}

TEST_F(LoadHdr, OpensOnTheHostsFolderWhenTheStoredOneHasGone) {
    store(L"\\ImageHDR", L"Path", folder_ / L"gone");
    store(L"\\ImageHDR", L"Preview", L"0");
    EXPECT_EQ(loadFrom(L"", [](HWND dialog) { EXPECT_FALSE(host::isChecked(dialog)); }), L"");
    EXPECT_EQ(setting(L"\\ImageHDR", L"Path"), host::programFolder());
}

TEST_F(LoadHdr, IgnoresASuggestionWhoseFolderDoesNotExist) {
    store(L"\\ImageHDR", L"Path", folder_.path());
    EXPECT_EQ(loadFrom(folder_ / L"gone\\any.hdr",
                       [](HWND dialog) { EXPECT_GE(host::rowOf(dialog, IDC_FILE1, L"blue.hdr"), 0); }),
              L"");
}

TEST_F(LoadHdr, OpensAndClosesWithoutTheSettingsComponent) {
    ASSERT_EQ(host::settingsComponent().unregisterMachine(), S_OK);
    EXPECT_EQ(load([&](HWND dialog) {
                  EXPECT_TRUE(host::isChecked(dialog));
                  choose(dialog, L"blue.hdr");
                  press(dialog, IDC_COMMAND1);
              }),
              blue_);
}

TEST_F(LoadHdr, OpensWithTheFocusWhereAFileIsChosen) {
    EXPECT_EQ(load([](HWND dialog) {
                  EXPECT_TRUE(eventually([&] { return host::focusIn(dialog) == item(dialog, IDC_FILE1); }));
              }),
              L"");
}

TEST_F(LoadHdr, ItsListsHaveNamesForScreenReaders) {
    EXPECT_EQ(load([](HWND dialog) {
                  EXPECT_EQ(host::namesOfTabStops(dialog),
                            (std::vector<std::wstring>{L"Search in:", L"..", L"Folders", L"Files", L"Name:",
                                                       L"Type:", L"Preview", L"Preview", L"Exposure",
                                                       L"Gamma", L"Open", L"Cancel"}));
              }),
              L"");
}

TEST_F(LoadHdr, A0x0HdrFileShowsAnEmptyPreview) {
    folder_.write(L"empty.hdr", host::headerFile(0, 0));
    EXPECT_EQ(load([&](HWND dialog) {
                  const COLORREF around = GetSysColor(COLOR_APPWORKSPACE);
                  const host::FileBytes nothing{GetBValue(around), GetGValue(around), GetRValue(around)};
                  choose(dialog, L"orange.hdr");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange)));
                  choose(dialog, L"empty.hdr");
                  EXPECT_TRUE(eventually([&] { return textOf(dialog, IDC_LABEL6) == L"0"; }));
                  EXPECT_TRUE(eventuallyShows(dialog, nothing));
                  SetWindowPos(dialog, nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER);
                  host::settle(dialog);
                  // Painting waits until a queue is empty; what is shown before it is none of the preview's.
                  RedrawWindow(item(dialog, IDC_VRXPREVIMG), nullptr, nullptr, RDW_UPDATENOW);
                  EXPECT_TRUE(eventuallyShows(dialog, nothing));
              }),
              L"");
}

TEST_F(LoadHdr, IsReachableByKeyboardInTheOrderOfReading) {
    constexpr int kOrder[] = {IDC_DRIVE1,  IDC_COMMAND3, IDC_DIR1,     IDC_FILE1,
                              IDC_TEXT1,   IDC_COMBO1,   IDC_CHECK1,   IDC_VRXPREVIMG,
                              IDC_SLIDER1, IDC_SLIDER2,  IDC_COMMAND1, IDC_COMMAND2};
    EXPECT_EQ(load([&](HWND dialog) {
                  HWND control = nullptr;
                  for (const int id : kOrder) {
                      control = GetNextDlgTabItem(dialog, control, FALSE);
                      EXPECT_EQ(GetDlgCtrlID(control), id);
                  }
              }),
              L"");
}

TEST_F(LoadHdr, StretchesListsAndPreviewWithItsWindow) {
    const auto sizeOf = [](HWND window) {
        RECT place{};
        GetWindowRect(window, &place);
        return SIZE{place.right - place.left, place.bottom - place.top};
    };
    EXPECT_EQ(load([&](HWND dialog) {
                  const SIZE outer = sizeOf(dialog);
                  const SIZE list = sizeOf(item(dialog, IDC_FILE1));
                  const SIZE preview = sizeOf(item(dialog, IDC_VRXPREVIMG));
                  SetWindowPos(dialog, nullptr, 0, 0, outer.cx + 100, outer.cy + 60, SWP_NOZORDER);
                  EXPECT_EQ(sizeOf(item(dialog, IDC_FILE1)).cy, list.cy + 60);
                  EXPECT_EQ(sizeOf(item(dialog, IDC_VRXPREVIMG)).cx, preview.cx + 100);
                  EXPECT_EQ(sizeOf(item(dialog, IDC_VRXPREVIMG)).cy, preview.cy + 60);
                  SetWindowPos(dialog, nullptr, 0, 0, 50, 50, SWP_NOZORDER);
                  EXPECT_EQ(sizeOf(dialog).cx, outer.cx);
                  EXPECT_EQ(sizeOf(dialog).cy, outer.cy);
              }),
              L"");
}

TEST_F(LoadHdr, LeavesNothingBehindAfterTwoHundredOpenings) {
    host::expectNothingLeft([&] { EXPECT_EQ(load([](HWND) {}), L""); });
}

}  // namespace
