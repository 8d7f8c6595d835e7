// What the tests of the two load dialogs do with them: choose, press, look.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>

#include "VrxCommon.h"
#include "accessible_names.h"
#include "dialogs/resource.h"
#include "host.h"
#include "registry_folder.h"
#include "throwaway_folder.h"
#include "window_driver.h"

namespace host {

inline HWND item(HWND dialog, int id) { return GetDlgItem(dialog, id); }
inline std::wstring textOf(HWND dialog, int id) { return captionOf(item(dialog, id)); }

/// Puts a control's notification into the queue, as if it came from the control.
inline void notify(HWND dialog, int id, int notification) {
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, notification),
                 reinterpret_cast<LPARAM>(item(dialog, id)));
}

inline void press(HWND dialog, int button) { PostMessageW(item(dialog, button), BM_CLICK, 0, 0); }

/// Keys go to the control that has the focus, so it gets that first.
inline void type(HWND dialog, int id, WPARAM key) {
    PostMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(item(dialog, id)), TRUE);
    PostMessageW(item(dialog, id), WM_KEYDOWN, key, 1);
}

inline int rowOf(HWND dialog, int list, const std::wstring& text) {
    return static_cast<int>(SendMessageW(item(dialog, list), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                         reinterpret_cast<LPARAM>(text.c_str())));
}

/// A click on a file of the list.
inline void choose(HWND dialog, const std::wstring& name) {
    const int row = rowOf(dialog, IDC_FILE1, name);
    EXPECT_GE(row, 0) << "no file of this name in the list";
    SendMessageW(item(dialog, IDC_FILE1), LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    notify(dialog, IDC_FILE1, LBN_SELCHANGE);
}

inline void doubleClick(HWND dialog, int list, const std::wstring& text) {
    RECT row{};
    SendMessageW(item(dialog, list), LB_GETITEMRECT, static_cast<WPARAM>(rowOf(dialog, list, text)),
                 reinterpret_cast<LPARAM>(&row));
    const int x = row.left + 10;
    const int y = (row.top + row.bottom) / 2;
    click(item(dialog, list), x, y);
    PostMessageW(item(dialog, list), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(item(dialog, list), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

inline void setCheck(HWND dialog, bool checked) {
    SendMessageW(item(dialog, IDC_CHECK1), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

inline bool isChecked(HWND dialog) {
    return SendMessageW(item(dialog, IDC_CHECK1), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

/// The text of the selected row of the list of types.
inline std::wstring typeOf(HWND dialog) { return textOf(dialog, IDC_COMBO1); }

/// Makes a row of a combo box the chosen one, as a user does.
inline void pick(HWND dialog, int comboBox, const std::wstring& text) {
    SendMessageW(item(dialog, comboBox), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(text.c_str()));
    notify(dialog, comboBox, CBN_SELCHANGE);
}

/// The pixel in the middle of the preview, blue, green, red.
inline FileBytes middleOfPreview(HWND dialog) {
    const Pixels shown = shownIn(item(dialog, IDC_VRXPREVIMG));
    FileBytes bytes = partOf(shown, shown.width / 2, shown.height / 2, 1, 1).bytes;
    bytes.resize(3);
    return bytes;
}

inline bool eventuallyShows(HWND dialog, const FileBytes& color) {
    return eventually([&] { return middleOfPreview(dialog) == color; });
}

/// Settings below a key of their own, pictures in a folder of their own.
class LoadDialogTest : public testing::Test {
  protected:
    static constexpr wchar_t kKey[] = L"Software\\VrxAutomationTest";

    const RegistryFolder registry_;
    const ThrowawayFolder folder_;

    void SetUp() override { ASSERT_EQ(settingsComponent().registerMachine(), S_OK); }

    [[nodiscard]] static std::wstring setting(const std::wstring& kind, const std::wstring& name) {
        return registryText(HKEY_LOCAL_MACHINE, kKey + kind, name);
    }
    static void store(const std::wstring& kind, const std::wstring& name, const std::wstring& text) {
        setRegistryText(HKEY_LOCAL_MACHINE, kKey + kind, name, text);
    }

    /// Calls Load of an object while the dialog is driven; what it returns.
    template <class Object>
    static std::wstring load(const Object& object, const wchar_t* caption, const std::wstring& suggestion,
                             std::function<void(HWND)> act) {
        const WindowDriver driver(caption, std::move(act));
        vrx::Bstr chosen;
        EXPECT_EQ(object->Load(vrx::Bstr(SysAllocString(suggestion.c_str())).get(), chosen.put()), S_OK);
        return chosen ? chosen.get() : L"";
    }
};

}  // namespace host
