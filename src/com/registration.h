// What the library writes to the registry, for the machine or for one user, and takes back.
#pragma once

#include <windows.h>

namespace vrx {

/// Where classes are registered: below Software\Classes of one of these.
enum class RegistrationScope { Machine, User };

/// Writes every key; a registration that fails takes back what it wrote.
HRESULT registerLibrary(RegistrationScope scope) noexcept;

/// Removes what registration wrote and nothing else; keys that are not there are no failure.
HRESULT unregisterLibrary(RegistrationScope scope) noexcept;

}  // namespace vrx
