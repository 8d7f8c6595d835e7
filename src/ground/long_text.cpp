#include "ground/long_text.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace vrx {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
// Beyond it a number is 0 or too large, however many digits a line has.
constexpr int kMaxExponent = 100000;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool takeFront(std::string_view& text, std::string_view anyOf) {
    if (text.empty() || anyOf.find(text.front()) == std::string_view::npos) return false;
    text.remove_prefix(1);
    return true;
}

bool takeBack(std::string_view& text, char character) {
    if (text.empty() || text.back() != character) return false;
    text.remove_suffix(1);
    return true;
}

void trim(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(kWhiteSpace) + 1));
}

/// Takes what stands around the digits; whether the number is negative, nothing where there is too much.
std::optional<bool> takeSurroundings(std::string_view& text) {
    int minuses = 0;
    int signs = 0;
    int currencies = 0;
    int open = 0;
    int closed = 0;
    for (;; text.remove_prefix(1)) {
        if (text.starts_with('+') || text.starts_with('-')) {
            ++signs;
            minuses += text.front() == '-';
        } else if (text.starts_with('$')) {
            ++currencies;
        } else if (text.starts_with('(')) {
            ++open;
        } else {
            break;
        }
    }
    for (;;) {
        if (takeBack(text, '-')) {
            ++signs;
            ++minuses;
        } else if (takeBack(text, '+')) {
            ++signs;
        } else if (takeBack(text, '$')) {
            ++currencies;
        } else if (takeBack(text, ')')) {
            ++closed;
        } else {
            break;
        }
    }
    if (open != closed || signs + open > 1 || currencies > 1) return std::nullopt;
    return minuses + open > 0;
}

/// 0.digits times 10 to the power of `scale`; the first digit is not 0.
struct Decimal {
    std::string digits;
    int scale = 0;
};

/// Digits, commas and one point.
std::optional<Decimal> takeDigits(std::string_view& text) {
    if (text.starts_with(',')) return std::nullopt;
    Decimal number;
    bool any = false;
    bool behindPoint = false;
    for (; !text.empty(); text.remove_prefix(1)) {
        const char character = text.front();
        if (character == '.' && !behindPoint) {
            behindPoint = true;
        } else if (isDigit(character)) {
            any = true;
            if (number.digits.empty() && character == '0') {
                number.scale -= behindPoint;
            } else {
                number.digits += character;
                number.scale += !behindPoint;
            }
        } else if (character != ',') {
            break;
        }
    }
    if (!any) return std::nullopt;
    return number;
}

std::optional<int> takeExponent(std::string_view& text) {
    if (!takeFront(text, "eEdD")) return 0;
    const bool negative = text.starts_with('-');
    takeFront(text, "+-");
    if (text.empty() || !isDigit(text.front())) return std::nullopt;
    int exponent = 0;
    for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1)) {
        exponent = std::min(10 * exponent + (text.front() - '0'), kMaxExponent);
    }
    return negative ? -exponent : exponent;
}

/// Rounded half to even; nothing beyond 10 digits before the point.
std::optional<std::int64_t> rounded(const Decimal& number) {
    constexpr int kMostDigits = 10;
    if (number.digits.empty() || number.scale < 0) return 0;
    if (number.scale > kMostDigits) return std::nullopt;
    const auto wholeDigits = static_cast<std::size_t>(number.scale);
    std::int64_t whole = 0;
    for (std::size_t i = 0; i < wholeDigits; ++i) {
        whole = 10 * whole + (i < number.digits.size() ? number.digits[i] - '0' : 0);
    }
    const std::string rest = number.digits.substr(std::min(wholeDigits, number.digits.size()));
    if (rest.empty() || rest[0] < '5') return whole;
    const bool isHalf = rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
    return isHalf ? whole + whole % 2 : whole + 1;
}

std::optional<std::int32_t> longOfDigits(std::string_view digits, int base) {
    std::uint32_t bits = 0;
    const char* const last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, bits, base);
    if (error != std::errc{} || end != last) return std::nullopt;
    return static_cast<std::int32_t>(bits);
}

}  // namespace

std::optional<std::int32_t> longOfText(std::string_view text) {
    trim(text);
    if (text.starts_with("&H") || text.starts_with("&h")) return longOfDigits(text.substr(2), 16);
    if (text.starts_with("&O") || text.starts_with("&o")) return longOfDigits(text.substr(2), 8);

    const std::optional<bool> negative = takeSurroundings(text);
    if (!negative) return std::nullopt;
    std::optional<Decimal> number = takeDigits(text);
    if (!number) return std::nullopt;
    const std::optional<int> exponent = takeExponent(text);
    if (!exponent || !text.empty()) return std::nullopt;
    number->scale += *exponent;
    const std::optional<std::int64_t> magnitude = rounded(*number);
    if (!magnitude) return std::nullopt;
    const std::int64_t value = *negative ? -*magnitude : *magnitude;
    if (value < INT32_MIN || value > INT32_MAX) return std::nullopt;
    return static_cast<std::int32_t>(value);
}

}  // namespace vrx
