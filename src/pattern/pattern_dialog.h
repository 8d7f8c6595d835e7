// The editor of a CVrxPattern, as the object asks for it. Who shows it is bound in the class table.
#pragma once

#include <string>

#include "VrxCommon.h"

namespace vrx {

class PatternDialog {
  public:
    /// Edits a pattern string, modally; the object expands it for the ramp. Empty when the user cancels.
    /// Error 5 while the editor is open. The host's code may leave it (com/entry.h), so the caller's frame
    /// owns nothing that is given here.
    [[nodiscard]] virtual std::u16string edit(_CVrxPattern& object, const std::u16string& regKey,
                                              BSTR pattern) const = 0;

  protected:
    ~PatternDialog() = default;
};

}  // namespace vrx
