// What the dialogs remember between uses: where each value is kept and how a number becomes text and back.
// The subkey of a value is the root that the host gave, followed directly by the suffix.
#pragma once

#include <cstdint>
#include <string_view>

#include "dialogs/engine/file_types.h"

namespace vrx {

/// A folder; where none is stored it is the host application's own.
struct FolderSetting {
    std::u16string_view suffix;
    std::u16string_view name;
};

/// A whole number between two bounds.
struct NumberSetting {
    std::u16string_view suffix;
    std::u16string_view name;
    std::int32_t defaultValue;
    std::int32_t lowest;
    std::int32_t highest;
};

/// All of them, in the order in which each dialog reads and writes its own.
namespace settings {

inline constexpr FolderSetting kImageSaverPath{u"\\ImageSaver", u"Path"};
inline constexpr NumberSetting kImageSaverType{u"\\ImageSaver", u"Type", 0, 0,
                                               file_types::lastRow(file_types::kImageSaver)};
inline constexpr NumberSetting kImageSaverQuality{u"\\ImageSaver", u"JPGDetail", 85, 0, 100};

inline constexpr FolderSetting kImageLoaderPath{u"\\ImageLoader", u"Path"};
inline constexpr NumberSetting kImageLoaderPreview{u"\\ImageLoader", u"Preview", 1, 0, 1};
inline constexpr NumberSetting kImageLoaderType{u"\\ImageLoader", u"Type", 0, 0,
                                                file_types::lastRow(file_types::kImageLoader)};

inline constexpr FolderSetting kHdrSaverPath{u"\\HDRSaver", u"Path"};
inline constexpr NumberSetting kHdrSaverType{u"\\HDRSaver", u"Type", 0, 0,
                                             file_types::lastRow(file_types::kHdrSaver)};
inline constexpr NumberSetting kHdrSaverQuality{u"\\HDRSaver", u"JPGDetail", 85, 0, 100};

inline constexpr FolderSetting kHdrLoaderPath{u"\\ImageHDR", u"Path"};
inline constexpr NumberSetting kHdrLoaderPreview{u"\\ImageHDR", u"Preview", 1, 0, 1};

// The width of the editor's window in twips; its bounds are pixels.
inline constexpr FolderSetting kPatternPath{u"\\Pattern", u"Path"};
inline constexpr NumberSetting kPatternWidth{u"\\Pattern", u"Width", 3735, 0, 1'000'000};

}  // namespace settings

/// The number that a stored text means: the default for one that is no number, the nearest valid value for
/// one out of bounds. Fractions round to nearest, halves to even.
[[nodiscard]] std::int32_t settingNumber(std::u16string_view text, const NumberSetting& setting);

}  // namespace vrx
