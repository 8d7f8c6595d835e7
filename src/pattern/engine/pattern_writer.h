// From the editor's stops to a pattern string.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "pattern/engine/CVrxPatternColor.h"

namespace vrx {

/// The stops by ascending position, with positions in thousandths of the ramp. Of stops at one position only
/// the first is written; nothing is written behind a gap of 1000 units or behind the first stop that reaches
/// the end of the ramp. Division by zero when `rampWidth` is 0.
[[nodiscard]] std::u16string writePattern(std::span<const CVrxPatternColor> stops, std::int32_t rampWidth);

}  // namespace vrx
