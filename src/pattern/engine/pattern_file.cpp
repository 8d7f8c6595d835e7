#include "pattern/engine/pattern_file.h"

#include <algorithm>

namespace vrx {

std::vector<std::uint8_t> encodePatternFile(std::u16string_view pattern) {
    std::vector<std::uint8_t> file;
    file.reserve(pattern.size() + 2);
    for (const char16_t c : pattern) file.push_back(static_cast<std::uint8_t>(c < 0x80 ? c : u'?'));
    file.push_back('\r');
    file.push_back('\n');
    return file;
}

std::u16string decodePatternFile(std::span<const std::uint8_t> file) {
    const auto end =
        std::ranges::find_if(file, [](std::uint8_t byte) { return byte == '\r' || byte == '\n'; });
    return {file.begin(), end};
}

}  // namespace vrx
