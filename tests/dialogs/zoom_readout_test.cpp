// What the zoom window reads out of an HDR picture, and where the mouse is for that.

#include <gtest/gtest.h>

#include "mouse.h"
#include "viewer.h"

using host::captionOf;
using host::eventually;
using host::eventuallyShows;
using host::innerOf;
using host::kLabels;
using host::kViewer;
using host::labelsOf;
using host::outerOf;
using host::pointAt;
using host::RgbePicture;
using host::startOf;
using host::Viewer;
using host::viewOf;
using host::WindowDriver;

namespace {

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

TEST_F(Viewer, HasRoomForTheDigitsOfBrightPixelsInAWideWindow) {
    const std::wstring bright =
        folder_.write(L"bright.hdr", RgbePicture(600, 40).fill({200, 200, 200, 170}).file());
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        pointAt(viewer, startOf(viewer, 600, 40), 5, 5);
        // 200.5 * 2^(170 - 136), in percent.
        EXPECT_TRUE(eventually([&] { return labelsOf(viewer).find(L"344456377139200.0000") == 0; }))
            << labelsOf(viewer);
        for (const int id : kLabels) {
            const HWND label = GetDlgItem(viewer, id);
            const HDC dc = GetDC(label);
            SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0)));
            SIZE text{};
            GetTextExtentPoint32W(dc, L"344456377139200.0000", 18, &text);
            ReleaseDC(label, dc);
            EXPECT_LE(text.cx, innerOf(label).cx);
        }
    });
    EXPECT_EQ(seeHdr(bright), S_OK);
}

/// Each row has values of its own: those of row y are 100 * (y % 128 + 128.5) / 128 percent.
RgbePicture rows(int width, int height) {
    RgbePicture picture(width, height);
    for (int y = 0; y < height; ++y) {
        const auto mantissa = static_cast<std::uint8_t>(128 + y % 128);
        for (int x = 0; x < width; ++x) picture.at(x, y) = {mantissa, mantissa, mantissa, 129};
    }
    return picture;
}

TEST_F(Viewer, FollowsScrollingUnderARestingMouse) {
    const std::wstring file = folder_.write(L"rows.hdr", rows(300, 2000).file());
    host::Listener listener(hdr_);
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        EXPECT_TRUE(eventually([&] { return listener.finishes == 1; }));
        POINT start = startOf(viewer, 300, 0);
        POINT pixel{start.x + 5, 10};
        ClientToScreen(viewOf(viewer), &pixel);
        host::moveMouse(pixel);
        EXPECT_TRUE(eventually([&] { return labelsOf(viewer).find(L"108.2031 ") == 0; })) << labelsOf(viewer);
        // A line of 24 pixels on: row 34.
        PostMessageW(viewOf(viewer), WM_KEYDOWN, VK_DOWN, 1);
        EXPECT_TRUE(eventually([&] { return labelsOf(viewer).find(L"126.9531 ") == 0; })) << labelsOf(viewer);
        SendMessageW(viewOf(viewer), WM_VSCROLL, SB_LINEUP, 0);
        EXPECT_EQ(labelsOf(viewer).find(L"108.2031 "), 0u) << labelsOf(viewer);
    });
    EXPECT_EQ(seeHdr(file), S_OK);
}

TEST_F(Viewer, IsNeverNarrowerThanItsReadOuts) {
    const WindowDriver driver(kViewer, [&](HWND viewer) {
        SetWindowPos(viewer, nullptr, 0, 0, 20, 20, SWP_NOZORDER);
        const SIZE inner = innerOf(viewer);
        for (const int id : kLabels) {
            RECT label = outerOf(GetDlgItem(viewer, id));
            MapWindowPoints(nullptr, viewer, reinterpret_cast<POINT*>(&label), 2);
            EXPECT_LE(label.right, inner.cx);
        }
    });
    EXPECT_EQ(seeHdr(rgbe_), S_OK);
}

}  // namespace
