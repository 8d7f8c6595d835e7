// What the tests of the save dialogs have in common: a dialog as a user works with it, from a thread of the
// driver's own, and what it remembers.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/resource.h"
#include "message_box_watcher.h"
#include "registry_folder.h"
#include "throwaway_folder.h"
#include "window_driver.h"

/// The dialog that is open.
class OpenSaveDialog {
  public:
    explicit OpenSaveDialog(HWND window) : window_(window) {}

    [[nodiscard]] HWND window() const { return window_; }
    [[nodiscard]] HWND control(int id) const { return GetDlgItem(window_, id); }
    [[nodiscard]] HWND focus() const;
    [[nodiscard]] bool isOpen() const { return IsWindow(window_) && IsWindowVisible(window_); }
    /// The dialog ends when its loop does.
    [[nodiscard]] bool closes() const {
        return host::eventually([this] { return !isOpen(); });
    }
    [[nodiscard]] bool isEnabled(int id) const { return IsWindowEnabled(control(id)) != FALSE; }
    [[nodiscard]] std::wstring text(int id) const { return host::captionOf(control(id)); }
    [[nodiscard]] int row(int comboBox) const;
    [[nodiscard]] std::vector<std::wstring> rows(int comboBox) const;
    [[nodiscard]] std::vector<std::wstring> files() const;
    [[nodiscard]] int position(int slider) const;

    void setName(const std::wstring& name) const;
    void choose(int comboBox, int row) const;
    /// Presses a button, and comes back when what it does is done.
    void press(int button) const;
    /// The same for Enter in a control.
    void enter(int id = IDC_TEXT1) const;
    /// Selects a row of the folder list.
    void selectFolder(const std::wstring& name) const;
    /// Moves a slider and sends this notification.
    void move(int slider, int position, int code = TB_THUMBTRACK) const;
    void notify(int slider, int code) const;
    void saveAs(const std::wstring& name, int type) const;

  private:
    HWND window_;
};

/// What stands in a 24-bit BMP file behind its headers.
[[nodiscard]] inline host::FileBytes pixelsIn(const host::FileBytes& bmpFile) {
    constexpr std::ptrdiff_t kHeaders = 54;
    return bmpFile.size() < kHeaders ? host::FileBytes()
                                     : host::FileBytes(bmpFile.begin() + kHeaders, bmpFile.end());
}

class SaveDialogTest : public testing::Test {
  protected:
    /// The caption, and where below its root the dialog keeps what it remembers.
    SaveDialogTest(std::wstring caption, std::wstring suffix)
        : caption_(std::move(caption)), suffix_(std::move(suffix)) {}

    void SetUp() override;

    /// Opens the dialog, which `act` works with and which is closed after that. Returns the message boxes
    /// that were shown meanwhile; each is closed with `answer` where it has such a button, otherwise with OK.
    std::vector<host::MessageBox> during(const std::function<void(const OpenSaveDialog&)>& act,
                                         int answer = IDOK) const;
    /// The only box.
    host::MessageBox boxDuring(const std::function<void(const OpenSaveDialog&)>& act,
                               int answer = IDOK) const;
    /// Nothing is shown.
    void quietlyDuring(const std::function<void(const OpenSaveDialog&)>& act) const;
    /// Tries to save; the user is told, the dialog stays open.
    void expectAborted(const std::wstring& name, int type, const std::wstring& reason,
                       const std::function<void()>& before = {}) const;

    [[nodiscard]] virtual HRESULT save() const = 0;

    void remember(const std::wstring& name, const std::wstring& text) const;
    [[nodiscard]] std::wstring remembered(const std::wstring& name) const;
    /// Every control that the keyboard reaches has a name: its own text, or the label before it.
    void expectNamesInOrder(const std::vector<std::wstring>& names) const;
    void expectNothingLeftAfterOpenings() const;

    const host::RegistryFolder keys_;
    const std::wstring key_ = host::RegistryFolder::kSubkey;
    const host::ThrowawayFolder folder_;
    const std::wstring caption_;
    const std::wstring suffix_;
};
