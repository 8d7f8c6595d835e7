// Pattern files as the editor chooses, loads and saves them, with the folder and the name that were used
// last.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "common/host_program.h"
#include "pattern/editor/pattern_dialogs.h"

namespace vrx {

class PatternFiles {
  public:
    /// Where the dialogs begin. The host's folder at first; with a backslash after a file was chosen.
    [[nodiscard]] const std::u16string& folder() const { return folder_; }
    void setFolder(std::u16string folder) { folder_ = std::move(folder); }

    /// Lets the user choose a file, whose folder and name come first the next time; nothing when the user
    /// cancels.
    [[nodiscard]] ChosenFile choose(HWND owner, PatternFileUse use);

  private:
    std::u16string folder_ = hostFolder();
    std::u16string fileName_;
};

/// The pattern in a file; nothing when the file is empty. Throws for one that cannot be read.
[[nodiscard]] std::optional<std::u16string> readPatternFile(const std::u16string& path);
/// An old file is replaced, or stays as it is where the new one cannot be written.
void writePatternFile(const std::u16string& path, const std::u16string& pattern);

}  // namespace vrx
