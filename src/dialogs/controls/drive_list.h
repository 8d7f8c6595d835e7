// A drop-down list of the machine's drives, on a combo box of a dialog.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace vrx {

class DriveList {
  public:
    /// Takes a combo box and fills it; no drive is chosen yet.
    void attach(HWND comboBox);

    /// The root of the chosen drive, "C:\"; empty while none is chosen.
    [[nodiscard]] std::u16string drive() const;
    /// Chooses the drive that a path begins with; the choice stays for a path that begins with none of them.
    void setDrive(std::u16string_view path);

  private:
    HWND window_ = nullptr;
};

}  // namespace vrx
