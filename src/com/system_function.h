// Functions of the system's libraries by name: those that not every Windows has, or that go by another way in
// this module.
#pragma once

#include <windows.h>

namespace vrx {

/// Null where the library, which is loaded, has none of this name.
template <class Function>
[[nodiscard]] Function systemFunction(const wchar_t* library, const char* name) {
    const FARPROC found = GetProcAddress(GetModuleHandleW(library), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

}  // namespace vrx
