// Nothing that is left behind escapes the counting.

#include <gtest/gtest.h>
#include <windows.h>

#include "com/win_resource.h"
#include "holdings.h"

using faults::Holdings;

namespace {

TEST(Holdings, TellHandlesDrawingObjectsAndWindows) {
    const Holdings before;
    EXPECT_FALSE(Holdings().hasLost(before));
    const vrx::KernelHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    EXPECT_EQ(Holdings().kernel, before.kernel + 1);
    const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
    EXPECT_EQ(Holdings().drawing, before.drawing + 1);
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_GT(Holdings().windows, before.windows);
    DestroyWindow(window);
    DeleteObject(pen);
}

}  // namespace
