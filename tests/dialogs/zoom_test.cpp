// The zoom window as CVrxImage and CVrxHDR show it.

#include <gtest/gtest.h>

#include <algorithm>

#include "common/message_loop.h"
#include "dialogs/frmZoom.h"
#include "failure.h"
#include "raster/picture_file.h"
#include "viewer.h"

using host::eventually;
using host::eventuallyShows;
using host::Failure;
using host::FileBytes;
using host::innerOf;
using host::kNoReadout;
using host::kViewer;
using host::labelsOf;
using host::outerOf;
using host::Pixels;
using host::pointAt;
using host::RgbePicture;
using host::startOf;
using host::Viewer;
using host::viewOf;
using host::WindowDriver;

namespace {

TEST_F(Viewer, ShowsAPictureInItsOwnSize) {
    const WindowDriver driver(
        kViewer, [&](HWND viewer) { EXPECT_TRUE(eventuallyShows(viewer, host::pixels24(40, 30, bits_))); });
    EXPECT_EQ(see(bmp_), S_OK);
    expectNoWindow();
}

TEST_F(Viewer, IsOnTopOfAllWindowsInTheMiddleOfTheScreen) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_TRUE(eventually([&] { return (GetWindowLongW(viewer, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }));
        const RECT outer = outerOf(viewer);
        EXPECT_NEAR(outer.left, GetSystemMetrics(SM_CXSCREEN) - outer.right, 1);
        EXPECT_NEAR(outer.top, GetSystemMetrics(SM_CYSCREEN) - outer.bottom, 1);
    });
    EXPECT_EQ(see(bmp_), S_OK);
}

TEST_F(Viewer, ClosesOnAClickOnThePicture) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        const POINT start = startOf(viewer, 40, 30);
        host::click(viewOf(viewer), start.x + 20, start.y + 15);
        EXPECT_TRUE(eventually([&] { return !IsWindow(viewer); }));
    });
    EXPECT_EQ(see(bmp_), S_OK);
}

TEST_F(Viewer, StaysWhenAButtonThatWasPressedElsewhereIsReleasedOverIt) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        const POINT start = startOf(viewer, 40, 30);
        SendMessageW(viewOf(viewer), WM_LBUTTONUP, 0, MAKELPARAM(start.x + 20, start.y + 15));
        host::settle(viewer);
        EXPECT_TRUE(IsWindowVisible(viewer));
    });
    EXPECT_EQ(see(bmp_), S_OK);
}

TEST_F(Viewer, ClosesOnEsc) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        PostMessageW(viewer, WM_KEYDOWN, VK_ESCAPE, 1);
        EXPECT_TRUE(eventually([&] { return !IsWindow(viewer); }));
    });
    EXPECT_EQ(see(bmp_), S_OK);
}

TEST_F(Viewer, APictureLargerThanTheScreenGivesAWindowNoLargerThanTheScreenCentred) {
    const RgbePicture large(1500, 1200);
    const FileBytes bits = large.bitmap(0, 1);
    const std::wstring file = folder_.write(L"large.bmp", host::bmpFile(1500, 1200, bits));
    const Pixels whole = host::pixels24(1500, 1200, bits);
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        const RECT outer = outerOf(viewer);
        EXPECT_EQ(outer.left, 0);
        EXPECT_EQ(outer.top, 0);
        EXPECT_EQ(outer.right, GetSystemMetrics(SM_CXSCREEN));
        EXPECT_EQ(outer.bottom, GetSystemMetrics(SM_CYSCREEN));

        const SIZE inner = innerOf(viewOf(viewer));
        const auto shows = [&](int x, int y) {
            return eventually([&] {
                return host::shownIn(viewOf(viewer)) == host::partOf(whole, x, y, inner.cx, inner.cy);
            });
        };
        EXPECT_TRUE(shows(0, 0));
        SendMessageW(viewOf(viewer), WM_VSCROLL, SB_BOTTOM, 0);
        SendMessageW(viewOf(viewer), WM_HSCROLL, SB_BOTTOM, 0);
        EXPECT_TRUE(shows(1500 - inner.cx, 1200 - inner.cy));
    });
    EXPECT_EQ(see(file), S_OK);
}

/// A picture without colour but in its last pixel comes to its end.
class LongPicture : public Viewer {
  protected:
    void expectEnd(int width, int height) const {
        FileBytes bits(host::strideOf(width) * static_cast<std::size_t>(height));
        bits[static_cast<std::size_t>(width - 1) * 3] = 200;
        const Pixels whole = host::pixels24(width, height, bits);
        const WindowDriver driver(kViewer, [&](HWND viewer) {
            PostMessageW(viewOf(viewer), WM_KEYDOWN, VK_END, 1);
            EXPECT_TRUE(eventually([&] {
                const Pixels shown = host::shownIn(viewOf(viewer));
                const int right = std::min(shown.width, width);
                const int down = std::min(shown.height, height);
                return host::partOf(shown, (shown.width - right) / 2, (shown.height - down) / 2, right,
                                    down) == host::partOf(whole, width - right, height - down, right, down);
            }));
        });
        EXPECT_EQ(see(folder_.write(L"long.bmp", host::bmpFile(width, height, bits))), S_OK);
    }
};

TEST_F(LongPicture, WiderThan32767PixelsOpensInTheViewer) { expectEnd(40000, 2); }

TEST_F(LongPicture, HigherThan32767PixelsOpensInTheViewer) { expectEnd(2, 40000); }

TEST_F(Viewer, DoesNothingForAnApplicationsMessageFromElsewhere) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        for (UINT message = WM_APP; message < WM_APP + 16; ++message) SendMessageW(viewer, message, 1, 1);
        host::settle(viewer);
        EXPECT_TRUE(IsWindowVisible(viewer));
        EXPECT_TRUE(eventuallyShows(viewer, host::pixels24(40, 30, bits_)));
    });
    EXPECT_EQ(see(bmp_), S_OK);
    host::Listener listener(hdr_);
    const WindowDriver hdrDriver(kViewer, [&](HWND viewer) {
        EXPECT_TRUE(eventually([&] { return listener.finishes == 1; }));
        SendMessageW(viewer, WM_APP, 0, 0);
        host::settle(viewer);
    });
    EXPECT_EQ(seeHdr(rgbe_), S_OK);
    EXPECT_EQ(listener.headers, 1);
}

TEST_F(Viewer, MovingTheMouseOverAnOrdinaryPictureNotHdrChangesNoLabel) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_EQ(labelsOf(viewer), kNoReadout);
        pointAt(viewer, startOf(viewer, 40, 30), 5, 5);
        EXPECT_EQ(labelsOf(viewer), kNoReadout);
    });
    EXPECT_EQ(see(bmp_), S_OK);
}

TEST_F(Viewer, AnEmptyFileNameLeavesTheWindowUnchanged) {
    vrx::frmZoom window;
    window.setObjHDR(vrx::ComPtr<_CVrxHDR>(hdr_.operator->()));
    window.Set_BMP(vrx::loadPicture({bmp_.begin(), bmp_.end()}), 40, 30);
    window.show(nullptr);
    static_cast<void>(vrx::doEvents());
    const RECT outer = outerOf(window.window());
    const std::wstring labels = labelsOf(window.window());
    window.See_Image(u"");
    window.See_HDR(u"");
    static_cast<void>(vrx::doEvents());
    const RECT after = outerOf(window.window());
    EXPECT_TRUE(EqualRect(&outer, &after));
    EXPECT_EQ(labelsOf(window.window()), labels);
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(window.window(), IDC_LBLCOMP0)));
    EXPECT_TRUE(eventuallyShows(window.window(), host::pixels24(40, 30, bits_)));
    window.unload();
}

TEST_F(Viewer, IsEmptyWithoutAFileName) {
    const WindowDriver driver(kViewer, [](HWND) {});
    EXPECT_EQ(see(L""), S_OK);
}

TEST_F(Viewer, OfAPictureThatCannotBeReadFailsAndIsNotThere) {
    const std::wstring text = folder_.write(L"text.bmp", {'n', 'o', 'n', 'e'});
    EXPECT_EQ(host::failureOf(see(folder_ / L"missing.bmp")), (Failure{53, L"CVrxImage", L"File not found"}));
    EXPECT_EQ(host::failureOf(see(text)), (Failure{481, L"CVrxImage", L"Invalid picture"}));
    expectNoWindow();
}

TEST_F(Viewer, ShowsAnHdrPictureWithTheGivenExposureAndGamma) {
    const FileBytes bits = picture_.bitmap(1, 2);
    const WindowDriver driver(
        kViewer, [&](HWND viewer) { EXPECT_TRUE(eventuallyShows(viewer, host::pixels24(40, 30, bits))); });
    EXPECT_EQ(seeHdr(rgbe_, 1, 2), S_OK);
    expectNoWindow();
}

TEST_F(Viewer, AssignsExposureAndGammaAsThePropertiesDo) {
    const WindowDriver driver(kViewer, [](HWND) {});
    EXPECT_EQ(seeHdr(rgbe_, 3, 10), S_OK);
    float exposure = 0;
    float gamma = 0;
    hdr_->get_Exposure(&exposure);
    hdr_->get_Gamma(&gamma);
    EXPECT_EQ(exposure, 3);
    EXPECT_EQ(gamma, 6);
}

TEST_F(Viewer, OfAnHdrFileThatCannotBeReadFailsAndIsNotThere) {
    const std::wstring text = folder_.write(L"text.hdr", {'n', 'o', 'n', 'e'});
    EXPECT_EQ(host::failureOf(seeHdr(folder_ / L"missing.hdr")),
              (Failure{53, L"CVrxHDR", L"File not found"}));
    expectNoWindow();
    EXPECT_EQ(host::failureOf(seeHdr(text)), (Failure{1, L"CVrxHDR::Import", L"File Type Wrong!"}));
    expectNoWindow();
}

/// A picture of many rows, closed by the user at its first refresh.
class ViewerOfATallPicture : public Viewer {
  protected:
    const std::wstring tall_ = folder_.write(L"tall.hdr", RgbePicture(8, 1000).file());
    host::Listener listener_{hdr_};

    void expectEndAfter(const std::function<void(HWND)>& act) {
        listener_.onRefresh = [&](IDispatch&) {
            if (listener_.refreshes == 1) act(host::windowOf(GetCurrentThreadId(), kViewer));
        };
        EXPECT_EQ(seeHdr(tall_), S_OK);
        EXPECT_EQ(listener_.headers, 1);
        EXPECT_LE(listener_.refreshes, 2);
        EXPECT_EQ(listener_.finishes, 1);
        EXPECT_FALSE(hdr_.loading());
        expectNoWindow();
    }
};

TEST_F(ViewerOfATallPicture, EndsTheDecoderAtOnceWhenItIsClosed) {
    expectEndAfter([](HWND viewer) { PostMessageW(viewer, WM_CLOSE, 0, 0); });
}

TEST_F(ViewerOfATallPicture, CannotStartItsLoadAgainWhenItIsClosed) {
    float exposure = 0;
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes == 1)
            SendMessageW(host::windowOf(GetCurrentThreadId(), kViewer), WM_CLOSE, 0, 0);
        hdr_->put_Exposure(exposure += 1);
        hdr_->put_AutoExposition(VARIANT_TRUE);
    };
    EXPECT_EQ(seeHdr(tall_), S_OK);
    EXPECT_EQ(listener_.headers, 1);
    EXPECT_EQ(listener_.finishes, 1);
    EXPECT_FALSE(hdr_.loading());
}

TEST_F(ViewerOfATallPicture, FillsInAsRowsArrive) {
    const RgbePicture picture(8, 1000);
    const Pixels decoded = host::pixels24(8, 1000, picture.bitmap(0, 1));
    const Pixels nothing = host::pixels24(8, 1000, picture.bitmap(0, 1, 0));
    int checked = 0;
    // The first refresh follows row 0, each further one 80 rows more. The window is told after this listener.
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes != 3) return;
        const HWND view = viewOf(host::windowOf(GetCurrentThreadId(), kViewer));
        UpdateWindow(view);
        const Pixels shown = host::shownIn(view);
        const int left = (shown.width - 8) / 2;
        EXPECT_EQ(host::partOf(shown, left, 0, 8, 81), host::partOf(decoded, 0, 0, 8, 81));
        EXPECT_EQ(host::partOf(shown, left, 161, 8, 300), host::partOf(nothing, 0, 161, 8, 300));
        ++checked;
    };
    const WindowDriver driver(
        kViewer, [&](HWND) { EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; })); });
    EXPECT_EQ(seeHdr(tall_), S_OK);
    EXPECT_EQ(checked, 1);
}

TEST_F(ViewerOfATallPicture, ReadsOutThePixelUnderAMouseThatRestsOnceItsRowIsThere) {
    std::wstring before;
    listener_.onRefresh = [&](IDispatch&) {
        const HWND viewer = host::windowOf(GetCurrentThreadId(), kViewer);
        if (listener_.refreshes != 1) return;
        pointAt(viewer, {(innerOf(viewOf(viewer)).cx - 8) / 2, 0}, 2, 700);
        before = labelsOf(viewer);
    };
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; }));
        EXPECT_NE(labelsOf(viewer), before);
    });
    EXPECT_EQ(seeHdr(tall_), S_OK);
    EXPECT_EQ(before, L"0.0000 0.0000 0.0000 ");
}

TEST_F(ViewerOfATallPicture, StaysResponsiveWhileItDecodes) {
    std::wstring readout;
    listener_.onRefresh = [&](IDispatch&) {
        const HWND viewer = host::windowOf(GetCurrentThreadId(), kViewer);
        const POINT start{(innerOf(viewOf(viewer)).cx - 8) / 2, 0};
        if (listener_.refreshes == 1)
            PostMessageW(viewOf(viewer), WM_MOUSEMOVE, 0, MAKELPARAM(start.x + 2, start.y));
        if (listener_.refreshes == 2) readout = labelsOf(viewer);
    };
    const WindowDriver driver(
        kViewer, [&](HWND) { EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; })); });
    EXPECT_EQ(seeHdr(tall_), S_OK);
    EXPECT_NE(readout, L"");
    EXPECT_NE(readout, kNoReadout);
}

TEST_F(ViewerOfATallPicture, TakesEscWhileItDecodes) {
    expectEndAfter([](HWND viewer) { PostMessageW(viewer, WM_KEYDOWN, VK_ESCAPE, 1); });
}

TEST_F(ViewerOfATallPicture, TakesAClickWhileItDecodes) {
    expectEndAfter([](HWND viewer) {
        const SIZE inner = innerOf(viewOf(viewer));
        host::click(viewOf(viewer), inner.cx / 2, inner.cy / 2);
    });
}

TEST_F(ViewerOfATallPicture, DecodesOnceHoweverOftenItIsActivated) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_TRUE(eventually([&] { return listener_.finishes == 1; }));
        SendMessageW(viewer, WM_ACTIVATE, WA_ACTIVE, 0);
        host::settle(viewer);
    });
    EXPECT_EQ(seeHdr(tall_), S_OK);
    EXPECT_EQ(listener_.headers, 1);
}

}  // namespace
