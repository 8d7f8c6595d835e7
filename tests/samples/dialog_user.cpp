// dialog_user STEP... - uses the dialogs of another program, one after the other. A step is the title of a
// window, which is closed; "open:" and the title of a load dialog, in which the first file is chosen and
// opened; or "click:" and the title of a window that is clicked in its middle. Fails when a window does not
// come, or does not go.

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "dialogs/resource.h"

namespace {

constexpr DWORD kPatience = 30000;
constexpr DWORD kInterval = 20;
constexpr UINT kAnswerTime = 10000;

/// Asks again and again, for half a minute at most.
template <class Question>
bool eventually(Question question) {
    for (DWORD waited = 0; waited < kPatience; waited += kInterval) {
        if (question()) return true;
        Sleep(kInterval);
    }
    return false;
}

struct Search {
    std::wstring title;
    HWND found = nullptr;
};

BOOL CALLBACK compare(HWND window, LPARAM search) {
    auto& wanted = *reinterpret_cast<Search*>(search);
    wchar_t title[200] = {};
    GetWindowTextW(window, title, 200);
    if (IsWindowVisible(window) && wanted.title == title) wanted.found = window;
    return wanted.found == nullptr;
}

HWND windowOf(const std::wstring& title) {
    Search search{title};
    EnumWindows(compare, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool send(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(window, message, wide, longer, SMTO_NORMAL, kAnswerTime, &answer) != 0;
}

/// Chooses the first file of the list as a click does, then presses Open.
bool openFirstFile(HWND dialog) {
    const HWND files = GetDlgItem(dialog, IDC_FILE1);
    return files && send(files, LB_SETCURSEL, 0, 0) &&
           send(dialog, WM_COMMAND, MAKEWPARAM(IDC_FILE1, LBN_SELCHANGE), reinterpret_cast<LPARAM>(files)) &&
           PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_COMMAND1, BN_CLICKED),
                        reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDC_COMMAND1)));
}

/// Clicks what stands in the middle of a window.
bool click(HWND window) {
    RECT inner{};
    GetClientRect(window, &inner);
    POINT place{inner.right / 2, inner.bottom / 2};
    for (HWND child = window; child;) {
        window = child;
        child = ChildWindowFromPointEx(window, place, CWP_SKIPINVISIBLE);
        if (child == window) break;
        MapWindowPoints(window, child, &place, 1);
    }
    const LPARAM at = MAKELPARAM(place.x, place.y);
    return PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at) != 0 &&
           PostMessageW(window, WM_LBUTTONUP, 0, at) != 0;
}

/// Takes the word off the beginning of a step.
bool takeWord(std::wstring& step, const wchar_t* word) {
    if (!step.starts_with(word)) return false;
    step.erase(0, std::wcslen(word));
    return true;
}

bool use(std::wstring title) {
    const bool open = takeWord(title, L"open:");
    const bool clicked = takeWord(title, L"click:");
    HWND window = nullptr;
    if (!eventually([&] { return (window = windowOf(title)) != nullptr; })) {
        std::printf("no window came: %ls\n", title.c_str());
        return false;
    }
    if (clicked) return click(window);
    const bool used = open ? openFirstFile(window) : PostMessageW(window, WM_CLOSE, 0, 0) != 0;
    if (!used || !eventually([&] { return !IsWindow(window) || !IsWindowVisible(window); })) {
        std::printf("the window stays: %ls\n", title.c_str());
        return false;
    }
    return true;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    for (int i = 1; i < count; ++i) {
        if (!use(arguments[i])) return 1;
    }
    return 0;
}
