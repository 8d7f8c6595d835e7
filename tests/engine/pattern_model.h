// The expansion of a pattern string step by step, without a shortcut: what the engine's faster ways must
// equal. For short texts and small tables only.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ground/error.h"
#include "pattern/engine/modPattern.h"

namespace vrx::test::model {

/// An entry that was never coloured has no value.
using Table = std::vector<std::optional<std::int32_t>>;

[[noreturn]] inline void overflow() { throw platformError(Platform::Overflow); }

inline std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

/// A whole number without sign from its digits.
inline std::int64_t wholeNumber(const std::string& digits, int base) {
    const std::string significant = digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
    if (significant.size() > 15) overflow();
    return significant.empty() ? 0 : std::stoll(significant, nullptr, base);
}

/// Moves the point by an exponent, digit by digit; an exponent of more than four digits moves it out of
/// sight.
inline std::int64_t decimalNumber(std::string whole, std::string fraction, bool negativeExponent,
                                  const std::string& exponent) {
    const std::string significant =
        exponent.substr(std::min(exponent.find_first_not_of('0'), exponent.size()));
    if ((whole + fraction).find_first_not_of('0') == std::string::npos) return 0;
    if (significant.size() > 4 && negativeExponent) return 0;
    if (significant.size() > 4) overflow();
    for (int left = significant.empty() ? 0 : std::stoi(significant); left > 0; --left) {
        std::string& from = negativeExponent ? whole : fraction;
        std::string& to = negativeExponent ? fraction : whole;
        if (from.empty()) from = "0";
        if (negativeExponent) {
            to.insert(to.begin(), from.back());
            from.pop_back();
        } else {
            to.push_back(from.front());
            from.erase(0, 1);
        }
    }
    const std::int64_t floor = wholeNumber(whole, 10);
    const std::string rest = fraction.substr(0, fraction.find_last_not_of('0') + 1);
    if (rest == "5") return floor + floor % 2;
    return rest > "5" ? floor + 1 : floor;
}

inline bool consistsOf(const std::string& text, const char* characters) {
    return text.find_first_not_of(characters) == std::string::npos;
}

/// A sign, digits with at most one point, and an exponent; or digits behind &H or &O.
struct Parts {
    bool negative = false;
    std::string whole;
    std::string fraction;
    bool negativeExponent = false;
    std::string exponent;
    int base = 10;
};

inline bool takeSign(std::string& text) {
    const bool negative = text.starts_with("-");
    if (negative || text.starts_with("+")) text.erase(0, 1);
    return negative;
}

inline std::optional<Parts> partsOf(std::string text) {
    Parts parts;
    const std::string start = text.substr(0, 2);
    parts.base = start == "&H" || start == "&h" ? 16 : start == "&O" || start == "&o" ? 8 : 10;
    if (parts.base != 10) {
        parts.whole = text.substr(2);
        const bool valid = consistsOf(parts.whole, parts.base == 8 ? "01234567" : "0123456789ABCDEFabcdef");
        return valid && !parts.whole.empty() ? std::optional(parts) : std::nullopt;
    }
    if (const std::size_t mark = text.find_first_of("eEdD"); mark != std::string::npos) {
        parts.exponent = text.substr(mark + 1);
        parts.negativeExponent = takeSign(parts.exponent);
        if (parts.exponent.empty()) return std::nullopt;
        text.resize(mark);
    }
    parts.negative = takeSign(text);
    const std::size_t point = text.find('.');
    parts.whole = text.substr(0, point);
    if (point != std::string::npos) parts.fraction = text.substr(point + 1);
    const bool valid = consistsOf(parts.whole + parts.fraction + parts.exponent, "0123456789");
    return valid && !(parts.whole + parts.fraction).empty() ? std::optional(parts) : std::nullopt;
}

inline bool isValidNumber(const std::string& text) { return partsOf(trimmed(text)).has_value(); }

/// The longest beginning that is a number.
inline std::int32_t numericValue(const std::string& text) {
    std::string packed;
    for (const char c : text) packed += c == ' ' ? "" : std::string(1, c);
    while (!packed.empty() && !partsOf(packed)) packed.pop_back();
    if (packed.empty()) return 0;
    const Parts parts = *partsOf(packed);
    std::int64_t value =
        parts.base == 10 ? decimalNumber(parts.whole, parts.fraction, parts.negativeExponent, parts.exponent)
                         : wholeNumber(parts.whole, parts.base);
    if (parts.negative) value = -value;
    if (value < INT32_MIN || value > INT32_MAX) overflow();
    return static_cast<std::int32_t>(value);
}

inline std::string nextItem(std::string& remaining) {
    std::string item = remaining;
    const std::size_t k = remaining.find(';');
    if (k == std::string::npos) {
        remaining = "";
    } else {
        item = trimmed(remaining.substr(0, k));
        remaining = remaining.substr(k + 1);
    }
    return item;
}

inline PatternItem splitItem(const std::string& item) {
    PatternItem split;
    std::string colorText;
    const std::size_t separator = item.find('-');
    if (separator != std::string::npos) {
        split.position = numericValue(item.substr(0, separator));
        colorText = item.substr(separator + 1);
    } else if (isValidNumber(item)) {
        split.position = numericValue(item);
    } else {
        colorText = item;
    }
    if (isValidNumber(colorText)) split.color = numericValue(colorText);
    return split;
}

inline std::int32_t rounded(double value) {
    const double nearest = std::nearbyint(value);
    if (nearest < INT32_MIN || nearest > INT32_MAX) overflow();
    return static_cast<std::int32_t>(nearest);
}

inline std::vector<PatternItem> readItems(std::string remaining, std::int32_t numItem) {
    std::vector<PatternItem> items{{0, 0}};
    std::int32_t largest = 0;
    std::size_t largestIndex = 0;
    while (!remaining.empty()) {
        items.push_back(splitItem(nextItem(remaining)));
        if (items.back().position > largest) {
            largest = items.back().position;
            largestIndex = items.size() - 1;
        }
    }
    if (items[largestIndex].position != 0) {
        const float scale = static_cast<float>(double{1} * numItem / items[largestIndex].position);
        for (std::size_t i = 1; i < items.size(); ++i) {
            if (i != largestIndex) items[i].position = rounded(double{scale} * items[i].position);
        }
    }
    if (items.size() >= 3) std::swap(items[2], items[largestIndex]);
    if (items.size() == 1) {
        items.push_back({0, 0});
    } else {
        items[1].position = 0;
    }
    if (items.size() == 2) {
        items.push_back({numItem, 0});
    } else {
        items[2].position = numItem;
    }
    return items;
}

inline void walk(Table& table, std::int64_t start, std::int64_t current, std::int32_t from, std::int32_t to) {
    float value[3];
    float delta[3];
    const std::int64_t n = current - start;
    for (int c = 0; c < 3; ++c) {
        value[c] = static_cast<float>((from >> (8 * c)) & 255);
        delta[c] = static_cast<float>((to >> (8 * c)) & 255) - value[c];
        if (n != 0) delta[c] = delta[c] / static_cast<float>(n);
    }
    for (std::int64_t p = start; p <= current; ++p) {
        const long red = std::lrint(value[0]);
        const long green = std::lrint(value[1]);
        const long blue = std::lrint(value[2]);
        table.at(static_cast<std::size_t>(p)) = static_cast<std::int32_t>(red + 256 * green + 65536 * blue);
        for (int c = 0; c < 3; ++c) value[c] = value[c] + delta[c];
    }
}

inline Table fill(const std::vector<PatternItem>& items, std::int32_t numItem) {
    Table table(static_cast<std::size_t>(numItem) + 1);
    std::size_t previous = 0;
    std::int64_t current = -1;
    while (current < numItem) {
        std::size_t found = 0;
        std::int64_t best = std::int64_t{1} + numItem;
        for (std::size_t i = 1; i < items.size(); ++i) {
            const std::int64_t distance = items[i].position - current;
            if (distance > 0 && distance < best) {
                best = distance;
                found = i;
            }
        }
        if (found == 0) break;
        current = items[found].position;
        if (previous != 0) {
            const std::int64_t start =
                previous == 1 ? items[1].position : std::int64_t{1} + items[previous].position;
            walk(table, start, current, items[previous].color, items[found].color);
        }
        previous = found;
    }
    return table;
}

inline Table expand(const std::string& pattern, std::int32_t numItem) {
    return fill(readItems(pattern, numItem), numItem);
}

}  // namespace vrx::test::model
