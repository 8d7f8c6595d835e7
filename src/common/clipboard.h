// The system clipboard. Saving an image and converting one to JPEG empty it first: hosts are used to finding
// no picture of an earlier copy there afterwards.
#pragma once

namespace vrx {

/// Empties the clipboard; where another program keeps it open, it stays as it is.
void clearClipboard();

}  // namespace vrx
