// What the pattern class and the pattern editor share: colour channels, the items of a pattern string, and
// the exchange of two stops.
#pragma once

#include <cstdint>
#include <string_view>

#include "pattern/engine/CVrxPatternColor.h"

namespace vrx {

/// The channels of a colour: red + 256 green + 65536 blue. Bits 24 to 31 belong to none.
[[nodiscard]] constexpr std::uint8_t Get_Red(std::int32_t color) { return static_cast<std::uint8_t>(color); }
[[nodiscard]] constexpr std::uint8_t Get_Green(std::int32_t color) {
    return static_cast<std::uint8_t>(color >> 8);
}
[[nodiscard]] constexpr std::uint8_t Get_Blue(std::int32_t color) {
    return static_cast<std::uint8_t>(color >> 16);
}

/// One stop of a pattern string.
struct PatternItem {
    std::int32_t position = 0;
    std::int32_t color = 0;
};

/// Takes the next item off `remaining`: up to the first ";", without blanks around it; without a ";" all that
/// is left, as it is.
[[nodiscard]] std::u16string_view Get_NextPatternItem(std::u16string_view& remaining);

/// The stop that an item describes. Malformed text reads as position 0 or as black; overflow for numbers
/// beyond 32 bits.
[[nodiscard]] PatternItem Split_PatternItem(std::u16string_view item);

/// Exchanges position and colour; each stop keeps its own `maxPos`.
void Swap_PatternColor(CVrxPatternColor& a, CVrxPatternColor& b);

}  // namespace vrx
