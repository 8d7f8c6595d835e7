// Capital letters one character to one and without a locale, as file names are compared.
#pragma once

#include <string_view>

namespace vrx {

/// The simple upper-case mapping of Unicode; characters without one stay as they are.
[[nodiscard]] char16_t upperCase(char16_t character);

[[nodiscard]] bool equalInUpperCase(std::u16string_view a, std::u16string_view b);

}  // namespace vrx
