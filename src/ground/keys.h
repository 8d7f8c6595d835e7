// Key strings: parts between separators, picked by their index from 0.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vrx {

/// The part of a key like a/b/c; empty beyond the last one. A negative position is a subscript out of range.
[[nodiscard]] std::u16string getXPathStep(std::u16string_view key, std::int16_t position);

/// The same for a key like 12-7-3.
[[nodiscard]] std::u16string getKey(std::u16string_view key, std::int16_t position);

}  // namespace vrx
