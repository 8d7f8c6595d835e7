#include "common/interactive.h"

#include <windows.h>

namespace vrx {

bool isInteractive() {
    USEROBJECTFLAGS flags{};
    return !GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) ||
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace vrx
