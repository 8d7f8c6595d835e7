#include "dialogs/engine/settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <system_error>

#include "ground/rounding.h"

namespace vrx {
namespace {

std::u16string_view withoutBlanks(std::u16string_view text) {
    constexpr std::u16string_view kBlanks = u" \t\r\n";
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(kBlanks)));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// A decimal number, with or without fraction and exponent, that the text consists of.
std::optional<double> decimalNumber(std::u16string_view text) {
    std::string digits;
    for (const char16_t character : withoutBlanks(text)) {
        digits += character < 0x80 ? static_cast<char>(character) : '?';
    }
    if (digits.starts_with('+') && !digits.starts_with("+-")) digits.erase(0, 1);
    double value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

std::int32_t settingNumber(std::u16string_view text, const NumberSetting& setting) {
    const std::optional<double> number = decimalNumber(text);
    if (!number) return setting.defaultValue;
    return toInt32(
        std::clamp(*number, static_cast<double>(setting.lowest), static_cast<double>(setting.highest)));
}

}  // namespace vrx
