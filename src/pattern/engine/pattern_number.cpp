#include "pattern/engine/pattern_number.h"

#include <algorithm>
#include <string>

#include "ground/blanks.h"
#include "ground/error.h"

namespace vrx {
namespace {

// Stands for everything that is as large or larger: beyond every number that can be read and beyond the
// length of any text.
constexpr std::uint32_t kHuge = 0xFFFFFFFF;

/// What can be read at the beginning of a text.
struct Prefix {
    std::size_t length;  ///< in characters; 0 when there is nothing
    std::int64_t value;
};

char16_t charAt(std::u16string_view text, std::size_t index) {
    return index < text.size() ? text[index] : u'\0';
}

bool isSign(char16_t c) { return c == u'+' || c == u'-'; }

std::int64_t withSign(char16_t sign, std::int64_t value) { return sign == u'-' ? -value : value; }

/// The value of a digit; 16 for any other character.
unsigned digitValue(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    return 16;
}

std::uint32_t appendDigit(std::uint32_t number, unsigned base, unsigned digit) {
    const std::uint64_t longer = std::uint64_t{number} * base + digit;
    return longer < kHuge ? static_cast<std::uint32_t>(longer) : kHuge;
}

struct Digits {
    std::size_t length;
    std::uint32_t value;
};

Digits readDigits(std::u16string_view text, unsigned base) {
    std::size_t length = 0;
    std::uint32_t value = 0;
    for (const char16_t c : text) {
        const unsigned digit = digitValue(c);
        if (digit >= base) break;
        value = appendDigit(value, base, digit);
        ++length;
    }
    return {length, value};
}

/// Digits behind the two characters of a prefix.
Prefix readPrefixed(std::u16string_view text, unsigned base) {
    const Digits digits = readDigits(text.substr(2), base);
    return digits.length > 0 ? Prefix{digits.length + 2, digits.value} : Prefix{};
}

/// An exponent without digits is none: the number ends before it.
Prefix readExponent(std::u16string_view text) {
    if (std::u16string_view(u"eEdD").find(charAt(text, 0)) == std::u16string_view::npos) return {};
    const std::size_t start = isSign(charAt(text, 1)) ? 2 : 1;
    const Digits digits = readDigits(text.substr(std::min(start, text.size())), 10);
    if (digits.length == 0) return {};
    return {start + digits.length, withSign(text[1], digits.value)};
}

/// whole.fraction x 10^exponent from its decimal digits, to nearest, halves to even.
std::int64_t roundDecimal(std::u16string_view whole, std::u16string_view fraction, std::int64_t exponent) {
    const auto digitAt = [&](std::size_t i) {
        return digitValue(i < whole.size() ? whole[i] : fraction[i - whole.size()]);
    };
    const auto count = static_cast<std::int64_t>(whole.size() + fraction.size());
    const std::int64_t integerDigits = static_cast<std::int64_t>(whole.size()) + exponent;
    const auto point = static_cast<std::size_t>(std::clamp<std::int64_t>(integerDigits, 0, count));
    std::uint32_t integer = 0;
    for (std::size_t i = 0; i < point; ++i) integer = appendDigit(integer, 10, digitAt(i));
    for (std::int64_t zeros = integerDigits - count; zeros > 0 && integer > 0 && integer < kHuge; --zeros)
        integer = appendDigit(integer, 10, 0);
    // All digits stand behind the tenths, or before them.
    if (integerDigits < 0 || integerDigits >= count) return integer;

    const unsigned tenths = digitAt(point);
    bool rest = false;
    for (auto i = point + 1; i < static_cast<std::size_t>(count) && !rest; ++i) rest = digitAt(i) != 0;
    const bool up = tenths > 5 || (tenths == 5 && (rest || integer % 2 != 0));
    return std::int64_t{integer} + (up ? 1 : 0);
}

Prefix readDecimal(std::u16string_view text) {
    const std::size_t start = isSign(charAt(text, 0)) ? 1 : 0;
    const Digits digits = readDigits(text.substr(start), 10);
    const std::u16string_view whole = text.substr(start, digits.length);
    std::size_t length = start + whole.size();
    std::u16string_view fraction;
    if (charAt(text, length) == u'.') {
        ++length;
        fraction = text.substr(length, readDigits(text.substr(length), 10).length);
        length += fraction.size();
    }
    if (whole.empty() && fraction.empty()) return {};
    const Prefix exponent = readExponent(text.substr(length));
    const bool isWhole = fraction.empty() && exponent.value == 0;
    const std::int64_t value = isWhole ? digits.value : roundDecimal(whole, fraction, exponent.value);
    return {length + exponent.length, withSign(text[0], value)};
}

Prefix readPrefix(std::u16string_view text) {
    if (charAt(text, 0) != u'&') return readDecimal(text);
    const char16_t letter = charAt(text, 1);
    if (letter == u'H' || letter == u'h') return readPrefixed(text, 16);
    if (letter == u'O' || letter == u'o') return readPrefixed(text, 8);
    return {};
}

std::int32_t narrowed(std::int64_t value) {
    if (value != static_cast<std::int32_t>(value)) throw platformError(Platform::Overflow);
    return static_cast<std::int32_t>(value);
}

}  // namespace

std::optional<std::int32_t> wholeNumber(std::u16string_view text) {
    const std::u16string_view trimmed = trimBlanks(text);
    const Prefix prefix = readPrefix(trimmed);
    if (trimmed.empty() || prefix.length != trimmed.size()) return std::nullopt;
    return narrowed(prefix.value);
}

std::int32_t readNumber(std::u16string_view text) {
    if (text.find(u' ') == std::u16string_view::npos) return narrowed(readPrefix(text).value);
    std::u16string packed(text);
    std::erase(packed, u' ');
    return narrowed(readPrefix(packed).value);
}

}  // namespace vrx
