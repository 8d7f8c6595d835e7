// The dialogs of a CVrxHDR, as the object asks for them. Who shows them is bound in the class table.
#pragma once

#include <string>

#include "VrxCommon.h"

namespace vrx {

/// Each is modal: it returns when the dialog is closed. It may be left by the host's code (com/entry.h), so
/// the caller's frame owns nothing that is given here.
class HdrDialogs {
  public:
    /// Chooses a file, with a preview by the picture itself. Its full name; empty when the user cancels.
    [[nodiscard]] virtual std::u16string load(_CVrxHDR& picture, const std::u16string& regKey,
                                              BSTR suggestedFile) const = 0;
    /// Saves the picture, by its own members.
    virtual void save(_CVrxHDR& picture, const std::u16string& regKey) const = 0;
    /// Shows a file in its own size, read by the picture.
    virtual void see(_CVrxHDR& picture, BSTR file) const = 0;

  protected:
    ~HdrDialogs() = default;
};

}  // namespace vrx
