#include "dialogs/controls/drive_list.h"

#include "com/variant_convert.h"
#include "dialogs/controls/silent_errors.h"
#include "ground/upper_case.h"

namespace vrx {
namespace {

constexpr int kLetters = 26;

/// Of a drive that answers at once and without a medium to be put in; empty for the other ones.
std::wstring labelOf(const std::wstring& root) {
    const UINT type = GetDriveTypeW(root.c_str());
    if (type != DRIVE_FIXED && type != DRIVE_RAMDISK) return {};
    const SilentErrors silence;
    wchar_t label[MAX_PATH + 1] = {};
    if (!GetVolumeInformationW(root.c_str(), label, MAX_PATH + 1, nullptr, nullptr, nullptr, nullptr, 0))
        return {};
    return label;
}

std::wstring rowOf(wchar_t letter) {
    const std::wstring label = labelOf(std::wstring(1, letter) + L":\\");
    std::wstring row(1, static_cast<wchar_t>(letter | 0x20));
    row += L':';
    return label.empty() ? row : row + L" [" + label + L"]";
}

}  // namespace

void DriveList::attach(HWND comboBox) {
    window_ = comboBox;
    SendMessageW(window_, CB_RESETCONTENT, 0, 0);
    const DWORD drives = GetLogicalDrives();
    for (int drive = 0; drive < kLetters; ++drive) {
        if (!(drives >> drive & 1)) continue;
        const auto letter = static_cast<wchar_t>(L'A' + drive);
        const LRESULT row = SendMessageW(window_, CB_INSERTSTRING, static_cast<WPARAM>(-1),
                                         reinterpret_cast<LPARAM>(rowOf(letter).c_str()));
        SendMessageW(window_, CB_SETITEMDATA, static_cast<WPARAM>(row), letter);
    }
}

std::u16string DriveList::drive() const {
    const LRESULT row = SendMessageW(window_, CB_GETCURSEL, 0, 0);
    if (row == CB_ERR) return {};
    const LRESULT letter = SendMessageW(window_, CB_GETITEMDATA, static_cast<WPARAM>(row), 0);
    return {static_cast<char16_t>(letter), u':', u'\\'};
}

void DriveList::setDrive(std::u16string_view path) {
    if (path.size() < 2 || path[1] != u':') return;
    const LRESULT rows = SendMessageW(window_, CB_GETCOUNT, 0, 0);
    for (LRESULT row = 0; row < rows; ++row) {
        if (SendMessageW(window_, CB_GETITEMDATA, static_cast<WPARAM>(row), 0) == upperCase(path[0]))
            SendMessageW(window_, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    }
}

}  // namespace vrx
