// Blanks around texts.
#pragma once

#include <algorithm>
#include <string_view>

namespace vrx {

[[nodiscard]] inline bool isBlank(std::u16string_view text) {
    return text.find_first_not_of(u' ') == std::u16string_view::npos;
}

/// Without the blanks at both ends.
[[nodiscard]] inline std::u16string_view trimBlanks(std::u16string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

}  // namespace vrx
