#include "settings/registry_text.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "com/variant_convert.h"
#include "com/win_resource.h"

namespace vrx {
namespace {

struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

RegistryKey open(const RegistryPlace& place, REGSAM access) {
    RegistryKey key;
    RegOpenKeyExW(place.hive, place.subkey.c_str(), 0, access, key.put());
    return key;
}

std::optional<Value> query(HKEY key, const std::wstring& name) {
    Value value;
    DWORD size = 512;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        value.bytes.resize(size);
        status = RegQueryValueExW(key, name.c_str(), nullptr, &value.type, value.bytes.data(), &size);
    }
    if (status != ERROR_SUCCESS) return std::nullopt;
    value.bytes.resize(size);
    return value;
}

/// Texts need not end in a zero character, nor have an even number of bytes.
std::wstring textOf(const std::vector<BYTE>& bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

std::wstring expanded(const std::wstring& text) {
    std::wstring result(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
    ExpandEnvironmentStringsW(text.c_str(), result.data(), static_cast<DWORD>(result.size()));
    return result.substr(0, result.find(L'\0'));
}

template <class Number>
std::optional<std::wstring> numberOf(const std::vector<BYTE>& bytes) {
    Number number = 0;
    if (bytes.size() != sizeof number) return std::nullopt;
    std::memcpy(&number, bytes.data(), sizeof number);
    return std::to_wstring(number);
}

std::optional<std::wstring> asText(const Value& value) {
    switch (value.type) {
        case REG_SZ:
            return textOf(value.bytes);
        case REG_EXPAND_SZ:
            return expanded(textOf(value.bytes));
        case REG_DWORD:
            return numberOf<std::int32_t>(value.bytes);
        case REG_QWORD:
            return numberOf<std::int64_t>(value.bytes);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<std::u16string> readRegistryText(const RegistryPlace& place) {
    const RegistryKey key = open(place, KEY_QUERY_VALUE);
    if (!key) return std::nullopt;
    const std::optional<Value> value = query(key.get(), place.name);
    const std::optional<std::wstring> text = value ? asText(*value) : std::nullopt;
    if (!text) return std::nullopt;
    return std::u16string(text->begin(), text->end());
}

LSTATUS writeRegistryText(const RegistryPlace& place, const std::u16string& text) {
    RegistryKey key = open(place, KEY_SET_VALUE);
    if (!key) {
        const LSTATUS created = RegCreateKeyExW(place.hive, place.subkey.c_str(), 0, nullptr, 0,
                                                KEY_SET_VALUE, nullptr, key.put(), nullptr);
        if (created != ERROR_SUCCESS) return created;
    }
    const std::wstring wide = toWide(text);
    const auto size = static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key.get(), place.name.c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(wide.c_str()), size);
}

void removeRegistryText(const RegistryPlace& place) {
    if (const RegistryKey key = open(place, KEY_SET_VALUE)) RegDeleteValueW(key.get(), place.name.c_str());
}

}  // namespace vrx
