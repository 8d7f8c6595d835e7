#include "user.h"

#include <array>
#include <string>
#include <utility>

namespace faults {
namespace {

constexpr UINT kInterval = 10;

thread_local User* current = nullptr;

BOOL CALLBACK findFront(HWND window, LPARAM found) {
    if (!isDialog(window) || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

void press(HWND dialog, int button) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

/// One of the system's: a message box, or a dialog that chooses a colour or a file.
void end(HWND dialog, bool accepts) {
    const std::array accepting = {IDYES, IDOK, IDRETRY, IDIGNORE, IDCANCEL};
    const std::array refusing = {IDCANCEL, IDNO, IDABORT, IDOK, IDCONTINUE};
    for (const int button : accepts ? accepting : refusing) {
        if (GetDlgItem(dialog, button)) return press(dialog, button);
    }
    press(dialog, IDCANCEL);
}

}  // namespace

HWND frontDialog() {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), findFront, reinterpret_cast<LPARAM>(&dialog));
    return dialog;
}

bool isDialog(HWND window) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return std::wstring(name) == L"#32770";
}

bool isOfComponent(HWND window) {
    return reinterpret_cast<HMODULE>(GetWindowLongPtrW(window, GWLP_HINSTANCE)) ==
           GetModuleHandleW(L"VrxCommon.dll");
}

User::User(std::vector<UserStep> steps)
    : steps_(std::move(steps)),
      outer_(std::exchange(current, this)),
      timer_(SetTimer(nullptr, 0, kInterval, tick)) {}

User::~User() {
    KillTimer(nullptr, timer_);
    current = outer_;
    // What was posted to windows that are gone.
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

void CALLBACK User::tick(HWND, UINT, UINT_PTR, DWORD) {
    const HWND dialog = frontDialog();
    if (dialog && current) current->use(dialog);
}

void User::use(HWND dialog) {
    if (!isOfComponent(dialog)) {
        end(dialog, done_ < steps_.size());
    } else if (done_ < steps_.size()) {
        steps_[done_++](dialog);
    } else {
        PostMessageW(dialog, WM_CLOSE, 0, 0);
    }
}

}  // namespace faults
