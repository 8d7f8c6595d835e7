// The public, creatable classes: one row each feeds class lookup, registration and unregistration.
#pragma once

#include <windows.h>

#include <span>

namespace vrx {

struct ClassRow {
    const CLSID& classId;
    const wchar_t* name;  ///< of the class; its program id is the library's name, a dot and this
    const wchar_t* description;
    HRESULT (*create)(REFIID iid, void** object);
};

[[nodiscard]] std::span<const ClassRow> classTable();

}  // namespace vrx
