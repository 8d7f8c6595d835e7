// Pattern files as the editor loads and saves them, with the folder and the name that were used last.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "common/host_program.h"
#include "pattern/pattern_dialogs.h"

namespace vrx {

class PatternFiles {
  public:
    /// Where the dialogs begin. The host's folder at first; with a backslash after a file was chosen.
    [[nodiscard]] const std::u16string& folder() const { return folder_; }
    void setFolder(std::u16string folder) { folder_ = std::move(folder); }

    /// Lets the user choose a file and reads its pattern; nothing when the user cancels or the file is empty.
    /// Throws for a file that cannot be read.
    [[nodiscard]] std::optional<std::u16string> load(HWND owner);
    /// Lets the user choose a file and writes the pattern. Throws for a file that cannot be written.
    void save(HWND owner, const std::u16string& pattern);

  private:
    [[nodiscard]] std::optional<std::u16string> choose(HWND owner, PatternFileUse use);

    std::u16string folder_ = hostFolder();
    std::u16string fileName_;
};

}  // namespace vrx
