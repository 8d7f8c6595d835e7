#include "registry_folder.h"

#include <vector>

#include "com/win_resource.h"

namespace host {
namespace {

void removeTree(HKEY parent, const std::wstring& path) {
    {
        vrx::RegistryKey key;
        if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return;
        wchar_t name[256];
        DWORD length = static_cast<DWORD>(std::size(name));
        while (RegEnumKeyExW(key.get(), 0, name, &length, nullptr, nullptr, nullptr, nullptr) ==
               ERROR_SUCCESS) {
            removeTree(key.get(), name);
            length = static_cast<DWORD>(std::size(name));
        }
    }
    RegDeleteKeyW(parent, path.c_str());
}

}  // namespace

void RegistryFolder::remove() {
    removeTree(HKEY_CURRENT_USER, kSubkey);
    removeTree(HKEY_LOCAL_MACHINE, kSubkey);
}

std::wstring registryText(HKEY hive, const std::wstring& subkey, const std::wstring& name) {
    vrx::RegistryKey key;
    std::vector<wchar_t> text(40000);
    DWORD size = static_cast<DWORD>((text.size() - 1) * sizeof(wchar_t));
    DWORD type = REG_NONE;
    if (RegOpenKeyExW(hive, subkey.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS ||
        RegQueryValueExW(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                         &size) != ERROR_SUCCESS) {
        return L"(none)";
    }
    return type == REG_SZ ? text.data() : L"(of another type)";
}

void setRegistryValue(HKEY hive, const std::wstring& subkey, const std::wstring& name, DWORD type,
                      const void* data, std::size_t size) {
    vrx::RegistryKey key;
    RegCreateKeyExW(hive, subkey.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.put(), nullptr);
    RegSetValueExW(key.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                   static_cast<DWORD>(size));
}

void setRegistryText(HKEY hive, const std::wstring& subkey, const std::wstring& name,
                     const std::wstring& text) {
    setRegistryValue(hive, subkey, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

}  // namespace host
