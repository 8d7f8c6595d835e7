// Whole numbers as text.
#pragma once

#include <cstdint>
#include <string>

namespace vrx {

/// Plain decimal text: "85", "0", "-1".
[[nodiscard]] inline std::u16string decimalText(std::int32_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

}  // namespace vrx
