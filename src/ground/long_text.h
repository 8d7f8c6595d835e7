// Text to whole numbers as Visual Basic converts it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vrx {

/// What CLng makes of a text where decimals have a point, thousands a comma and money a $; nothing where it
/// refuses the text or the number leaves 32 bits. White space may stand around the number, one sign or $ on
/// either side, parentheses mean minus, commas count nowhere, an exponent follows e or d; halves go to even.
/// &H and &O begin 32 bits in hexadecimal and octal digits.
[[nodiscard]] std::optional<std::int32_t> longOfText(std::string_view text);

}  // namespace vrx
