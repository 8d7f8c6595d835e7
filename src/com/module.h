// The module as a whole: its handle, its path and the count of what keeps it in memory.
#pragma once

#include <windows.h>

#include <string>

namespace vrx {

/// Handle of the module that this code is linked into; that of the program until one is stored.
[[nodiscard]] HINSTANCE moduleInstance();
void storeModuleInstance(HINSTANCE instance);

/// Full path of the module.
[[nodiscard]] std::wstring modulePath();
/// The folder of a module, without "\" at its end.
[[nodiscard]] std::wstring folderOf(const std::wstring& path);

/// Every object, class factory and LockServer(TRUE) counts one.
void lockModule();
void unlockModule();
[[nodiscard]] bool moduleInUse();
/// Has this done whenever the last of them goes, on the thread where it does; one action for each module.
void whenUnused(void (*action)() noexcept);

/// Counts one for as long as it exists.
class ModuleLock {
  public:
    ModuleLock() { lockModule(); }
    ModuleLock(const ModuleLock&) = delete;
    ModuleLock& operator=(const ModuleLock&) = delete;
    ~ModuleLock() { unlockModule(); }
};

}  // namespace vrx
