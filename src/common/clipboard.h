// The system clipboard.
#pragma once

namespace vrx {

/// Empties the clipboard; where another program keeps it open, it stays as it is.
void clearClipboard();

}  // namespace vrx
