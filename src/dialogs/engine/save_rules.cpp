#include "dialogs/engine/save_rules.h"

#include <algorithm>

#include "dialogs/engine/file_names.h"

namespace vrx {
namespace {

std::u16string_view extensionOf(SaveFormat format) {
    switch (format) {
        case SaveFormat::Hdr:
            return u".hdr";
        case SaveFormat::Jpeg:
            return u".jpg";
        default:
            return u".bmp";
    }
}

}  // namespace

SaveFormat saveFormatOf(std::u16string_view pattern) {
    if (pattern == u"*.HDR") return SaveFormat::Hdr;
    return pattern == u"*.JPG" ? SaveFormat::Jpeg : SaveFormat::Bmp;
}

std::u16string saveFileName(std::u16string_view folder, std::u16string_view name, SaveFormat format) {
    return fullFileName(folder, name).append(extensionOf(format));
}

bool canNameFile(std::u16string_view name) {
    constexpr std::u16string_view kForbidden = u"*?:\"<>|";
    return std::ranges::none_of(
        name, [&](char16_t c) { return c < u' ' || kForbidden.find(c) != std::u16string_view::npos; });
}

namespace save_text {

std::u16string replaceQuestion(std::u16string_view fullName) {
    return std::u16string(fullName) + u"\rFile already exist.\r\r Replace the File?";
}

std::u16string jpegFailure(std::u16string_view fullName) {
    return u"Failed to save the picture to the file: '" + std::u16string(fullName) + u"'";
}

std::u16string aborted(std::u16string_view description) {
    return u"Save aborted : " + std::u16string(description);
}

}  // namespace save_text
}  // namespace vrx
