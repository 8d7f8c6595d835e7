// What the four file dialogs have in common: the lists of drives, folders and files that follow each other,
// the list of file types and the button that goes up one folder.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/controls/drive_list.h"
#include "dialogs/controls/file_list.h"
#include "dialogs/controls/folder_list.h"

namespace vrx {

/// What the dialog wants to know.
class FileBrowserOwner {
  public:
    /// A file was selected, by mouse or keyboard.
    virtual void fileChosen() = 0;
    /// A double click on a file, or Enter in the list of files.
    virtual void fileOpened() {}
    /// The file list shows the files of another type now.
    virtual void typeChosen() {}

  protected:
    ~FileBrowserOwner() = default;
};

class FileBrowser {
  public:
    explicit FileBrowser(FileBrowserOwner& owner) : owner_(owner) {}

    /// Takes the dialog's IDC_DRIVE1, IDC_DIR1, IDC_FILE1, IDC_COMBO1 and IDC_COMMAND3, and chooses the first
    /// of these types ("*.HDR").
    void attach(HWND dialog, std::span<const std::u16string_view> types);

    /// Shows a folder in all lists and remembers its drive as the last one that worked. False, and the lists
    /// stay as they were, for a folder that cannot be shown.
    bool setFolder(const std::u16string& folder);
    /// The same for a folder that a dialog remembers; in place of one that cannot be shown, the host
    /// application's or a root.
    void setFirstFolder(const std::u16string& remembered);
    /// Of the folder list, which the file list follows.
    [[nodiscard]] const std::u16string& folder() const { return folders_.folder(); }
    /// The selected file's name without its folder; empty for none.
    [[nodiscard]] std::u16string fileName() const { return files_.fileName(); }

    /// The row of the list of types.
    [[nodiscard]] int type() const;
    void setType(int row);

    /// Does what a notification of one of its controls asks for; false for the other controls. A drive that
    /// cannot be read is told to the user, and the last one that worked comes back.
    bool handleCommand(int id, int notification);
    /// Draws the rows of the folder list for WM_DRAWITEM of the dialog, and goes up one folder on Backspace
    /// in a folder list with LBS_WANTKEYBOARDINPUT; false for other controls and messages.
    bool handleMessage(UINT message, WPARAM wide, LPARAM longer, LRESULT& answer);
    /// Enter with the focus in one of its lists, before the dialog's default button gets it: opens the
    /// selected folder or file. False where it means nothing.
    bool handleEnter();

  private:
    void showFolder();
    void showType();
    [[nodiscard]] bool isDriveListDown() const;
    [[nodiscard]] bool takesDrive(const std::u16string& drive);
    void changeDrive();
    void openFolder();
    void goUp();

    FileBrowserOwner& owner_;
    HWND dialog_ = nullptr;
    DriveList drives_;
    FolderList folders_;
    FileList files_;
    std::vector<std::u16string> types_;
    std::u16string lastDrive_;
};

}  // namespace vrx
