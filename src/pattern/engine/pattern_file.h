// The text of a pattern file: the pattern string as one line. What follows the first line is ignored.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vrx {

[[nodiscard]] std::vector<std::uint8_t> encodePatternFile(std::u16string_view pattern);
/// The first line; an empty file gives an empty text.
[[nodiscard]] std::u16string decodePatternFile(std::span<const std::uint8_t> file);

}  // namespace vrx
