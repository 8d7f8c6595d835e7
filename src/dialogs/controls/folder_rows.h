// How the rows of the folder list look: a small folder, open or closed, and its name, indented by its depth.
#pragma once

#include <windows.h>

#include <string>

#include "com/win_resource.h"

namespace vrx {

class FolderRows {
  public:
    /// Takes the system's pictures of folders and gives the rows of the list box their height.
    void attach(HWND listBox);
    void draw(const DRAWITEMSTRUCT& row, const std::u16string& name, int depth, bool open) const;

  private:
    Icon closed_;
    Icon open_;
    SIZE icon_{};
};

}  // namespace vrx
