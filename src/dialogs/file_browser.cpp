#include "dialogs/file_browser.h"

#include "com/variant_convert.h"
#include "common/host_program.h"
#include "common/message_box.h"
#include "dialogs/engine/file_names.h"
#include "dialogs/resource.h"
#include "dialogs/tool_tip.h"
#include "ground/error.h"
#include "ground/upper_case.h"

namespace vrx {
namespace {

// Answers to WM_VKEYTOITEM.
constexpr LRESULT kKeyDone = -2;
constexpr LRESULT kKeyForList = -1;

std::u16string windowsFolder() {
    wchar_t folder[MAX_PATH] = {};
    GetWindowsDirectoryW(folder, MAX_PATH);
    return fromWide(folder);
}

}  // namespace

void FileBrowser::attach(HWND dialog, std::span<const std::u16string_view> types) {
    dialog_ = dialog;
    drives_.attach(GetDlgItem(dialog, IDC_DRIVE1));
    folders_.attach(GetDlgItem(dialog, IDC_DIR1));
    files_.attach(GetDlgItem(dialog, IDC_FILE1));
    addToolTip(GetDlgItem(dialog, IDC_COMMAND3), u"Up one folder");
    types_.assign(types.begin(), types.end());
    SendDlgItemMessageW(dialog, IDC_COMBO1, CB_RESETCONTENT, 0, 0);
    for (const std::u16string& type : types_)
        SendDlgItemMessageW(dialog, IDC_COMBO1, CB_INSERTSTRING, static_cast<WPARAM>(-1),
                            reinterpret_cast<LPARAM>(asWide(type.c_str())));
    setType(0);
}

bool FileBrowser::setFolder(const std::u16string& folder) {
    try {
        folders_.setFolder(folder);
    } catch (const Error&) {
        return false;
    }
    showFolder();
    return true;
}

void FileBrowser::setFirstFolder(const std::u16string& remembered) {
    const std::u16string host = hostFolder();
    for (const std::u16string& folder :
         {remembered, host, host.substr(0, kRootLength), windowsFolder().substr(0, kRootLength)}) {
        if (setFolder(folder)) return;
    }
}

int FileBrowser::type() const {
    return static_cast<int>(SendDlgItemMessageW(dialog_, IDC_COMBO1, CB_GETCURSEL, 0, 0));
}

void FileBrowser::setType(int row) {
    SendDlgItemMessageW(dialog_, IDC_COMBO1, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    showType();
}

bool FileBrowser::handleCommand(int id, int notification) {
    switch (id) {
        case IDC_DRIVE1:
            // While the list is down the choice is not made yet.
            if (notification == CBN_CLOSEUP || (notification == CBN_SELCHANGE && !isDriveListDown()))
                changeDrive();
            return true;
        case IDC_DIR1:
            if (notification == LBN_DBLCLK) openFolder();
            return true;
        case IDC_FILE1:
            if (notification == LBN_SELCHANGE) owner_.fileChosen();
            if (notification == LBN_DBLCLK) owner_.fileOpened();
            return true;
        case IDC_COMBO1:
            if (notification == CBN_SELCHANGE) {
                showType();
                owner_.typeChosen();
            }
            return true;
        case IDC_COMMAND3:
            if (notification == BN_CLICKED) goUp();
            return true;
        default:
            return false;
    }
}

bool FileBrowser::handleMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer) {
    const HWND folderList = GetDlgItem(dialog_, IDC_DIR1);
    if (message == WM_DRAWITEM && wide == IDC_DIR1) {
        folders_.draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(longer));
        answer = TRUE;
        return true;
    }
    if (message == WM_VKEYTOITEM && reinterpret_cast<HWND>(longer) == folderList) {
        const bool back = LOWORD(wide) == VK_BACK;
        if (back) goUp();
        answer = back ? kKeyDone : kKeyForList;
        return true;
    }
    return false;
}

bool FileBrowser::handleEnter() {
    const HWND focus = GetFocus();
    if (!focus) return false;
    if (focus == GetDlgItem(dialog_, IDC_DIR1)) {
        openFolder();
        return true;
    }
    if (focus != GetDlgItem(dialog_, IDC_FILE1) || fileName().empty()) return false;
    owner_.fileOpened();
    return true;
}

void FileBrowser::showFolder() {
    files_.setFolder(folders_.folder());
    drives_.setDrive(folders_.folder());
    lastDrive_ = folders_.folder().substr(0, kRootLength);
}

void FileBrowser::showType() {
    const auto row = static_cast<std::size_t>(type());
    if (row < types_.size()) files_.setPattern(types_[row]);
}

bool FileBrowser::isDriveListDown() const {
    return SendDlgItemMessageW(dialog_, IDC_DRIVE1, CB_GETDROPPEDSTATE, 0, 0) != FALSE;
}

bool FileBrowser::takesDrive(const std::u16string& drive) {
    return drive.empty() || equalInUpperCase(drive, lastDrive_) || setFolder(drive);
}

void FileBrowser::changeDrive() {
    if (takesDrive(drives_.drive())) return;
    showMessage(u"Drive not ready", MB_ICONERROR, u"Errore");
    drives_.setDrive(lastDrive_);
    if (!lastDrive_.empty()) setFolder(lastDrive_);
}

/// A folder that cannot be opened leaves the lists as they are.
void FileBrowser::openFolder() {
    try {
        folders_.openSelected();
    } catch (const Error&) {
        MessageBeep(MB_ICONWARNING);
        return;
    }
    showFolder();
}

void FileBrowser::goUp() {
    const std::u16string above = folderAbove(files_.folder());
    if (above != files_.folder() && !setFolder(above)) MessageBeep(MB_ICONWARNING);
}

}  // namespace vrx
