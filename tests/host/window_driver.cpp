#include "window_driver.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <utility>

#include "com/win_resource.h"
#include "rgbe_picture.h"

namespace host {
namespace {

constexpr std::chrono::milliseconds kInterval(5);
constexpr std::chrono::milliseconds kLongest(30'000);

struct Search {
    const std::wstring& caption;
    HWND found;
};

BOOL CALLBACK compare(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (!IsWindowVisible(window) || captionOf(window) != search.caption) return TRUE;
    search.found = window;
    return FALSE;
}

BOOL CALLBACK countOne(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

/// A mark in a queue: an event that is set when the mark is taken out.
UINT markMessage() {
    static const UINT message = RegisterWindowMessageW(L"VrxCommon.Tests.Mark");
    return message;
}

LRESULT CALLBACK watchQueue(int code, WPARAM wide, LPARAM longer) {
    const auto* message = reinterpret_cast<const MSG*>(longer);
    if (code == HC_ACTION && wide == PM_REMOVE && message->message == markMessage())
        SetEvent(reinterpret_cast<HANDLE>(message->wParam));
    return CallNextHookEx(nullptr, code, wide, longer);
}

/// Sees each message that a thread takes from its queue.
using QueueHook = vrx::Resource<HHOOK, [](HHOOK hook) { UnhookWindowsHookEx(hook); }>;

void put32(FileBytes& bytes, std::size_t value) {
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

BITMAPINFO info24(int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    return info;
}

}  // namespace

bool eventually(const std::function<bool()>& question) {
    const auto end = std::chrono::steady_clock::now() + kLongest;
    while (!question()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(kInterval);
    }
    return true;
}

HWND windowOf(DWORD thread, const std::wstring& caption) {
    Search search{caption, nullptr};
    EnumThreadWindows(thread, compare, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

int ownWindowCount() {
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), countOne, reinterpret_cast<LPARAM>(&count));
    return count;
}

std::wstring captionOf(HWND window) {
    wchar_t text[256] = {};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, 1000, &length);
    return text;
}

void settle(HWND window) {
    const vrx::KernelHandle taken(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const QueueHook hook(
        SetWindowsHookExW(WH_GETMESSAGE, watchQueue, nullptr, GetWindowThreadProcessId(window, nullptr)));
    PostMessageW(window, markMessage(), reinterpret_cast<WPARAM>(taken.get()), 0);
    EXPECT_TRUE(eventually(
        [&] { return !IsWindow(window) || WaitForSingleObject(taken.get(), 0) == WAIT_OBJECT_0; }));
}

void click(HWND window, int x, int y) {
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

Pixels shownIn(HWND window) {
    RECT inner{};
    GetClientRect(window, &inner);
    const BITMAPINFO info = info24(inner.right, inner.bottom);
    void* bits = nullptr;
    const vrx::Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const vrx::MemoryDc copy(CreateCompatibleDC(nullptr));
    if (!bitmap || !copy) return {};
    const HGDIOBJ previous = SelectObject(copy.get(), bitmap.get());
    const HDC shown = GetDC(window);
    BitBlt(copy.get(), 0, 0, inner.right, inner.bottom, shown, 0, 0, SRCCOPY);
    ReleaseDC(window, shown);
    SelectObject(copy.get(), previous);
    GdiFlush();
    FileBytes bytes(strideOf(inner.right) * static_cast<std::size_t>(inner.bottom));
    std::memcpy(bytes.data(), bits, bytes.size());
    return pixels24(inner.right, inner.bottom, std::move(bytes));
}

Pixels partOf(const Pixels& pixels, int x, int y, int width, int height) {
    if (x < 0 || y < 0 || x + width > pixels.width || y + height > pixels.height) return {};
    FileBytes bytes(strideOf(width) * static_cast<std::size_t>(height));
    for (int row = 0; row < height; ++row) {
        const auto from = static_cast<std::size_t>(pixels.height - y - height + row) * strideOf(pixels.width);
        std::memcpy(&bytes[static_cast<std::size_t>(row) * strideOf(width)],
                    &pixels.bytes[from + static_cast<std::size_t>(x) * 3],
                    static_cast<std::size_t>(width) * 3);
    }
    return pixels24(width, height, std::move(bytes));
}

FileBytes bmpFile(int width, int height, const FileBytes& bits) {
    FileBytes file{'B', 'M'};
    put32(file, 54 + bits.size());
    put32(file, 0);
    put32(file, 54);
    put32(file, 40);
    put32(file, static_cast<std::size_t>(width));
    put32(file, static_cast<std::size_t>(height));
    put32(file, 1 | 24 << 16);
    for (int i = 0; i < 6; ++i) put32(file, 0);
    file.insert(file.end(), bits.begin(), bits.end());
    return file;
}

FileBytes bmpFile(int width, int height, COLORREF color) {
    FileBytes bits(strideOf(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel =
                &bits[static_cast<std::size_t>(y) * strideOf(width) + static_cast<std::size_t>(x) * 3];
            pixel[0] = GetBValue(color);
            pixel[1] = GetGValue(color);
            pixel[2] = GetRValue(color);
        }
    }
    return bmpFile(width, height, bits);
}

WindowDriver::WindowDriver(std::wstring caption, std::function<void(HWND)> act)
    : thread_([caption = std::move(caption), act = std::move(act), thread = GetCurrentThreadId()] {
          HWND window = nullptr;
          EXPECT_TRUE(eventually([&] { return (window = windowOf(thread, caption)) != nullptr; }));
          if (!window) return;
          settle(window);
          act(window);
          PostMessageW(window, WM_CLOSE, 0, 0);
          EXPECT_TRUE(eventually([&] { return !IsWindow(window); }));
      }) {}

WindowDriver::~WindowDriver() { thread_.join(); }

}  // namespace host
