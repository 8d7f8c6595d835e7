#include "dialogs/engine/zoom_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <utility>

#include "ground/rounding.h"

namespace vrx {
namespace {

constexpr int kSignificantDigits = 15;
constexpr int kDecimals = 4;

/// Adds one to a decimal number.
std::string incremented(std::string digits) {
    std::size_t nines = 0;
    for (auto digit = digits.rbegin(); digit != digits.rend() && *digit == '9'; ++digit) {
        *digit = '0';
        ++nines;
    }
    if (nines == digits.size()) return std::string("1").append(digits);
    ++digits[digits.size() - nines - 1];
    return digits;
}

/// A finite number that is not negative in units of its last decimal, as decimal digits.
std::string roundedDigits(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*e", kSignificantDigits - 1, value);
    const std::string_view scientific(text.data());
    const std::size_t mark = scientific.find('e');
    std::string digits(1, scientific[0]);
    digits += scientific.substr(2, mark - 2);
    const int exponent = std::stoi(std::string(scientific.substr(mark + 1)));
    // The digits stand for digits * 10^(exponent - 14); wanted are whole units of 10^-4.
    const int kept = exponent + 1 + kDecimals;
    if (kept < 0) return "0";
    const bool up = kept < kSignificantDigits && digits[static_cast<std::size_t>(kept)] >= '5';
    digits.resize(static_cast<std::size_t>(kept), '0');
    return up ? incremented(std::move(digits)) : digits;
}

}  // namespace

ScrolledView scrolledView(Extent area, Extent content, Extent bars) {
    bool horizontal = content.width > area.width;
    const bool vertical = content.height > area.height - (horizontal ? bars.height : 0);
    horizontal = content.width > area.width - (vertical ? bars.width : 0);
    // The bar that the other one has made necessary takes its own part of the view.
    const bool verticalToo = content.height > area.height - (horizontal ? bars.height : 0);
    return {horizontal,
            verticalToo,
            {std::max(area.width - (verticalToo ? bars.width : 0), 0),
             std::max(area.height - (horizontal ? bars.height : 0), 0)}};
}

WindowPlace zoomWindowPlace(Extent picture, Extent borders, Extent bars, Extent screen) {
    // Held to the screen first, so that the largest picture does not overflow.
    const bool tall = picture.height > screen.height - borders.height;
    const bool wide = picture.width > screen.width - borders.width;
    const auto side = [](int length, int border, bool otherScrolls, int bar, int limit) {
        const int wanted = std::clamp(length, 0, limit) + border + (otherScrolls ? bar : 0);
        return std::clamp(wanted, 0, limit);
    };
    const int width = side(picture.width, borders.width, tall, bars.width, screen.width);
    const int height = side(picture.height, borders.height, wide, bars.height, screen.height);
    return {(screen.width - width) / 2, (screen.height - height) / 2, width, height};
}

int heldPosition(int view, int content, int position) {
    return std::clamp(position, 0, std::max(content - view, 0));
}

int contentStart(int view, int content, int scrolled) {
    return content > view ? -heldPosition(view, content, scrolled) : (view - content) / 2;
}

std::int32_t pixelUnderPointer(double pointer, double pictureTwips, double displayedTwips,
                               double twipsInPixel) {
    if (displayedTwips == 0.0) throw platformError(Platform::DivisionByZero);
    return toInt32(toInt32(pointer * (pictureTwips / displayedTwips)) / twipsInPixel);
}

std::u16string readoutText(double value) {
    if (!std::isfinite(value)) return u"";
    const std::string rounded = roundedDigits(std::fabs(value));
    const bool zero = rounded.find_first_not_of('0') == std::string::npos;
    std::string digits;
    if (rounded.size() <= kDecimals) digits.assign(kDecimals + 1 - rounded.size(), '0');
    digits += rounded;
    const auto point = digits.end() - kDecimals;
    std::u16string text(value < 0.0 && !zero ? u"-" : u"");
    text.append(digits.begin(), point);
    text += u'.';
    return text.append(point, digits.end());
}

}  // namespace vrx
