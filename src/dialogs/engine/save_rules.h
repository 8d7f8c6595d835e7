// What the save dialogs do with a name, and what they tell the user.
#pragma once

#include <string>
#include <string_view>

namespace vrx {

enum class SaveFormat { Hdr, Jpeg, Bmp };

/// Of a row of the list of types, like "*.HDR". Whatever is neither HDR nor JPEG is a bitmap.
[[nodiscard]] SaveFormat saveFormatOf(std::u16string_view pattern);

/// The full name of the file to write: the format's extension is appended whatever the name ends with.
[[nodiscard]] std::u16string saveFileName(std::u16string_view folder, std::u16string_view name,
                                          SaveFormat format);

/// Whether a file can have such a name at all: none with a wildcard in it can, or with a colon, which would
/// mean a hidden part of another file. Folders in front of the name are no harm.
[[nodiscard]] bool canNameFile(std::u16string_view name);

namespace save_text {

inline constexpr char16_t kTitle[] = u"Save Picture";
inline constexpr char16_t kErrorTitle[] = u"Errore";
inline constexpr char16_t kNoName[] = u"Insert the File Name";

/// Whether to replace a file that is there already. The lines end with a carriage return alone.
[[nodiscard]] std::u16string replaceQuestion(std::u16string_view fullName);
[[nodiscard]] std::u16string jpegFailure(std::u16string_view fullName);
[[nodiscard]] std::u16string aborted(std::u16string_view description);

}  // namespace save_text
}  // namespace vrx
