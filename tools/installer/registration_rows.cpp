// registration_rows LIBRARY - prints what the library registers for the machine, below Software\Classes: a
// line "KEY<tab>NAME<tab>TEXT" for each value, with an empty name for a key's own, and "KEY" alone for a key
// without values. It writes into a key of the user that stands in for the machine's while it does.

#include <windows.h>

#include <shlwapi.h>

#include <cstdio>
#include <string>

namespace {

constexpr wchar_t kStandIn[] = L"Software\\VrxRegistrationRows";

std::string utf8(const std::wstring& text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes.data(), size, nullptr, nullptr);
    return bytes.c_str();
}

bool registers(const wchar_t* path) {
    using Register = HRESULT(WINAPI*)();
    const HMODULE library = LoadLibraryW(path);
    if (!library) return false;
    const FARPROC found = GetProcAddress(library, "DllRegisterServer");
    const auto call = reinterpret_cast<Register>(reinterpret_cast<void*>(found));
    return call && SUCCEEDED(call());
}

void printValues(HKEY key, const std::wstring& path) {
    wchar_t name[256];
    wchar_t text[1024];
    for (DWORD i = 0;; ++i) {
        DWORD nameSize = 256;
        DWORD size = sizeof text;
        if (RegEnumValueW(key, i, name, &nameSize, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) !=
            0)
            break;
        std::printf("%s\t%s\t%s\n", utf8(path).c_str(), utf8(name).c_str(), utf8(text).c_str());
    }
}

void printKey(HKEY parent, const std::wstring& name, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ, &key) != 0) return;
    DWORD keys = 0;
    DWORD values = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                     nullptr, nullptr);
    if (keys == 0 && values == 0) std::printf("%s\n", utf8(path).c_str());
    printValues(key, path);
    wchar_t child[256];
    for (DWORD i = 0; i < keys; ++i) {
        DWORD size = 256;
        RegEnumKeyExW(key, i, child, &size, nullptr, nullptr, nullptr, nullptr);
        printKey(key, child, path.empty() ? child : path + L'\\' + child);
    }
    RegCloseKey(key);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    HKEY standIn = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kStandIn, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &standIn,
                        nullptr) != 0)
        return 1;
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, standIn);
    const bool registered = count == 2 && registers(arguments[1]);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    printKey(standIn, L"Software\\Classes", L"");
    RegCloseKey(standIn);
    SHDeleteKeyW(HKEY_CURRENT_USER, kStandIn);
    return registered ? 0 : 1;
}
