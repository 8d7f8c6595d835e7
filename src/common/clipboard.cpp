#include "common/clipboard.h"

#include <windows.h>

namespace vrx {

void clearClipboard() {
    if (!OpenClipboard(nullptr)) return;
    EmptyClipboard();
    CloseClipboard();
}

}  // namespace vrx
