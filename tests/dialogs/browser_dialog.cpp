#include "browser_dialog.h"

#include <algorithm>
#include <array>

#include "dialogs/resource.h"

namespace {

constexpr std::array<std::u16string_view, 4> kTypes{u"*.HDR", u"*.JPG;*.JPEG", u"*.*", u"*.a?"};
constexpr wchar_t kClass[] = L"VrxTest.BrowserDialog";

constexpr wchar_t kMissingFolder[] = L"C:\\vrx test of a folder that there is not";

std::wstring freeDriveName() {
    wchar_t letter = L'Y';
    while (GetLogicalDrives() >> (letter - L'A') & 1) --letter;
    return {letter, L':'};
}

std::wstring comboText(HWND combo) {
    wchar_t text[300] = {};
    GetWindowTextW(combo, text, 300);
    return text;
}

}  // namespace

BrowserDialog::BrowserDialog(vrx::FileBrowser& browser) : browser_(browser) {
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.lpszClassName = kClass;
    RegisterClassW(&description);
    window_ = CreateWindowExW(WS_EX_TOPMOST, kClass, L"Browser", WS_POPUP | WS_VISIBLE, 10, 10, 420, 400,
                              nullptr, nullptr, nullptr, this);
    addControl(L"COMBOBOX", IDC_DRIVE1, CBS_DROPDOWNLIST | WS_VSCROLL, {10, 10, 200, 200});
    addControl(L"LISTBOX", IDC_DIR1,
               LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT |
                   LBS_WANTKEYBOARDINPUT | WS_VSCROLL | WS_BORDER,
               {10, 40, 200, 300});
    addControl(L"LISTBOX", IDC_FILE1, LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_BORDER,
               {210, 40, 400, 300});
    addControl(L"COMBOBOX", IDC_COMBO1, CBS_DROPDOWNLIST | WS_VSCROLL, {210, 310, 400, 400});
    addControl(L"BUTTON", IDC_COMMAND3, 0, {210, 10, 240, 34});
    attach();
}

BrowserDialog::~BrowserDialog() {
    attached_ = false;
    DestroyWindow(window_);
    UnregisterClassW(kClass, nullptr);
}

void BrowserDialog::attach() {
    browser_.attach(window_, kTypes);
    attached_ = true;
}

void BrowserDialog::addControl(const wchar_t* className, int id, DWORD style, RECT place) const {
    CreateWindowExW(0, className, L"", style | WS_CHILD | WS_VISIBLE | WS_TABSTOP, place.left, place.top,
                    place.right - place.left, place.bottom - place.top, window_,
                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
}

LRESULT CALLBACK BrowserDialog::procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(longer);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* dialog = reinterpret_cast<BrowserDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    LRESULT answer = 0;
    if (dialog && dialog->attached_) {
        if (dialog->browser_.handleMessage(message, wide, longer, answer)) return answer;
        if (message == WM_COMMAND && dialog->browser_.handleCommand(LOWORD(wide), HIWORD(wide))) return 0;
    }
    return DefWindowProcW(window, message, wide, longer);
}

EmptyDrive::EmptyDrive() : name_(freeDriveName()) { DefineDosDeviceW(0, name_.c_str(), kMissingFolder); }

EmptyDrive::~EmptyDrive() { DefineDosDeviceW(DDD_REMOVE_DEFINITION, name_.c_str(), kMissingFolder); }

OtherDrive::OtherDrive(wchar_t letter) {
    const DWORD drives = GetLogicalDrives();
    for (wchar_t other = L'Z'; other >= L'A' && !letter_; --other) {
        const std::wstring root{other, L':', L'\\'};
        if (other != letter && (drives >> (other - L'A') & 1) && GetDriveTypeW(root.c_str()) == DRIVE_FIXED)
            letter_ = other;
    }
    if (letter_) return;
    defined_ = freeDriveName();
    DefineDosDeviceW(0, defined_.c_str(), std::wstring{letter, L':', L'\\'}.c_str());
    letter_ = defined_[0];
}

OtherDrive::~OtherDrive() {
    if (!defined_.empty()) DefineDosDeviceW(DDD_REMOVE_DEFINITION, defined_.c_str(), nullptr);
}

void BrowserTest::makeFolder(const std::wstring& name) const {
    EXPECT_TRUE(CreateDirectoryW((folder_ / name).c_str(), nullptr));
}

void BrowserTest::mark(const std::wstring& name, DWORD attribute) const {
    EXPECT_TRUE(SetFileAttributesW((folder_ / name).c_str(), attribute));
}

std::wstring BrowserTest::folder() const {
    const std::u16string path = browser_.folder();
    return {path.begin(), path.end()};
}

std::wstring BrowserTest::file() const {
    const std::u16string name = browser_.fileName();
    return {name.begin(), name.end()};
}

Rows BrowserTest::rows(int id) const {
    Rows all;
    const LRESULT count = send(id, LB_GETCOUNT);
    for (WPARAM row = 0; row < static_cast<WPARAM>(count); ++row) {
        std::wstring name(static_cast<std::size_t>(send(id, LB_GETTEXTLEN, row)) + 1, L'\0');
        send(id, LB_GETTEXT, row, reinterpret_cast<LPARAM>(name.data()));
        name.pop_back();
        all.push_back(name);
    }
    return all;
}

Rows BrowserTest::files() const { return rows(IDC_FILE1); }

Rows BrowserTest::foldersInside() const {
    Rows all = rows(IDC_DIR1);
    all.erase(all.begin(), all.begin() + std::ranges::count(folder(), L'\\') + 1);
    return all;
}

std::wstring BrowserTest::selected(int id) const {
    const LRESULT row = send(id, LB_GETCURSEL);
    return row < 0 ? L"" : rows(id)[static_cast<std::size_t>(row)];
}

void BrowserTest::select(int id, const std::wstring& name) const {
    const Rows all = rows(id);
    send(id, LB_SETCURSEL, static_cast<WPARAM>(std::ranges::find(all, name) - all.begin()));
}

LPARAM BrowserTest::pointIn(int id, const std::wstring& name) const {
    const Rows all = rows(id);
    RECT place{};
    send(id, LB_GETITEMRECT, static_cast<WPARAM>(std::ranges::find(all, name) - all.begin()),
         reinterpret_cast<LPARAM>(&place));
    return MAKELPARAM(place.left + 20, (place.top + place.bottom) / 2);
}

void BrowserTest::click(int id, const std::wstring& name) const {
    const LPARAM at = pointIn(id, name);
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP}) send(id, message, 0, at);
}

void BrowserTest::doubleClick(int id, const std::wstring& name) const {
    const LPARAM at = pointIn(id, name);
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        send(id, message, 0, at);
}

void BrowserTest::type(int id, const std::wstring& text) const {
    for (const wchar_t character : text) send(id, WM_CHAR, character);
}

void BrowserTest::notify(int id, int notification) const {
    SendMessageW(dialog_.window(), WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, notification)),
                 reinterpret_cast<LPARAM>(control(id)));
}

void BrowserTest::goUp() const { notify(IDC_COMMAND3, BN_CLICKED); }

LRESULT BrowserTest::rowOfDrive(wchar_t letter) const {
    const std::wstring name{static_cast<wchar_t>(letter | 0x20), L':'};
    return send(IDC_DRIVE1, CB_FINDSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(name.c_str()));
}

std::wstring BrowserTest::drive() const { return comboText(control(IDC_DRIVE1)).substr(0, 2); }

void BrowserTest::chooseDrive(wchar_t letter) const {
    send(IDC_DRIVE1, CB_SETCURSEL, static_cast<WPARAM>(rowOfDrive(letter)));
    notify(IDC_DRIVE1, CBN_SELCHANGE);
}

void BrowserTest::chooseType(int row) const {
    send(IDC_COMBO1, CB_SETCURSEL, static_cast<WPARAM>(row));
    notify(IDC_COMBO1, CBN_SELCHANGE);
}
