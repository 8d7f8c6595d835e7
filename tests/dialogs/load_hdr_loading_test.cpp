// The dialog of CVrxHDR.Load while its preview is being decoded: restarts, other files, and every way to
// close it.

#include "load_hdr_driver.h"

using host::choose;
using host::colorOf;
using host::eventually;
using host::eventuallyShows;
using host::item;
using host::kBlue;
using host::kLoadHdr;
using host::kOrange;
using host::LoadHdr;
using host::moveSlider;
using host::press;
using host::RgbePicture;
using host::textOf;

namespace {

constexpr wchar_t kViewer[] = L"Viewer";

/// While a picture of many rows is being loaded: a host's listener acts at the first refresh.
class LoadHdrWhileItLoads : public LoadHdr {
  protected:
    const std::wstring tall_ = folder_.write(L"tall.hdr", RgbePicture(8, 1000).fill(kOrange).file());
    host::Listener listener_{hdr_};

    /// Chooses the tall picture; `act` is called once, inside the load, `then` from outside.
    std::wstring loadTall(const std::function<void(HWND)>& act, const std::function<void(HWND)>& then = {}) {
        listener_.onRefresh = [&](IDispatch&) {
            if (listener_.refreshes == 1) act(host::windowOf(GetCurrentThreadId(), kLoadHdr));
        };
        const std::wstring chosen = load([&](HWND dialog) {
            choose(dialog, L"tall.hdr");
            if (then) return then(dialog);
            EXPECT_TRUE(eventually([&] { return !IsWindow(dialog); }));
        });
        EXPECT_FALSE(hdr_.loading());
        return chosen;
    }
    /// The decoder has ended at once and has not begun again.
    void expectEnded() const {
        EXPECT_EQ(listener_.headers, 1);
        EXPECT_LE(listener_.refreshes, 2);
        EXPECT_EQ(listener_.finishes, 1);
    }
};

TEST_F(LoadHdrWhileItLoads, MovingASliderRestartsThePreviewOnTheSameFile) {
    EXPECT_EQ(loadTall([](HWND dialog) { moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBPOSITION); },
                       [&](HWND dialog) {
                           EXPECT_TRUE(eventually([&] { return listener_.finishes == 2; }));
                           EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 15)));
                           press(dialog, IDC_COMMAND1);
                       }),
              tall_);
    EXPECT_EQ(listener_.headers, 2);
}

TEST_F(LoadHdrWhileItLoads, MovingTheGammaSliderRestartsThePreviewToo) {
    EXPECT_EQ(loadTall([](HWND dialog) { moveSlider(dialog, IDC_SLIDER2, 50, TB_THUMBPOSITION); },
                       [&](HWND dialog) {
                           EXPECT_TRUE(eventually([&] { return listener_.finishes == 2; }));
                           EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 16, 1.5F)));
                       }),
              L"");
    EXPECT_EQ(listener_.headers, 2);
}

TEST_F(LoadHdrWhileItLoads, MovesOfADragInOneGoRestartThePreviewOnce) {
    EXPECT_EQ(loadTall(
                  [](HWND dialog) {
                      for (int position = 159; position >= 140; --position)
                          moveSlider(dialog, IDC_SLIDER1, position, TB_THUMBTRACK);
                  },
                  [&](HWND dialog) {
                      EXPECT_TRUE(eventually([&] { return listener_.finishes == 2; }));
                      EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 14)));
                  }),
              L"");
    EXPECT_EQ(listener_.headers, 2);
}

TEST_F(LoadHdrWhileItLoads, TheEndOfAMoveRestartsThePreviewNoMore) {
    EXPECT_EQ(loadTall([](HWND dialog) { moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBTRACK); },
                       [&](HWND dialog) {
                           EXPECT_TRUE(eventually([&] { return listener_.headers == 2; }));
                           moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBPOSITION);
                           moveSlider(dialog, IDC_SLIDER1, 150, TB_ENDTRACK);
                           EXPECT_TRUE(eventually([&] { return listener_.finishes == 2; }));
                           EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange, 15)));
                       }),
              L"");
    EXPECT_EQ(listener_.headers, 2);
}

TEST_F(LoadHdrWhileItLoads, ChoosingAnotherFileShowsThatOne) {
    EXPECT_EQ(loadTall([](HWND dialog) { choose(dialog, L"blue.hdr"); },
                       [&](HWND dialog) {
                           EXPECT_TRUE(eventuallyShows(dialog, colorOf(kBlue)));
                           EXPECT_TRUE(eventually([&] { return listener_.finishes == 2; }));
                           host::settle(dialog);
                           EXPECT_TRUE(eventuallyShows(dialog, colorOf(kBlue)));
                           EXPECT_EQ(textOf(dialog, IDC_TEXT1), L"blue.hdr");
                           EXPECT_EQ(textOf(dialog, IDC_LABEL6), L"20");
                           EXPECT_EQ(textOf(dialog, IDC_LABEL7), L"40");
                           press(dialog, IDC_COMMAND1);
                       }),
              blue_);
    EXPECT_EQ(listener_.headers, 2);
}

TEST_F(LoadHdrWhileItLoads, RunningThroughManyFilesShowsTheLastOne) {
    constexpr int kFiles = 300;
    const host::FileBytes bytes = RgbePicture(8, 200).fill(kOrange).file();
    for (int i = 0; i < kFiles; ++i)
        static_cast<void>(folder_.write(L"many" + std::to_wstring(i) + L".hdr", bytes));
    // Each load finds the choice of the next file waiting.
    int next = 0;
    listener_.onHeader = [&] {
        const HWND dialog = host::windowOf(GetCurrentThreadId(), kLoadHdr);
        if (next < kFiles) choose(dialog, L"many" + std::to_wstring(next) + L".hdr");
        if (next++ == kFiles) choose(dialog, L"blue.hdr");
    };
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"tall.hdr");
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kBlue)));
                  press(dialog, IDC_COMMAND1);
              }),
              blue_);
    EXPECT_EQ(listener_.headers, kFiles + 2);
}

TEST_F(LoadHdrWhileItLoads, AFileThatCannotBeDecodedIsStillTheOneThatOpenGivesBack) {
    const std::wstring text = folder_.write(L"text.hdr", {'n', 'o', 'n', 'e'});
    EXPECT_EQ(loadTall([](HWND dialog) { choose(dialog, L"text.hdr"); },
                       [&](HWND dialog) {
                           EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; }));
                           press(dialog, IDC_COMMAND1);
                       }),
              text);
}

TEST_F(LoadHdrWhileItLoads, OpenEndsTheDecoderAtOnce) {
    EXPECT_EQ(loadTall([](HWND dialog) { press(dialog, IDC_COMMAND1); }), tall_);
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, CancelEndsTheDecoderAtOnce) {
    EXPECT_EQ(loadTall([](HWND dialog) { press(dialog, IDC_COMMAND2); }), L"");
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, EnterAndEscAndTheFrameEndTheDecoderAtOnce) {
    EXPECT_EQ(loadTall([](HWND dialog) { host::type(dialog, IDC_FILE1, VK_RETURN); }), tall_);
    expectEnded();
    listener_.headers = listener_.refreshes = listener_.finishes = 0;
    EXPECT_EQ(loadTall([](HWND dialog) { host::type(dialog, IDC_FILE1, VK_ESCAPE); }), L"");
    expectEnded();
    listener_.headers = listener_.refreshes = listener_.finishes = 0;
    EXPECT_EQ(loadTall([](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); }), L"");
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, CancelInsideTheMessagePassesEndsTheDecoderAtOnce) {
    EXPECT_EQ(loadTall([](HWND dialog) {
                  moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBPOSITION);
                  press(dialog, IDC_COMMAND2);
              }),
              L"");
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, OpenInsideTheMessagePassesGivesBackTheFile) {
    EXPECT_EQ(loadTall([](HWND dialog) {
                  moveSlider(dialog, IDC_SLIDER1, 150, TB_THUMBPOSITION);
                  press(dialog, IDC_COMMAND1);
              }),
              tall_);
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, TheFirstDecisionCounts) {
    EXPECT_EQ(loadTall([](HWND dialog) {
                  press(dialog, IDC_COMMAND1);
                  press(dialog, IDC_COMMAND2);
              }),
              tall_);
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, ClosingTheZoomWindowEndsTheDecoder) {
    EXPECT_EQ(loadTall(
                  [](HWND dialog) {
                      const host::Pixels view = host::shownIn(item(dialog, IDC_VRXPREVIMG));
                      host::click(item(dialog, IDC_VRXPREVIMG), view.width / 2, view.height / 2);
                  },
                  [&](HWND dialog) {
                      const DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
                      HWND viewer = nullptr;
                      EXPECT_TRUE(
                          eventually([&] { return (viewer = host::windowOf(thread, kViewer)) != nullptr; }));
                      PostMessageW(viewer, WM_CLOSE, 0, 0);
                      EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; }));
                      host::settle(dialog);
                  }),
              L"");
    expectEnded();
}

TEST_F(LoadHdrWhileItLoads, GoesOnWhenTheHostReleasesTheObjectWhichIsGoneAfterwards) {
    listener_.holdNothing();
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes == 1) hdr_.release();
    };
    EXPECT_EQ(load([&](HWND dialog) {
                  choose(dialog, L"tall.hdr");
                  EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; }));
                  EXPECT_TRUE(eventuallyShows(dialog, colorOf(kOrange)));
                  press(dialog, IDC_COMMAND1);
              }),
              tall_);
    EXPECT_EQ(listener_.headers, 1);
    CoFreeUnusedLibraries();
    EXPECT_EQ(host::component().canUnload(), S_OK);
}

TEST_F(LoadHdrWhileItLoads, ASecondLoadIsRefused) {
    HRESULT second = S_OK;
    EXPECT_EQ(loadTall([&](HWND dialog) {
                  vrx::Bstr chosen;
                  second = hdr_->Load(nullptr, chosen.put());
                  press(dialog, IDC_COMMAND2);
              }),
              L"");
    EXPECT_EQ(second, static_cast<HRESULT>(0x800A0005));
}

TEST_F(LoadHdrWhileItLoads, EndsWithTheWindowThatOwnsItAndRemembersItsValues) {
    const HWND owner = CreateWindowExW(0, L"STATIC", L"host", WS_POPUP | WS_VISIBLE, 0, 0, 200, 200, nullptr,
                                       nullptr, nullptr, nullptr);
    SetActiveWindow(owner);
    EXPECT_EQ(loadTall([&](HWND dialog) {
                  host::setCheck(dialog, false);
                  DestroyWindow(owner);
              }),
              L"");
    expectEnded();
    EXPECT_EQ(setting(L"\\ImageHDR", L"Preview"), L"0");
}

}  // namespace
