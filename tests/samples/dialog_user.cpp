// dialog_user STEP... - uses the dialogs of another program, one after the other. A step is the title of a
// window, which is closed, or "open:" and the title of a load dialog, in which the first file is chosen and
// opened. Fails when a window does not come, or does not go.

#include <windows.h>

#include <cstdio>
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

bool use(std::wstring title) {
    const bool open = title.starts_with(L"open:");
    if (open) title.erase(0, 5);
    HWND window = nullptr;
    if (!eventually([&] { return (window = windowOf(title)) != nullptr; })) {
        std::printf("no window came: %ls\n", title.c_str());
        return false;
    }
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
