// The colours of a pattern as a list that tests compare.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "pattern/engine/pattern_expansion.h"

namespace vrx::test {

inline std::vector<std::int32_t> colorsOf(std::u16string_view pattern, std::int32_t numItem) {
    PatternTable table = Get_PatternFromString(pattern, numItem);
    const std::span<const std::int32_t> colors = table.colors();
    return {colors.begin(), colors.end()};
}

}  // namespace vrx::test
