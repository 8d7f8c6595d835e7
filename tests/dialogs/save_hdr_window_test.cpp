// The dialog of CVrxHDR.Save: its preview and sliders, how it ends, and its window.

#include <gtest/gtest.h>

#include "failure.h"
#include "save_hdr_fixture.h"

using host::eventually;
using host::RgbePicture;

namespace {

TEST_F(SaveHdr, ShowsThePictureWithExposure16AndGamma2WhenItOpens) {
    RgbePicture uniform(40, 30);
    uniform.fill({50, 100, 200, 119});
    EXPECT_EQ(hdr_.set(uniform), S_OK);
    hdr_.view(3, 4);
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        EXPECT_TRUE(previewShows(dialog, uniform.bitmap(16, 2)));
        dialog.move(IDC_SLIDER2, 150);
        EXPECT_TRUE(previewShows(dialog, uniform.bitmap(15, 2)));
        dialog.move(IDC_SLIDER3, 0, TB_ENDTRACK);
        EXPECT_TRUE(previewShows(dialog, uniform.bitmap(15, 1)));
    });
    EXPECT_EQ(exposure(), 15);
    EXPECT_EQ(gamma(), 1);
}

TEST_F(SaveHdr, FramesAPictureThatCouldNotBePaintedAtFirst) {
    RgbePicture wide(80, 20);
    wide.fill({50, 100, 200, 119});
    EXPECT_EQ(hdr_.set(wide), S_OK);
    hdr_->put_AutoExposition(VARIANT_TRUE);
    hdr_->put_AutoExpositionType(HDRAETMinMax);
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        dialog.press(IDC_CHKAUTOEXPOSURE);
        EXPECT_TRUE(previewShows(dialog, wide.bitmap(16, 2)));
        const host::Pixels shown = host::shownIn(dialog.control(IDC_VRXPREVIMG));
        EXPECT_NE(host::partOf(shown, shown.width / 2, 2, 1, 1),
                  host::partOf(shown, shown.width / 2, shown.height / 2, 1, 1));
    });
}

TEST_F(SaveHdr, FollowsTheSlidersDuringTheDragAndAtItsEnd) {
    host::Listener listener(hdr_);
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        EXPECT_EQ(listener.refreshes, 1);
        dialog.move(IDC_SLIDER2, 170, TB_THUMBTRACK);
        EXPECT_EQ(exposure(), 17);
        dialog.move(IDC_SLIDER2, 175, TB_THUMBTRACK);
        EXPECT_EQ(exposure(), 17.5F);
        dialog.move(IDC_SLIDER2, 180, TB_ENDTRACK);
        EXPECT_EQ(exposure(), 18);
        EXPECT_EQ(listener.refreshes, 4);
        dialog.notify(IDC_SLIDER2, TB_ENDTRACK);
        EXPECT_EQ(listener.refreshes, 4) << "nothing has moved";
        dialog.move(IDC_SLIDER3, 200, TB_THUMBPOSITION);
        EXPECT_EQ(gamma(), 3);
        EXPECT_EQ(listener.refreshes, 5);
    });
}

TEST_F(SaveHdr, ShowsAndChangesTheAutomaticExpositionOfTheObject) {
    hdr_->put_AutoExposition(VARIANT_TRUE);
    hdr_->put_AutoExpositionType(HDRAETMinMax);
    host::Listener listener(hdr_);
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        EXPECT_EQ(SendMessageW(dialog.control(IDC_CHKAUTOEXPOSURE), BM_GETCHECK, 0, 0), BST_CHECKED);
        EXPECT_EQ(dialog.row(IDC_CMBAUTOEXPTYPE), 1);
        EXPECT_EQ(dialog.rows(IDC_CMBAUTOEXPTYPE),
                  (std::vector<std::wstring>{L"Attenuate Max", L"Attenuate All"}));
        const int before = listener.refreshes;
        dialog.choose(IDC_CMBAUTOEXPTYPE, 0);
        Enum_AutoExpositionType type = HDRAETMinMax;
        hdr_->get_AutoExpositionType(&type);
        EXPECT_EQ(type, HDRAETMax);
        dialog.press(IDC_CHKAUTOEXPOSURE);
        VARIANT_BOOL on = VARIANT_TRUE;
        hdr_->get_AutoExposition(&on);
        EXPECT_EQ(on, VARIANT_FALSE);
        EXPECT_EQ(listener.refreshes, before + 2);
    });
}

TEST_F(SaveHdr, ShowsTheHourglassWhileItExposesAutomatically) {
    host::Listener listener(hdr_);
    std::vector<bool> hourglasses;
    listener.onRefresh = [&](IDispatch&) {
        hourglasses.push_back(GetCursor() == LoadCursorW(nullptr, IDC_WAIT));
    };
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        hourglasses.clear();
        dialog.move(IDC_SLIDER2, 170);
        dialog.press(IDC_CHKAUTOEXPOSURE);
        dialog.press(IDC_CHKAUTOEXPOSURE);
    });
    EXPECT_EQ(hourglasses, (std::vector<bool>{false, true, false}));
}

TEST_F(SaveHdr, OfAnEmptyObjectShowsNothingAndWritesOneBlackPixel) {
    hdr_->Cls();
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.move(IDC_SLIDER2, 170);
        dialog.press(IDC_CHKAUTOEXPOSURE);
        const host::Pixels shown = host::shownIn(dialog.control(IDC_VRXPREVIMG));
        const host::Pixels corner = host::partOf(shown, 2, 2, 1, 1);
        EXPECT_EQ(host::partOf(shown, shown.width / 2, shown.height / 2, 1, 1), corner);
    });
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.saveAs(L"pic", kBmp); });
    EXPECT_EQ(bytes(L"pic.bmp").size(), 54u + 4u);
}

TEST_F(SaveHdr, OfAnEmptyObjectCallsItsGetBmpAllTheSame) {
    hdr_->Cls();
    host::Listener listener(hdr_);
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        EXPECT_EQ(listener.refreshes, 1);
        dialog.move(IDC_SLIDER2, 170);
        EXPECT_EQ(listener.refreshes, 2);
    });
}

TEST_F(SaveHdr, BeginsInTheName) {
    quietlyDuring([](const OpenSaveDialog& dialog) {
        EXPECT_TRUE(eventually([&] { return dialog.focus() == dialog.control(IDC_TEXT1); }));
    });
}

TEST_F(SaveHdr, GoesUpOneFolderByItsButtonAndDownByEnterInTheFolders) {
    const std::wstring inner = folder_ / L"inner";
    ASSERT_TRUE(CreateDirectoryW(inner.c_str(), nullptr));
    remember(L"Path", inner);
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        dialog.setName(L"pic");
        dialog.press(IDC_COMMAND3);
        dialog.selectFolder(L"inner");
    });
    EXPECT_EQ(remembered(L"Path"), folder_.path());
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        dialog.setName(L"pic");
        dialog.selectFolder(L"inner");
        dialog.enter(IDC_DIR1);
        EXPECT_TRUE(dialog.isOpen());
    });
    EXPECT_EQ(remembered(L"Path"), inner);
}

TEST_F(SaveHdr, SavesOnEnterInTheFiles) {
    quietlyDuring([](const OpenSaveDialog& dialog) {
        dialog.setName(L"pic");
        dialog.enter(IDC_FILE1);
        EXPECT_TRUE(dialog.closes());
    });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.hdr"});
}

TEST_F(SaveHdr, IsClosedByItsButtonByEscAndByItsFrameWithoutSaving) {
    const auto cancel = [&](const std::function<void(HWND)>& close) {
        quietlyDuring([&](const OpenSaveDialog& dialog) {
            dialog.setName(L"pic");
            close(dialog.window());
            EXPECT_TRUE(dialog.closes());
        });
    };
    cancel([](HWND window) { PostMessageW(GetDlgItem(window, IDC_COMMAND2), BM_CLICK, 0, 0); });
    cancel([](HWND window) { PostMessageW(GetDlgItem(window, IDC_TEXT1), WM_KEYDOWN, VK_ESCAPE, 1); });
    cancel([](HWND window) { PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0); });
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SaveHdr, EmptiesTheClipboard) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    SetClipboardData(CF_TEXT, GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 4));
    CloseClipboard();
    ASSERT_TRUE(IsClipboardFormatAvailable(CF_TEXT));
    quietlyDuring([](const OpenSaveDialog&) { EXPECT_FALSE(IsClipboardFormatAvailable(CF_TEXT)); });
}

TEST_F(SaveHdr, OpensInTheMiddleOfALoadWhichEndsAfterwards) {
    const std::wstring tall = folder_.write(L"tall.hdr", darkPicture(8, 400).file());
    host::Listener listener(hdr_);
    int saves = 0;
    listener.onRefresh = [&](IDispatch&) {
        if (saves++ != 0) return;
        quietlyDuring([](const OpenSaveDialog& dialog) { dialog.move(IDC_SLIDER2, 170); });
    };
    EXPECT_EQ(hdr_.preview(tall), S_OK);
    EXPECT_FALSE(hdr_.loading());
    EXPECT_GE(saves, 2);
    EXPECT_EQ(hdr_.dimY(), 400);
}

TEST_F(SaveHdr, IsNotOpenedAgainWhileItIsOpen) {
    host::Listener listener(hdr_);
    std::vector<host::Failure> failures;
    listener.onRefresh = [&](IDispatch&) { failures.push_back(host::failureOf(save())); };
    quietlyDuring([](const OpenSaveDialog& dialog) { dialog.move(IDC_SLIDER2, 170); });
    const host::Failure refused{5, L"CVrxHDR", L"Invalid procedure call or argument"};
    EXPECT_EQ(failures, (std::vector{refused, refused}));
    listener.onRefresh = {};
    quietlyDuring([](const OpenSaveDialog&) {});
}

TEST_F(SaveHdr, OutlivesAHostThatGivesTheObjectBackMeanwhile) {
    host::Listener listener(hdr_);
    listener.holdNothing();
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        listener.onRefresh = [&](IDispatch&) { hdr_.release(); };
        dialog.move(IDC_SLIDER2, 170);
        dialog.saveAs(L"pic", kHdr);
    });
    EXPECT_EQ(folder_.names(), std::vector<std::wstring>{L"pic.hdr"});
}

TEST_F(SaveHdr, GoesWithTheWindowThatItBelongsToAndRemembersItsValues) {
    const HWND owner = CreateWindowExW(0, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 10, 10, 90, 90, nullptr,
                                       nullptr, nullptr, nullptr);
    ASSERT_TRUE(SetActiveWindow(owner));
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        EXPECT_EQ(GetWindow(dialog.window(), GW_OWNER), owner);
        EXPECT_FALSE(IsWindowEnabled(owner));
        dialog.choose(IDC_COMBO1, 2);
        PostMessageW(owner, WM_CLOSE, 0, 0);
        EXPECT_TRUE(eventually([&] { return !IsWindow(dialog.window()); }));
    });
    EXPECT_FALSE(IsWindow(owner));
    EXPECT_EQ(remembered(L"Type"), L"2");
}

TEST_F(SaveHdr, IsReachedByTheKeyboardInTheOrderOfReading) {
    expectNamesInOrder({L"Save in:", L"..", L"Folders", L"Files", L"Name:", L"Type:", L"JPG Detail:",
                        L"Auto Exposition", L"Type:", L"Exposure", L"Gamma", L"Save", L"Cancel"});
}

TEST_F(SaveHdr, GrowsWithItsPreviewAndBecomesNoSmallerThanDesigned) {
    quietlyDuring([](const OpenSaveDialog& dialog) {
        RECT designed{};
        RECT preview{};
        GetWindowRect(dialog.window(), &designed);
        GetWindowRect(dialog.control(IDC_VRXPREVIMG), &preview);
        const auto resize = [&](LONG width, LONG height) {
            SetWindowPos(dialog.window(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        };
        resize(designed.right - designed.left + 50, designed.bottom - designed.top + 30);
        RECT grown{};
        GetWindowRect(dialog.control(IDC_VRXPREVIMG), &grown);
        EXPECT_EQ(grown.right - grown.left, preview.right - preview.left + 50);
        EXPECT_EQ(grown.bottom - grown.top, preview.bottom - preview.top + 30);
        resize(10, 10);
        RECT smallest{};
        GetWindowRect(dialog.window(), &smallest);
        EXPECT_EQ(smallest.right - smallest.left, designed.right - designed.left);
        EXPECT_EQ(smallest.bottom - smallest.top, designed.bottom - designed.top);
    });
}

TEST_F(SaveHdr, LeavesNothingBehindAfter200Openings) { expectNothingLeftAfterOpenings(); }

}  // namespace
