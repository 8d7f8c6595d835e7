#include "message_box_watcher.h"

#include <chrono>

namespace host {
namespace {

constexpr std::chrono::milliseconds kInterval(5);
constexpr int kClosingChecks = 400;
constexpr UINT kAnswerTime = 1000;

std::wstring textOf(HWND window) {
    wchar_t text[1024] = {};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG,
                        kAnswerTime, &length);
    return text;
}

std::wstring classOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

HICON iconOf(HWND window) {
    DWORD_PTR icon = 0;
    SendMessageTimeoutW(window, STM_GETICON, 0, 0, SMTO_ABORTIFHUNG, kAnswerTime, &icon);
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
        } else if (const std::wstring text = textOf(child); !text.empty()) {
            box.text = text;
        }
    }
    box.onlyOk = buttons == 1;
    return box;
}

BOOL CALLBACK findBox(HWND window, LPARAM found) {
    if (classOf(window) != L"#32770" || !IsWindowVisible(window)) return TRUE;
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
        boxes_.push_back(read(box));
        PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer_), 0);
        for (int i = 0; i < kClosingChecks && IsWindow(box); ++i) std::this_thread::sleep_for(kInterval);
    }
}

}  // namespace host
