#include "message_box_watcher.h"

#include <chrono>

namespace host {
namespace {

constexpr std::chrono::milliseconds kInterval(5);
constexpr int kReadingChecks = 100;
constexpr int kClosingChecks = 400;
// Waits for a thread that the system takes for hung as well, because it was busy before it showed its box.
constexpr UINT kAnswerTime = 1000;

std::wstring textOf(HWND window) {
    wchar_t text[1024] = {};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, kAnswerTime,
                        &length);
    return text;
}

std::wstring classOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

HICON iconOf(HWND window) {
    DWORD_PTR icon = 0;
    SendMessageTimeoutW(window, STM_GETICON, 0, 0, SMTO_NORMAL, kAnswerTime, &icon);
    return reinterpret_cast<HICON>(icon);
}

/// The message and the icon are in labels of their own.
MessageBox read(HWND window) {
    MessageBox box;
    box.title = textOf(window);
    int buttons = 0;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const std::wstring name = classOf(child);
        if (name == L"Button") ++buttons;
        if (name != L"Static") continue;
        if ((GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
            box.exclamation = iconOf(child) == LoadIconW(nullptr, IDI_EXCLAMATION);
            box.critical = iconOf(child) == LoadIconW(nullptr, IDI_ERROR);
        } else if (const std::wstring text = textOf(child); !text.empty()) {
            box.text = text;
        }
    }
    box.onlyOk = buttons == 1;
    box.yesNo = buttons == 2 && GetDlgItem(window, IDYES) && GetDlgItem(window, IDNO);
    return box;
}

/// A box that has just come may have no texts yet.
MessageBox readWhole(HWND window) {
    MessageBox box = read(window);
    for (int i = 0; i < kReadingChecks && box.title.empty(); ++i) {
        std::this_thread::sleep_for(kInterval);
        box = read(window);
    }
    return box;
}

/// Dialogs whose size the user can change are no message boxes.
BOOL CALLBACK findBox(HWND window, LPARAM found) {
    if (classOf(window) != L"#32770" || !IsWindowVisible(window) ||
        (GetWindowLongW(window, GWL_STYLE) & WS_THICKFRAME) != 0)
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

MessageBoxWatcher::MessageBoxWatcher(int answer)
    : watched_(GetCurrentThreadId()), answer_(answer), thread_([this] { watch(); }) {}

MessageBoxWatcher::~MessageBoxWatcher() {
    ended_ = true;
    if (thread_.joinable()) thread_.join();
}

std::vector<MessageBox> MessageBoxWatcher::boxes() {
    ended_ = true;
    thread_.join();
    return std::move(boxes_);
}

void MessageBoxWatcher::watch() {
    while (!ended_) {
        std::this_thread::sleep_for(kInterval);
        HWND box = nullptr;
        EnumThreadWindows(watched_, findBox, reinterpret_cast<LPARAM>(&box));
        if (!box) continue;
        boxes_.push_back(readWhole(box));
        PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(GetDlgItem(box, answer_) ? answer_ : IDOK), 0);
        for (int i = 0; i < kClosingChecks && IsWindow(box); ++i) std::this_thread::sleep_for(kInterval);
    }
}

}  // namespace host
