// The seam of a COM method: the host's call comes in, an HRESULT goes out, and no exception leaves.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "com/class_identity.h"
#include "com/com_ptr.h"
#include "com/entry.h"
#include "com/error_info.h"
#include "com/variant_convert.h"

namespace vrx {

/// Runs `body` and turns what it throws into an HRESULT with error information.
template <class Body>
HRESULT guarded(const ClassIdentity& identity, Body&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return publishCurrentException(identity.interfaceId, identity.name);
    }
}

/// The number that stands for an enumeration's value; a host may pass one that the enumeration does not have.
template <class Enumeration>
[[nodiscard]] std::int32_t numberOf(const Enumeration& value) {
    std::int32_t number;
    static_assert(sizeof number == sizeof value);
    std::memcpy(&number, &value, sizeof number);
    return number;
}

/// Stores what a method found in the result that its host gave.
template <class T, class Value>
void storeResult(T* result, const Value& value) {
    *result = static_cast<T>(value);
}
template <class T, class Value>
requires std::is_enum_v<T>
void storeResult(T* result, const Value& value) {
    const std::int32_t number = numberOf(value);
    std::memcpy(result, &number, sizeof number);
}
inline void storeResult(VARIANT_BOOL* result, bool value) { *result = value ? VARIANT_TRUE : VARIANT_FALSE; }
inline void storeResult(BSTR* result, std::u16string_view value) { *result = toBstr(value).release(); }
inline void storeResult(BSTR* result, const std::u16string& value) {
    storeResult(result, std::u16string_view(value));
}
template <class T>
void storeResult(T** result, ComPtr<T> value) {
    *result = value.detach();
}

}  // namespace vrx
