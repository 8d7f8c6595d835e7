// The folders above a folder from its root on, the folder itself and the folders in it, on a list box of a
// dialog. Hidden and system folders are left out.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "dialogs/controls/folder_rows.h"

namespace vrx {

class FolderList {
  public:
    /// Takes an owner-drawn list box, empty until setFolder.
    void attach(HWND listBox);

    /// Without a backslash at its end unless it is a root.
    [[nodiscard]] const std::u16string& folder() const { return folder_; }
    /// Throws the platform's error for a folder that cannot be listed, and stays as it was: 76 where there is
    /// none, 71 for a drive that is not ready, 70 or 75 where reading is refused.
    void setFolder(const std::u16string& folder);
    /// Opens the folder of the selected row, as a double click and Enter do.
    void openSelected();
    /// For WM_DRAWITEM.
    void draw(const DRAWITEMSTRUCT& item) const;

  private:
    [[nodiscard]] std::u16string folderOfRow(int row) const;

    HWND window_ = nullptr;
    FolderRows rows_;
    std::u16string folder_;
    std::vector<std::u16string> open_;
};

}  // namespace vrx
