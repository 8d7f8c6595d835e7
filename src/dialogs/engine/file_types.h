// The rows of the dialogs' lists of file types. What a dialog remembers is the number of a row.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vrx::file_types {

inline constexpr std::array<std::u16string_view, 4> kImageLoader{u"*.JPG", u"*.BMP", u"*.GIF", u"*.*"};
inline constexpr std::array<std::u16string_view, 2> kImageSaver{u"*.JPG", u"*.BMP"};
inline constexpr std::array<std::u16string_view, 2> kHdrLoader{u"*.HDR", u"*.*"};
inline constexpr std::array<std::u16string_view, 3> kHdrSaver{u"*.HDR", u"*.JPG", u"*.BMP"};

template <std::size_t Count>
[[nodiscard]] constexpr std::int32_t lastRow(const std::array<std::u16string_view, Count>&) {
    return static_cast<std::int32_t>(Count) - 1;
}

}  // namespace vrx::file_types
