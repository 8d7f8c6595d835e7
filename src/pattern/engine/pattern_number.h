// Numbers in pattern strings: decimal with point and exponent, hexadecimal after &H, octal after &O.
// A pattern string travels between machines, so nothing here depends on a locale. The only blank is the
// space.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vrx {

/// The number that the text as a whole is, rounded as below; blanks around it are allowed. Overflow for a
/// number beyond 32 bits.
[[nodiscard]] std::optional<std::int32_t> wholeNumber(std::u16string_view text);

/// The number that the text begins with, rounded to nearest, halves to even; 0 when there is none. Blanks are
/// skipped wherever they stand. Overflow for a number beyond 32 bits.
[[nodiscard]] std::int32_t readNumber(std::u16string_view text);

}  // namespace vrx
