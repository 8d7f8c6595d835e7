#include "com/registration.h"

#include <olectl.h>

#include <new>
#include <ranges>
#include <span>
#include <string>
#include <vector>

#include "com/hresult_failure.h"
#include "com/module.h"
#include "com/registry_rows.h"
#include "com/win_resource.h"
#include "ground/error.h"

namespace vrx {
namespace {

void throwIfRefused(LSTATUS status) {
    if (status != ERROR_SUCCESS) throw HresultFailure{HRESULT_FROM_WIN32(status)};
}

RegistryKey openClasses(RegistrationScope scope) {
    const HKEY root = scope == RegistrationScope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    RegistryKey classes;
    throwIfRefused(RegCreateKeyExW(root, L"Software\\Classes", 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                                   classes.put(), nullptr));
    return classes;
}

void writeRow(HKEY classes, const RegistryRow& row) {
    RegistryKey key;
    throwIfRefused(
        RegCreateKeyExW(classes, row.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.put(), nullptr));
    if (!row.text) return;
    const DWORD size = static_cast<DWORD>((row.text->size() + 1) * sizeof(wchar_t));
    const auto* bytes = reinterpret_cast<const BYTE*>(row.text->c_str());
    throwIfRefused(RegSetValueExW(key.get(), row.name.c_str(), 0, REG_SZ, bytes, size));
}

bool exists(HKEY classes, const std::wstring& path) {
    RegistryKey key;
    return RegOpenKeyExW(classes, path.c_str(), 0, KEY_QUERY_VALUE, key.put()) == ERROR_SUCCESS;
}

bool holds(HKEY classes, const RegistryRow& row) {
    RegistryKey key;
    if (RegOpenKeyExW(classes, row.key.c_str(), 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) return false;
    return !row.text ||
           RegQueryValueExW(key.get(), row.name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

bool isEmptyKey(HKEY classes, const std::wstring& path) {
    RegistryKey key;
    DWORD keys = 0;
    DWORD values = 0;
    return RegOpenKeyExW(classes, path.c_str(), 0, KEY_QUERY_VALUE, key.put()) == ERROR_SUCCESS &&
           RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                            nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
           keys == 0 && values == 0;
}

/// Keys that all software shares: those directly below Software\Classes, except program ids, which have a
/// dot.
bool isShared(const std::wstring& path) {
    return path.find(L'\\') == std::wstring::npos && path.find(L'.') == std::wstring::npos;
}

/// Takes back the value, then the key and those above it as far as they are empty and ours.
void removeRow(HKEY classes, const RegistryRow& row) {
    RegistryKey key;
    const LSTATUS opened = RegOpenKeyExW(classes, row.key.c_str(), 0, KEY_SET_VALUE, key.put());
    if (opened == ERROR_SUCCESS) {
        const LSTATUS removed = row.text ? RegDeleteValueW(key.get(), row.name.c_str()) : ERROR_SUCCESS;
        if (removed != ERROR_FILE_NOT_FOUND) throwIfRefused(removed);
    } else if (opened != ERROR_FILE_NOT_FOUND) {
        throwIfRefused(opened);
    }
    key.reset();
    std::wstring path = row.key;
    while (!isShared(path) && isEmptyKey(classes, path)) {
        throwIfRefused(RegDeleteKeyW(classes, path.c_str()));
        const std::size_t end = path.find_last_of(L'\\');
        if (end == std::wstring::npos) break;
        path.resize(end);
    }
}

void removeUnlessKept(HKEY classes, const RegistryRow& row) {
    if (row.keptBy.empty() || !exists(classes, row.keptBy)) removeRow(classes, row);
}

void removeRows(HKEY classes, std::span<const RegistryRow> rows) {
    for (const RegistryRow& row : std::views::reverse(rows)) removeUnlessKept(classes, row);
}

/// For a registration that failed: its own reason is the one to report, whatever fails here.
void takeBack(HKEY classes, std::span<const RegistryRow* const> added) noexcept {
    try {
        for (const RegistryRow* row : std::views::reverse(added)) removeUnlessKept(classes, *row);
    } catch (...) {
        return;
    }
}

/// All or none; what was there before stays in any case.
void writeRows(HKEY classes, std::span<const RegistryRow> rows) {
    // All the memory that writing takes, before anything is written.
    std::vector<const RegistryRow*> added;
    added.reserve(rows.size());
    try {
        for (const RegistryRow& row : rows) {
            if (!holds(classes, row)) added.push_back(&row);
            writeRow(classes, row);
        }
    } catch (const HresultFailure&) {
        takeBack(classes, added);
        throw;
    }
}

template <class Step>
HRESULT withRows(RegistrationScope scope, Step step) noexcept {
    try {
        const std::vector<RegistryRow> rows = registryRows(modulePath());
        const RegistryKey classes = openClasses(scope);
        step(classes.get(), rows);
        return S_OK;
    } catch (const HresultFailure& failure) {
        return failure.code;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return SELFREG_E_CLASS;
    }
}

}  // namespace

HRESULT registerLibrary(RegistrationScope scope) noexcept { return withRows(scope, writeRows); }

HRESULT unregisterLibrary(RegistrationScope scope) noexcept { return withRows(scope, removeRows); }

}  // namespace vrx
