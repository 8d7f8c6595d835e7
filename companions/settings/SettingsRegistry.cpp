#include "settings/SettingsRegistry.h"

#include <algorithm>
#include <string>

#include "com/handle_number.h"
#include "com/win32_error.h"
#include "settings/registry_text.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"SettingsRegistry", CLSID_SettingsRegistry, IID__SettingsRegistry};

/// Only the hives that keep settings: any other number could be a handle of the host's.
HKEY hiveOf(long number) {
    const HKEY hive = handleOf<HKEY>(number);
    for (const HKEY known :
         {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKEY_CLASSES_ROOT, HKEY_USERS, HKEY_CURRENT_CONFIG}) {
        if (hive == known) return known;
    }
    throw platformError(Platform::InvalidCall);
}

/// A zero character would cut the name short, and mean another place.
std::wstring plainName(BSTR text) {
    std::wstring name(text, text + SysStringLen(text));
    if (name.find(L'\0') != std::wstring::npos) throw platformError(Platform::InvalidCall);
    return name;
}

RegistryPlace placeOf(long hive, BSTR subkey, BSTR valueName) {
    std::wstring path = plainName(subkey);
    path.erase(path.find_last_not_of(L'\\') + 1);
    path.erase(0, std::min(path.size(), path.find_first_not_of(L'\\')));
    return {hiveOf(hive), path, plainName(valueName)};
}

RegistryPlace ofUser(RegistryPlace place) {
    place.hive = HKEY_CURRENT_USER;
    return place;
}

std::u16string readText(const RegistryPlace& place, BSTR defaultText) {
    std::optional<std::u16string> text;
    if (place.hive == HKEY_LOCAL_MACHINE) text = readRegistryText(ofUser(place));
    if (!text) text = readRegistryText(place);
    return text ? *text : toText(defaultText);
}

void writeText(const RegistryPlace& place, const std::u16string& text) {
    const LSTATUS status = writeRegistryText(place, text);
    if (place.hive != HKEY_LOCAL_MACHINE) {
        if (status != ERROR_SUCCESS) throw win32Error(static_cast<DWORD>(status));
    } else if (status != ERROR_SUCCESS) {
        writeText(ofUser(place), text);
    } else {
        // What was refused before would hide the new text.
        removeRegistryText(ofUser(place));
    }
}

}  // namespace

SettingsRegistry::SettingsRegistry() : ObjectBase(kIdentity) {
    throwIfFailed(CoCreateFreeThreadedMarshaler(static_cast<_SettingsRegistry*>(this), marshaler_.put()));
}

STDMETHODIMP SettingsRegistry::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IMarshal) return marshaler_->QueryInterface(iid, object);
    return ObjectBase::QueryInterface(iid, object);
}

STDMETHODIMP SettingsRegistry::ReadValue(long lHive, BSTR strSubKey, BSTR strName, BSTR* strDefault,
                                         BSTR* value) {
    return answer(value, [&] {
        return readText(placeOf(lHive, strSubKey, strName), strDefault ? *strDefault : nullptr);
    });
}

STDMETHODIMP SettingsRegistry::WriteValue(long lHive, BSTR strSubKey, BSTR strName, BSTR strValue) {
    return run([&] { writeText(placeOf(lHive, strSubKey, strName), toText(strValue)); });
}

}  // namespace vrx
