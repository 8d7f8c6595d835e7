// The frame around a flag of the pattern editor, pixel by pixel.

#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "com/win_resource.h"
#include "pattern/editor/modPattern.h"

namespace {

constexpr COLORREF kUntouched = RGB(1, 2, 3);
constexpr RECT kFrame{2, 3, 12, 15};

/// A canvas with one frame on it.
class Canvas {
  public:
    explicit Canvas(bool highlighted) : dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), kSize, kSize, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        bitmap_ = vrx::Bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0));
        previous_ = SelectObject(dc_.get(), bitmap_.get());
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x) SetPixel(dc_.get(), x, y, kUntouched);
        }
        vrx::Draw_FlagFrame(dc_.get(), kFrame.left, kFrame.top, kFrame.right, kFrame.bottom, highlighted);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() { SelectObject(dc_.get(), previous_); }

    [[nodiscard]] COLORREF at(LONG x, LONG y) const { return GetPixel(dc_.get(), x, y); }
    /// Through the middle, from the left edge of the frame and the pixel before it.
    [[nodiscard]] std::vector<COLORREF> row() const {
        std::vector<COLORREF> colors;
        for (LONG x = kFrame.left - 1; x <= kFrame.right; ++x) colors.push_back(at(x, 9));
        return colors;
    }
    [[nodiscard]] std::vector<COLORREF> column() const {
        std::vector<COLORREF> colors;
        for (LONG y = kFrame.top - 1; y <= kFrame.bottom; ++y) colors.push_back(at(7, y));
        return colors;
    }

  private:
    static constexpr int kSize = 20;

    vrx::MemoryDc dc_;
    vrx::Bitmap bitmap_;
    HGDIOBJ previous_;
};

/// Two lines at either end and as many untouched pixels as there are between them.
std::vector<COLORREF> line(COLORREF third, COLORREF fourth, COLORREF second, COLORREF first, int inside) {
    std::vector<COLORREF> colors{kUntouched, third, fourth};
    colors.insert(colors.end(), static_cast<std::size_t>(inside), kUntouched);
    colors.insert(colors.end(), {second, first, kUntouched});
    return colors;
}

TEST(FlagFrame, IsRaisedInGreys) {
    const Canvas canvas(false);
    const COLORREF first = RGB(64, 64, 64);
    const COLORREF second = RGB(127, 127, 127);
    const COLORREF third = RGB(197, 197, 197);
    const COLORREF fourth = RGB(255, 255, 255);
    EXPECT_EQ(canvas.row(), line(third, fourth, second, first, 6));
    EXPECT_EQ(canvas.column(), line(third, fourth, second, first, 8));
}

TEST(FlagFrame, OfTheSelectedStopIsSunkenInYellowTones) {
    const Canvas canvas(true);
    const COLORREF first = RGB(197, 197, 95);
    const COLORREF second = RGB(255, 255, 127);
    const COLORREF third = RGB(64, 64, 32);
    const COLORREF fourth = RGB(127, 127, 64);
    EXPECT_EQ(canvas.row(), line(third, fourth, second, first, 6));
    EXPECT_EQ(canvas.column(), line(third, fourth, second, first, 8));
}

TEST(FlagFrame, IsClosedAtItsCorners) {
    const Canvas canvas(false);
    for (const LONG x : {kFrame.left, kFrame.left + 1, kFrame.right - 2, kFrame.right - 1}) {
        for (const LONG y : {kFrame.top, kFrame.top + 1, kFrame.bottom - 2, kFrame.bottom - 1})
            EXPECT_NE(canvas.at(x, y), kUntouched) << x << ',' << y;
    }
}

}  // namespace
