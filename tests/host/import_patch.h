// Puts a function of a test in the place of a system's function, for the calls of one module.
#pragma once

#include <windows.h>

namespace host {

/// The system's own function, whatever stands in its place.
template <class Function>
Function* systemFunction(const wchar_t* library, const char* name) {
    const FARPROC found = GetProcAddress(GetModuleHandleW(library), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

class ImportPatch {
  public:
    /// Replaces every import of this name in the module, for as long as this exists.
    ImportPatch(HMODULE module, const char* name, void* replacement);
    template <class Function>
    ImportPatch(HMODULE module, const char* name, Function* replacement)
        : ImportPatch(module, name, reinterpret_cast<void*>(replacement)) {}
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;
    ~ImportPatch();

    /// Whether the module imports the function at all.
    explicit operator bool() const { return slot_ != nullptr; }

  private:
    static void store(void** slot, void* function);

    void** slot_ = nullptr;
    void* original_ = nullptr;
};

}  // namespace host
