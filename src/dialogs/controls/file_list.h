// The files of a folder that match a pattern, by name, on a list box of a dialog. Hidden and system files are
// left out.
#pragma once

#include <windows.h>

#include <string>

namespace vrx {

class FileList {
  public:
    /// Takes a list box, empty until setFolder.
    void attach(HWND listBox);

    [[nodiscard]] const std::u16string& folder() const { return folder_; }
    /// Nothing is listed and nothing thrown for a folder that cannot be read.
    void setFolder(const std::u16string& folder);
    /// Like "*.HDR", or several with ";" between them.
    void setPattern(const std::u16string& pattern);
    /// Of the selected file; empty for none.
    [[nodiscard]] std::u16string fileName() const;

  private:
    void list();

    HWND window_ = nullptr;
    std::u16string folder_;
    std::u16string pattern_ = u"*.*";
};

}  // namespace vrx
