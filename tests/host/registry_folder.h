// Keys of a test below Software, in both hives, which are gone before it and after it.
#pragma once

#include <windows.h>

#include <string>

namespace host {

class RegistryFolder {
  public:
    RegistryFolder() { remove(); }
    RegistryFolder(const RegistryFolder&) = delete;
    RegistryFolder& operator=(const RegistryFolder&) = delete;
    ~RegistryFolder() { remove(); }

    /// Its subkey, without a backslash at either end.
    static constexpr wchar_t kSubkey[] = L"Software\\VrxAutomationTest";

  private:
    static void remove();
};

/// A text value; "(none)" where there is none, "(of another type)" for one that is no text.
std::wstring registryText(HKEY hive, const std::wstring& subkey, const std::wstring& name);

/// Makes the key when it is missing.
void setRegistryValue(HKEY hive, const std::wstring& subkey, const std::wstring& name, DWORD type,
                      const void* data, std::size_t size);
void setRegistryText(HKEY hive, const std::wstring& subkey, const std::wstring& name,
                     const std::wstring& text);

}  // namespace host
