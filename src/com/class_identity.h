// What every object of a public class shares.
#pragma once

#include <windows.h>

namespace vrx {

struct ClassIdentity {
    const char16_t* name;  ///< also the source of errors that bring none
    const CLSID& classId;
    const IID& interfaceId;
    const IID* eventsId = nullptr;  ///< null for a class without events
};

}  // namespace vrx
