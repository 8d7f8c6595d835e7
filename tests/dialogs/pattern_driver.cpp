#include "pattern_driver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "dialogs/resource.h"
#include "mouse.h"

namespace host {
namespace {

constexpr int kGrip = 5;  // where flags are pressed, from their left and top edges

struct PopupSearch {
    HWND owner;
    HWND found;
};

BOOL CALLBACK compareOwner(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<PopupSearch*>(parameter);
    if (!IsWindowVisible(window) || GetWindow(window, GW_OWNER) != search.owner) return TRUE;
    search.found = window;
    return FALSE;
}

HWND popupOf(HWND owner) {
    PopupSearch search{owner, nullptr};
    EnumThreadWindows(GetWindowThreadProcessId(owner, nullptr), compareOwner,
                      reinterpret_cast<LPARAM>(&search));
    return search.found;
}

COLORREF pixelOf(HWND window, int x, int y) {
    const HDC dc = GetDC(window);
    const COLORREF color = GetPixel(dc, x, y);
    ReleaseDC(window, dc);
    return color;
}

void pressMouse(DWORD event) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = event;
    SendInput(1, &input, sizeof input);
}

bool isInSizing(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return (info.flags & GUI_INMOVESIZE) != 0;
}

/// Holds the button down there until the window is being sized: a press is lost when the display shows the window elsewhere
/// or below another one at that moment.
void grip(HWND window, POINT corner) {
    EXPECT_TRUE(eventually([&] {
        moveMouse(corner);
        pressMouse(MOUSEEVENTF_LEFTDOWN);
        for (int i = 0; i < 100 && !isInSizing(window); ++i) Sleep(10);
        if (isInSizing(window)) return true;
        pressMouse(MOUSEEVENTF_LEFTUP);
        settle(window);
        return false;
    }));
}

}  // namespace

std::wstring textOf(HWND dialog, int id) { return captionOf(GetDlgItem(dialog, id)); }

void setText(HWND dialog, int id, const std::wstring& text) {
    SendMessageW(GetDlgItem(dialog, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

HWND PatternWindow::flag(int index) const { return GetDlgItem(window_, IDC_PICFLAGUP + index); }

int PatternWindow::flagCount() const {
    int count = 0;
    while (flag(count)) ++count;
    return count;
}

int PatternWindow::column(int index) const {
    RECT place{};
    GetWindowRect(flag(index), &place);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
    return place.left - 8;
}

COLORREF PatternWindow::flagColor(int index) const { return pixelOf(flag(index), kGrip, kGrip); }

int PatternWindow::selected() const {
    for (int i = 0; i < flagCount(); ++i) {
        // A flag that another one covers has that one's pixels.
        const bool chosen = (GetWindowLongW(flag(i), GWL_STYLE) & WS_TABSTOP) != 0;
        if (chosen && pixelOf(flag(i), 0, kGrip) == RGB(64, 64, 32)) return i;
    }
    return -1;
}

std::wstring PatternWindow::labels() const {
    return textOf(window_, IDC_LBLRED) + L" " + textOf(window_, IDC_LBLGREEN) + L" " +
           textOf(window_, IDC_LBLBLUE);
}

std::wstring PatternWindow::tip() const {
    const HWND tip = control(IDC_PICTOOLTIPS);
    return IsWindowVisible(tip) ? textOf(tip, IDC_LBLPERC) : L"";
}

int PatternWindow::rampWidth() const {
    RECT inner{};
    GetClientRect(control(IDC_PICPATTERN), &inner);
    return inner.right;
}

Pixels PatternWindow::ramp() const { return shownIn(control(IDC_PICPATTERN)); }

void PatternWindow::resize(int width, int height) const {
    SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
}

SIZE PatternWindow::size() const {
    RECT outer{};
    GetWindowRect(window_, &outer);
    return {outer.right - outer.left, outer.bottom - outer.top};
}

void PatternWindow::setRampWidth(int width) const {
    resize(static_cast<int>(size().cx) + width - rampWidth());
    EXPECT_EQ(rampWidth(), width);
}

void PatternWindow::dragCorner(int x, int y) const {
    SetWindowPos(window_, nullptr, 10, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    const POINT corner{10 + size().cx - 2, 10 + size().cy - 2};
    grip(window_, corner);
    moveMouse({corner.x + x, corner.y + y});
    pressMouse(MOUSEEVENTF_LEFTUP);
    EXPECT_TRUE(eventually([&] { return !isInSizing(window_); }));
}

void PatternWindow::click(int id) const { SendMessageW(control(id), BM_CLICK, 0, 0); }

void PatternWindow::press(int index) const {
    SendMessageW(flag(index), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(kGrip, kGrip));
}

void PatternWindow::dragTo(int index, int columns) const {
    SendMessageW(flag(index), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(kGrip + columns, kGrip));
}

void PatternWindow::release(int index) const {
    SendMessageW(flag(index), WM_LBUTTONUP, 0, MAKELPARAM(kGrip, kGrip));
}

void PatternWindow::drag(int index, int columns) const {
    press(index);
    dragTo(index, columns);
    release(index);
}

void PatternWindow::key(int index, int key) const {
    PostMessageW(flag(index), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
    PostMessageW(flag(index), WM_KEYUP, static_cast<WPARAM>(key), 1);
}

void PatternWindow::type(std::initializer_list<int> keys) const {
    EXPECT_TRUE(eventually([&] { return GetForegroundWindow() == window_; }));
    std::vector<INPUT> inputs;
    const auto add = [&](int key, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = static_cast<WORD>(key);
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    for (const int key : keys) add(key, 0);
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) add(*key, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

HWND PatternWindow::open(const std::function<void()>& start) const {
    start();
    HWND dialog = nullptr;
    EXPECT_TRUE(
        eventually([&] { return (dialog = popupOf(window_)) != nullptr && IsWindowVisible(dialog); }));
    settle(dialog);
    return dialog;
}

HWND PatternWindow::openByMenu(int id) const {
    return open([&] { PostMessageW(window_, WM_COMMAND, static_cast<WPARAM>(id), 0); });
}

void PatternWindow::end(HWND dialog, int button) const {
    PostMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
    EXPECT_TRUE(eventually([&] { return !IsWindow(dialog) && IsWindowEnabled(window_); }));
    settle(window_);
}

void PatternWindow::chooseFile(int menuId, const std::wstring& path) const {
    const HWND dialog = openByMenu(menuId);
    EXPECT_TRUE(eventually([&] {
        setText(dialog, kFileNameEdit, path);
        return textOf(dialog, kFileNameEdit) == path;
    }));
    end(dialog, IDOK);
}

std::wstring editPattern(_CVrxPattern& pattern, const std::wstring& text,
                         const std::function<void(const PatternWindow&)>& act) {
    const WindowDriver driver(L"Pattern", [&](HWND window) { act(PatternWindow(window)); });
    BSTR edited = SysAllocString(text.c_str());
    EXPECT_EQ(pattern.Load(&edited), S_OK);
    const vrx::Bstr owner(edited);
    return edited ? edited : L"(null)";
}

}  // namespace host
