#include "save_dialog_test.h"

#include "accessible_names.h"
#include "host.h"
#include "leaks.h"

using host::eventually;

namespace {

LRESULT send(HWND window, UINT message, WPARAM wide = 0, LPARAM longer = 0) {
    return SendMessageW(window, message, wide, longer);
}

std::vector<std::wstring> rowsOf(HWND list, UINT count, UINT length, UINT text) {
    std::vector<std::wstring> rows;
    for (WPARAM row = 0; row < static_cast<WPARAM>(send(list, count)); ++row) {
        std::wstring name(static_cast<std::size_t>(send(list, length, row)) + 1, L'\0');
        send(list, text, row, reinterpret_cast<LPARAM>(name.data()));
        name.pop_back();
        rows.push_back(name);
    }
    return rows;
}

}  // namespace

HWND OpenSaveDialog::focus() const { return host::focusIn(window_); }

int OpenSaveDialog::row(int comboBox) const {
    return static_cast<int>(send(control(comboBox), CB_GETCURSEL));
}

std::vector<std::wstring> OpenSaveDialog::rows(int comboBox) const {
    return rowsOf(control(comboBox), CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT);
}

std::vector<std::wstring> OpenSaveDialog::files() const {
    return rowsOf(control(IDC_FILE1), LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT);
}

int OpenSaveDialog::position(int slider) const { return static_cast<int>(send(control(slider), TBM_GETPOS)); }

void OpenSaveDialog::setName(const std::wstring& name) const {
    send(control(IDC_TEXT1), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

void OpenSaveDialog::choose(int comboBox, int row) const {
    send(control(comboBox), CB_SETCURSEL, static_cast<WPARAM>(row));
    send(window_, WM_COMMAND, MAKEWPARAM(comboBox, CBN_SELCHANGE),
         reinterpret_cast<LPARAM>(control(comboBox)));
}

void OpenSaveDialog::press(int button) const { send(control(button), BM_CLICK); }

void OpenSaveDialog::enter(int id) const {
    PostMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(id)), TRUE);
    EXPECT_TRUE(eventually([&] { return focus() == control(id); }));
    const HWND name = control(IDC_TEXT1);
    send(name, EM_SETMODIFY, FALSE);
    PostMessageW(control(id), WM_KEYDOWN, VK_RETURN, 1);
    // Its turn comes after that of the key.
    PostMessageW(name, EM_SETMODIFY, TRUE, 0);
    EXPECT_TRUE(eventually([&] { return !IsWindow(name) || send(name, EM_GETMODIFY) != 0; }));
}

void OpenSaveDialog::selectFolder(const std::wstring& name) const {
    const LRESULT row = send(control(IDC_DIR1), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                             reinterpret_cast<LPARAM>(name.c_str()));
    EXPECT_NE(row, LB_ERR);
    send(control(IDC_DIR1), LB_SETCURSEL, static_cast<WPARAM>(row));
}

void OpenSaveDialog::move(int slider, int position, int code) const {
    send(control(slider), TBM_SETPOS, TRUE, position);
    notify(slider, code);
}

void OpenSaveDialog::notify(int slider, int code) const {
    send(window_, WM_HSCROLL, MAKEWPARAM(code, position(slider)), reinterpret_cast<LPARAM>(control(slider)));
}

void OpenSaveDialog::saveAs(const std::wstring& name, int type) const {
    choose(IDC_COMBO1, type);
    setName(name);
    press(IDC_COMMAND1);
}

void SaveDialogTest::SetUp() {
    ASSERT_EQ(host::settingsComponent().registerMachine(), S_OK);
    remember(L"Path", folder_.path());
}

std::vector<host::MessageBox> SaveDialogTest::during(const std::function<void(const OpenSaveDialog&)>& act,
                                                     int answer) const {
    host::MessageBoxWatcher watcher(answer);
    {
        const host::WindowDriver driver(caption_, [&](HWND window) { act(OpenSaveDialog(window)); });
        EXPECT_EQ(save(), S_OK);
    }
    EXPECT_EQ(host::windowOf(GetCurrentThreadId(), caption_), nullptr);
    return watcher.boxes();
}

host::MessageBox SaveDialogTest::boxDuring(const std::function<void(const OpenSaveDialog&)>& act,
                                           int answer) const {
    const std::vector<host::MessageBox> boxes = during(act, answer);
    EXPECT_EQ(boxes.size(), 1u);
    return boxes.empty() ? host::MessageBox{} : boxes.back();
}

void SaveDialogTest::quietlyDuring(const std::function<void(const OpenSaveDialog&)>& act) const {
    EXPECT_EQ(during(act).size(), 0u);
}

void SaveDialogTest::expectAborted(const std::wstring& name, int type, const std::wstring& reason,
                                   const std::function<void()>& before) const {
    const std::vector<host::MessageBox> boxes = during(
        [&](const OpenSaveDialog& dialog) {
            if (before) before();
            dialog.saveAs(name, type);
            EXPECT_TRUE(dialog.isOpen());
        },
        IDYES);
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.back().text, L"Save aborted : " + reason);
    EXPECT_EQ(boxes.back().title, L"Errore");
    EXPECT_TRUE(boxes.back().critical);
    EXPECT_TRUE(boxes.back().onlyOk);
}

void SaveDialogTest::remember(const std::wstring& name, const std::wstring& text) const {
    host::setRegistryText(HKEY_LOCAL_MACHINE, key_ + suffix_, name, text);
}

std::wstring SaveDialogTest::remembered(const std::wstring& name) const {
    return host::registryText(HKEY_LOCAL_MACHINE, key_ + suffix_, name);
}

void SaveDialogTest::expectNamesInOrder(const std::vector<std::wstring>& names) const {
    quietlyDuring([&](const OpenSaveDialog& dialog) {
        dialog.choose(IDC_COMBO1, static_cast<int>(dialog.rows(IDC_COMBO1).size()) - 2);
        EXPECT_EQ(host::namesOfTabStops(dialog.window()), names);
    });
}

void SaveDialogTest::expectNothingLeftAfterOpenings() const {
    host::expectNothingLeft([&] {
        const host::WindowDriver driver(caption_, [](HWND) {});
        EXPECT_EQ(save(), S_OK);
    });
}
