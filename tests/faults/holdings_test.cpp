// Nothing that is left behind escapes the counting.

#include <gtest/gtest.h>
#include <windows.h>

#include <array>

#include "com/win_resource.h"
#include "held_memory.h"
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

TEST(HeldMemory, TellsBlocksOfEveryHeapToTheByte) {
    if (faults::heldMemoryDoubt() != 0) GTEST_SKIP() << "the heap takes room for many small blocks at once";
    const std::size_t before = faults::heldMemory();
    EXPECT_EQ(faults::heldMemory(), before);
    std::array<void*, 100> small{};
    for (void*& block : small) block = HeapAlloc(GetProcessHeap(), 0, 12);
    EXPECT_EQ(faults::heldMemory(), before + 1200);
    for (void* const block : small) HeapFree(GetProcessHeap(), 0, block);
    EXPECT_EQ(faults::heldMemory(), before);
}

TEST(HeldMemory, TellsPagesOfNoHeap) {
    const std::size_t before = faults::heldMemory();
    void* const pages = VirtualAlloc(nullptr, 3 * 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    EXPECT_EQ(faults::heldMemory(), before + 3 * 4096);
    VirtualFree(pages, 0, MEM_RELEASE);
    EXPECT_EQ(faults::heldMemory(), before);
}

TEST(HeldMemory, TellsLargeBlocks) {
    constexpr std::size_t kLarge = 8 * 1024 * 1024;
    const std::size_t before = faults::heldMemory();
    void* const block = HeapAlloc(GetProcessHeap(), 0, kLarge);
    EXPECT_GE(faults::heldMemory(), before + kLarge);
    HeapFree(GetProcessHeap(), 0, block);
    EXPECT_EQ(faults::heldMemory(), before);
}

}  // namespace
