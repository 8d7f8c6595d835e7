// The zoom window as CVrxImage and CVrxHDR show it.

#include <gtest/gtest.h>

#include <array>

#include "VrxCommon.h"
#include "failure.h"
#include "gdi_handles.h"
#include "hdr_host.h"
#include "window_driver.h"

using host::captionOf;
using host::eventually;
using host::Failure;
using host::FileBytes;
using host::Pixels;
using host::RgbePicture;
using host::WindowDriver;

namespace {

constexpr int kView = 1000;
constexpr std::array kLabels{1002, 1004, 1006};
constexpr wchar_t kViewer[] = L"Viewer";

HWND viewOf(HWND viewer) { return GetDlgItem(viewer, kView); }

std::wstring labelsOf(HWND viewer) {
    std::wstring texts;
    for (const int label : kLabels) texts += captionOf(GetDlgItem(viewer, label)) + L" ";
    return texts;
}

RECT outerOf(HWND window) {
    RECT outer{};
    GetWindowRect(window, &outer);
    return outer;
}

SIZE innerOf(HWND window) {
    RECT inner{};
    GetClientRect(window, &inner);
    return {inner.right, inner.bottom};
}

/// Where a picture that fits begins in the view.
POINT startOf(HWND viewer, int width, int height) {
    const SIZE inner = innerOf(viewOf(viewer));
    return {(inner.cx - width) / 2, (inner.cy - height) / 2};
}

bool eventuallyShows(HWND viewer, const Pixels& picture) {
    return eventually([&] {
        const POINT start = startOf(viewer, picture.width, picture.height);
        const Pixels shown = host::shownIn(viewOf(viewer));
        return host::partOf(shown, start.x, start.y, picture.width, picture.height) == picture;
    });
}

void pointAt(HWND viewer, POINT start, int x, int y) {
    SendMessageW(viewOf(viewer), WM_MOUSEMOVE, 0, MAKELPARAM(start.x + x, start.y + y));
}

class Viewer : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const vrx::ComPtr<_CVrxImage> image_ = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
    const host::Hdr hdr_;
    const RgbePicture picture_{40, 30};
    const FileBytes bits_ = picture_.bitmap(0, 1);
    const std::wstring bmp_ = folder_.write(L"picture.bmp", host::bmpFile(40, 30, bits_));
    const std::wstring rgbe_ = folder_.write(L"picture.hdr", picture_.file());

    [[nodiscard]] HRESULT see(const std::wstring& file) const {
        return image_->See(vrx::Bstr(SysAllocString(file.c_str())).get());
    }
    [[nodiscard]] HRESULT seeHdr(const std::wstring& file, float exposure = 0, float gamma = 1) const {
        return hdr_->See(vrx::Bstr(SysAllocString(file.c_str())).get(), exposure, gamma);
    }
    static void expectNoWindow() { EXPECT_EQ(host::windowOf(GetCurrentThreadId(), kViewer), nullptr); }
};

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
        SendMessageW(viewer, WM_NULL, 0, 0);
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

TEST_F(Viewer, OfAPictureLargerThanTheScreenIsNoLargerThanTheScreenCentred) {
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

TEST_F(Viewer, ChangesNoLabelWhenTheMouseMovesOverAnOrdinaryPicture) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_EQ(labelsOf(viewer), L"00000.0000 00000.0000 00000.0000 ");
        pointAt(viewer, startOf(viewer, 40, 30), 5, 5);
        EXPECT_EQ(labelsOf(viewer), L"00000.0000 00000.0000 00000.0000 ");
    });
    EXPECT_EQ(see(bmp_), S_OK);
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

TEST_F(Viewer, ReadsOutThePixelUnderTheMouse) {
    RgbePicture pixels(300, 20);
    // (m + 0.5) / 128 in percent, and half of 1 in percent.
    pixels.fill({128, 64, 32, 129}).at(7, 3) = {0, 1, 2, 136};
    const std::wstring file = folder_.write(L"readout.hdr", pixels.file());
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_TRUE(eventuallyShows(viewer, host::pixels24(300, 20, pixels.bitmap(0, 1))));
        const POINT start = startOf(viewer, 300, 20);
        pointAt(viewer, start, 8, 3);
        EXPECT_EQ(labelsOf(viewer), L"100.3906 50.3906 25.3906 ");
        pointAt(viewer, start, 7, 3);
        EXPECT_EQ(labelsOf(viewer), L"50.0000 150.0000 250.0000 ");
    });
    EXPECT_EQ(seeHdr(file), S_OK);
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
        SendMessageW(viewer, WM_NULL, 0, 0);
    });
    EXPECT_EQ(seeHdr(tall_), S_OK);
    EXPECT_EQ(listener_.headers, 1);
}

TEST_F(Viewer, LeavesNothingBehindAfterFiftyOpenings) {
    constexpr int kFirstOpenings = 5;
    constexpr int kOpenings = 50;
    const auto open = [&] {
        const WindowDriver driver(kViewer, [](HWND) {});
        EXPECT_EQ(see(bmp_), S_OK);
    };
    // The system keeps some handles of its first windows for the next ones.
    for (int i = 0; i < kFirstOpenings; ++i) open();
    const std::size_t handles = host::freeGdiHandles();
    const int windows = host::ownWindowCount();
    for (int i = 0; i < kOpenings; ++i) open();
    EXPECT_GE(host::freeGdiHandles(), handles);
    EXPECT_EQ(host::ownWindowCount(), windows);
    WNDCLASSW description{};
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(host::component().path().c_str()), L"VrxCommon.PictureView",
                               &description));
}

}  // namespace
