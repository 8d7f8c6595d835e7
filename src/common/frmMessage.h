// The short message: a small window on top of all others while a long operation runs. Messages are nested;
// the last one is shown. The window never takes the focus away from the program that works.
#pragma once

#include <string>

namespace vrx {

/// A user of the one form that the whole library shares. The form's window belongs to the thread that first
/// showed a message. With the last user it goes, unless a message is still shown; it then stays, and keeps
/// the library in memory.
class frmMessage {
  public:
    frmMessage();
    frmMessage(const frmMessage&) = delete;
    frmMessage& operator=(const frmMessage&) = delete;
    ~frmMessage();

    void show(const std::u16string& message);
    /// Takes the last message away. True when it was the only one, and the window is hidden now.
    [[nodiscard]] bool hide();
};

}  // namespace vrx
