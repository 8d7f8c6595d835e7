// Single values of the registry as texts.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace vrx {

struct RegistryPlace {
    HKEY hive;
    std::wstring subkey;  ///< without a backslash at either end; empty for the hive itself
    std::wstring name;
};

/// A stored text, up to its first zero character and with its environment variables filled in where they are
/// meant to be, or a stored number in decimal. Nothing for other kinds and where the value cannot be read.
[[nodiscard]] std::optional<std::u16string> readRegistryText(const RegistryPlace& place);

/// Makes the key when it is missing. ERROR_SUCCESS or the system's reason.
[[nodiscard]] LSTATUS writeRegistryText(const RegistryPlace& place, const std::u16string& text);

/// Removes the value; the key stays. One that is not there is no failure.
void removeRegistryText(const RegistryPlace& place);

}  // namespace vrx
