// Scrolling in the zoom window: by keys, wheel, scroll bars and by dragging the picture; and resizing it.

#include <gtest/gtest.h>

#include "viewer.h"

using host::eventually;
using host::FileBytes;
using host::Pixels;
using host::Viewer;
using host::viewOf;

namespace {

constexpr int kWidth = 2700;
constexpr int kHeight = 2200;
constexpr int kLine = 24;
constexpr int kNotch = 3 * kLine;
constexpr UINT kHorizontalWheel = 0x020E;

/// Neighbours differ, and so do pixels that are a line or a page apart.
FileBytes largePicture() {
    FileBytes bits(host::strideOf(kWidth) * kHeight);
    for (std::size_t y = 0; y < kHeight; ++y) {
        for (std::size_t x = 0; x < kWidth; ++x) {
            std::uint8_t* pixel = &bits[y * host::strideOf(kWidth) + x * 3];
            pixel[0] = static_cast<std::uint8_t>(x);
            pixel[1] = static_cast<std::uint8_t>(y);
            pixel[2] = static_cast<std::uint8_t>((x >> 8) * 16 + (y >> 8));
        }
    }
    return bits;
}

/// A picture more than two screens large.
class ViewerOfALargePicture : public host::Viewer {
  protected:
    const FileBytes largeBits_ = largePicture();
    const Pixels whole_ = host::pixels24(kWidth, kHeight, largeBits_);
    const std::wstring large_ = folder_.write(L"large.bmp", host::bmpFile(kWidth, kHeight, largeBits_));
    HWND viewer_ = nullptr;

    /// Opens the picture and acts on its window from another thread.
    void withViewer(const std::function<void()>& act) {
        const host::WindowDriver driver(host::kViewer, [&](HWND viewer) {
            viewer_ = viewer;
            ASSERT_TRUE(eventually([&] { return focus() == viewOf(viewer); }));
            act();
        });
        EXPECT_EQ(see(large_), S_OK);
    }

    [[nodiscard]] HWND focus() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(viewer_, nullptr), &info);
        return info.hwndFocus;
    }
    [[nodiscard]] SIZE view() const { return host::innerOf(viewOf(viewer_)); }
    void press(WPARAM key) const { PostMessageW(focus(), WM_KEYDOWN, key, 1); }
    void turnWheel(UINT message, int notches, WORD keys = 0) const {
        turnWheelBy(message, notches * WHEEL_DELTA, keys);
    }
    void turnWheelBy(UINT message, int delta, WORD keys = 0) const {
        PostMessageW(focus(), message, MAKEWPARAM(keys, delta), 0);
    }
    void mouse(UINT message, WPARAM buttons, int x, int y) const {
        PostMessageW(viewOf(viewer_), message, buttons, MAKELPARAM(x, y));
    }
    /// Whether this pixel of the picture comes to stand in the view's corner.
    void expectCorner(int x, int y) const {
        Pixels shown;
        EXPECT_TRUE(eventually([&] {
            shown = host::shownIn(viewOf(viewer_));
            return shown == host::partOf(whole_, x, y, shown.width, shown.height);
        })) << x
            << ", " << y;
    }
};

TEST_F(ViewerOfALargePicture, ScrollsALineByEachArrowKey) {
    withViewer([&] {
        expectCorner(0, 0);
        press(VK_DOWN);
        expectCorner(0, kLine);
        press(VK_RIGHT);
        press(VK_RIGHT);
        expectCorner(2 * kLine, kLine);
        press(VK_UP);
        press(VK_LEFT);
        expectCorner(kLine, 0);
    });
}

TEST_F(ViewerOfALargePicture, ScrollsAPageByThePageKeys) {
    withViewer([&] {
        press(VK_NEXT);
        expectCorner(0, view().cy);
        press(VK_PRIOR);
        expectCorner(0, 0);
    });
}

TEST_F(ViewerOfALargePicture, GoesToItsEndsByEndAndHome) {
    withViewer([&] {
        press(VK_END);
        expectCorner(kWidth - view().cx, kHeight - view().cy);
        press(VK_HOME);
        expectCorner(0, 0);
    });
}

TEST_F(ViewerOfALargePicture, ScrollsThreeLinesByEachNotchOfTheWheel) {
    withViewer([&] {
        turnWheel(WM_MOUSEWHEEL, -2);
        expectCorner(0, 2 * kNotch);
        turnWheel(WM_MOUSEWHEEL, 1);
        expectCorner(0, kNotch);
        turnWheel(WM_MOUSEWHEEL, 100);
        expectCorner(0, 0);
    });
}

TEST_F(ViewerOfALargePicture, ScrollsToTheSidesByTheWheelWithShift) {
    withViewer([&] {
        turnWheel(WM_MOUSEWHEEL, -1, MK_SHIFT);
        expectCorner(kNotch, 0);
        turnWheel(WM_MOUSEWHEEL, 1, MK_SHIFT);
        expectCorner(0, 0);
    });
}

TEST_F(ViewerOfALargePicture, ScrollsToTheSidesByATiltedWheel) {
    withViewer([&] {
        turnWheel(kHorizontalWheel, 1);
        expectCorner(kNotch, 0);
        turnWheel(kHorizontalWheel, -1);
        expectCorner(0, 0);
    });
}

TEST_F(ViewerOfALargePicture, AddsSmallWheelStepsUp) {
    withViewer([&] {
        for (int i = 0; i < WHEEL_DELTA; ++i) turnWheelBy(WM_MOUSEWHEEL, -1);
        expectCorner(0, kNotch);
        for (int i = 0; i < 3; ++i) turnWheelBy(kHorizontalWheel, WHEEL_DELTA / 3);
        expectCorner(kNotch, kNotch);
    });
}

/// What the user has chosen for a notch, for as long as this exists.
class LinesPerNotch {
  public:
    explicit LinesPerNotch(UINT lines) {
        SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &before_, 0);
        SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, lines, nullptr, 0);
    }
    LinesPerNotch(const LinesPerNotch&) = delete;
    LinesPerNotch& operator=(const LinesPerNotch&) = delete;
    ~LinesPerNotch() { SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, before_, nullptr, 0); }

  private:
    UINT before_ = 3;
};

TEST_F(ViewerOfALargePicture, ScrollsTheUsersLinesByEachNotch) {
    withViewer([&] {
        {
            const LinesPerNotch five(5);
            turnWheel(WM_MOUSEWHEEL, -1);
            expectCorner(0, 5 * kLine);
        }
        {
            const LinesPerNotch page(WHEEL_PAGESCROLL);
            turnWheel(WM_MOUSEWHEEL, -1);
            expectCorner(0, 5 * kLine + view().cy);
        }
        const LinesPerNotch none(0);
        turnWheel(WM_MOUSEWHEEL, 1);
        host::settle(viewer_);
        expectCorner(0, 5 * kLine + view().cy);
    });
}

TEST_F(ViewerOfALargePicture, ScrollsByItsScrollBars) {
    withViewer([&] {
        const HWND view = viewOf(viewer_);
        const SIZE page = this->view();
        SendMessageW(view, WM_VSCROLL, SB_LINEDOWN, 0);
        SendMessageW(view, WM_HSCROLL, SB_PAGERIGHT, 0);
        expectCorner(page.cx, kLine);
        SCROLLINFO across{sizeof across, SIF_ALL, 0, 0, 0, 0, 0};
        EXPECT_TRUE(GetScrollInfo(view, SB_HORZ, &across));
        EXPECT_EQ(across.nMax, kWidth - 1);
        EXPECT_EQ(across.nPage, static_cast<UINT>(page.cx));
        EXPECT_EQ(across.nPos, page.cx);
        SendMessageW(view, WM_VSCROLL, SB_LINEUP, 0);
        SendMessageW(view, WM_HSCROLL, SB_PAGELEFT, 0);
        expectCorner(0, 0);
    });
}

TEST_F(ViewerOfALargePicture, FollowsAMouseThatDragsItAndStaysOpen) {
    withViewer([&] {
        mouse(WM_LBUTTONDOWN, MK_LBUTTON, 300, 200);
        mouse(WM_MOUSEMOVE, MK_LBUTTON, 250, 180);
        expectCorner(50, 20);
        mouse(WM_MOUSEMOVE, MK_LBUTTON, 249, 170);
        mouse(WM_LBUTTONUP, 0, 249, 170);
        expectCorner(51, 30);
        mouse(WM_MOUSEMOVE, 0, 100, 100);
        host::settle(viewer_);
        expectCorner(51, 30);
        EXPECT_TRUE(IsWindowVisible(viewer_));
    });
}

TEST_F(ViewerOfALargePicture, ClosesOnAClickOfAHandThatIsNotQuiteStill) {
    withViewer([&] {
        mouse(WM_LBUTTONDOWN, MK_LBUTTON, 300, 200);
        mouse(WM_MOUSEMOVE, MK_LBUTTON, 301, 200);
        mouse(WM_LBUTTONUP, 0, 301, 200);
        EXPECT_TRUE(eventually([&] { return !IsWindow(viewer_); }));
    });
}

TEST_F(ViewerOfALargePicture, ClosesOnEscAtItsView) {
    withViewer([&] {
        press(VK_ESCAPE);
        EXPECT_TRUE(eventually([&] { return !IsWindow(viewer_); }));
    });
}

TEST_F(ViewerOfALargePicture, KeepsItsCornerWhenItGetsSmallerAndItsEndWhenItGetsLarger) {
    withViewer([&] {
        const SIZE before = view();
        press(VK_RIGHT);
        expectCorner(kLine, 0);
        SetWindowPos(viewer_, nullptr, 0, 0, 500, 400, SWP_NOZORDER);
        EXPECT_LT(view().cx, before.cx);
        expectCorner(kLine, 0);
        press(VK_END);
        expectCorner(kWidth - view().cx, kHeight - view().cy);
        SetWindowPos(viewer_, nullptr, 0, 0, 600, 500, SWP_NOZORDER);
        expectCorner(kWidth - view().cx, kHeight - view().cy);
    });
}

TEST_F(Viewer, CentresAPictureThatFitsAndScrollsItWhenTheWindowGetsSmaller) {
    const host::WindowDriver driver(host::kViewer, [&](HWND viewer) {
        SetWindowPos(viewer, nullptr, 0, 0, 700, 600, SWP_NOZORDER);
        EXPECT_TRUE(host::eventuallyShows(viewer, host::pixels24(40, 30, bits_)));
        EXPECT_EQ(GetWindowLongW(viewOf(viewer), GWL_STYLE) & (WS_HSCROLL | WS_VSCROLL), 0);
        SetWindowPos(viewer, nullptr, 0, 0, 150, 40, SWP_NOZORDER);
        EXPECT_TRUE(
            eventually([&] { return (GetWindowLongW(viewOf(viewer), GWL_STYLE) & WS_VSCROLL) != 0; }));
    });
    EXPECT_EQ(see(bmp_), S_OK);
}

}  // namespace
