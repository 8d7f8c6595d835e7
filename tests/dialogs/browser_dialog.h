// A window with the lists of a file dialog, and a user who works with them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dialogs/file_browser.h"
#include "throwaway_folder.h"

using Rows = std::vector<std::wstring>;

/// Counts what a dialog is told.
class CountingOwner final : public vrx::FileBrowserOwner {
  public:
    void fileChosen() override { ++chosen; }
    void fileOpened() override { ++opened; }
    void typeChosen() override { ++types; }

    int chosen = 0;
    int opened = 0;
    int types = 0;
};

/// Types "*.HDR", "*.JPG;*.JPEG", "*.*" and "*.a?".
class BrowserDialog {
  public:
    explicit BrowserDialog(vrx::FileBrowser& browser);
    BrowserDialog(const BrowserDialog&) = delete;
    BrowserDialog& operator=(const BrowserDialog&) = delete;
    ~BrowserDialog();

    [[nodiscard]] HWND window() const { return window_; }
    /// Takes the drives that there are now.
    void attach();

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer);
    void addControl(const wchar_t* className, int id, DWORD style, RECT place) const;

    vrx::FileBrowser& browser_;
    HWND window_ = nullptr;
    bool attached_ = false;
};

/// A drive in the list of drives that cannot be read: it stands for a folder that there is not.
class EmptyDrive {
  public:
    EmptyDrive();
    EmptyDrive(const EmptyDrive&) = delete;
    EmptyDrive& operator=(const EmptyDrive&) = delete;
    ~EmptyDrive();

    [[nodiscard]] wchar_t letter() const { return name_[0]; }

  private:
    std::wstring name_;
};

/// A drive that can be read, other than the one with this letter: one of the machine's, or if it has only
/// one, another name of that.
class OtherDrive {
  public:
    explicit OtherDrive(wchar_t letter);
    OtherDrive(const OtherDrive&) = delete;
    OtherDrive& operator=(const OtherDrive&) = delete;
    ~OtherDrive();

    [[nodiscard]] wchar_t letter() const { return letter_; }
    /// Like "Z:\".
    [[nodiscard]] std::wstring root() const { return {letter_, L':', L'\\'}; }

  private:
    wchar_t letter_ = 0;
    std::wstring defined_;
};

class BrowserTest : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    CountingOwner owner_;
    vrx::FileBrowser browser_{owner_};
    BrowserDialog dialog_{browser_};

    [[nodiscard]] HWND control(int id) const { return GetDlgItem(dialog_.window(), id); }
    LRESULT send(int id, UINT message, WPARAM wide = 0, LPARAM longer = 0) const {
        return SendMessageW(control(id), message, wide, longer);
    }

    void makeFolder(const std::wstring& name) const;
    void makeFile(const std::wstring& name) const { folder_.write(name, {}); }
    void mark(const std::wstring& name, DWORD attribute) const;

    bool open(const std::wstring& path) { return browser_.setFolder({path.begin(), path.end()}); }
    [[nodiscard]] std::wstring folder() const;
    [[nodiscard]] std::wstring file() const;

    /// Of a list box, as another program reads them.
    [[nodiscard]] Rows rows(int id) const;
    [[nodiscard]] Rows files() const;
    /// The rows of the folder list below the one of the folder itself.
    [[nodiscard]] Rows foldersInside() const;
    [[nodiscard]] std::wstring selected(int id) const;

    void select(int id, const std::wstring& name) const;
    void click(int id, const std::wstring& name) const;
    void doubleClick(int id, const std::wstring& name) const;
    void press(int id, WPARAM key) const { send(id, WM_KEYDOWN, key); }
    void type(int id, const std::wstring& text) const;
    void goUp() const;
    /// The row of a drive in the list of drives; -1 for none.
    [[nodiscard]] LRESULT rowOfDrive(wchar_t letter) const;
    [[nodiscard]] std::wstring drive() const;
    void chooseDrive(wchar_t letter) const;
    void chooseType(int row) const;

  private:
    [[nodiscard]] LPARAM pointIn(int id, const std::wstring& name) const;
    void notify(int id, int notification) const;
};
