#include "pattern/engine/modPattern.h"

#include <utility>

#include "ground/blanks.h"
#include "pattern/engine/pattern_number.h"

namespace vrx {

std::u16string_view Get_NextPatternItem(std::u16string_view& remaining) {
    const std::size_t end = remaining.find(u';');
    if (end == std::u16string_view::npos) return std::exchange(remaining, {});
    const std::u16string_view item = trimBlanks(remaining.substr(0, end));
    remaining.remove_prefix(end + 1);
    return item;
}

PatternItem Split_PatternItem(std::u16string_view item) {
    const std::size_t separator = item.find(u'-');
    if (separator == std::u16string_view::npos) return {wholeNumber(item).value_or(0), 0};
    return {readNumber(item.substr(0, separator)), wholeNumber(item.substr(separator + 1)).value_or(0)};
}

void Swap_PatternColor(CVrxPatternColor& a, CVrxPatternColor& b) {
    const PatternItem old{a.position(), a.color()};
    a.setPosition(b.position());
    a.setColor(b.color());
    b.setPosition(old.position);
    b.setColor(old.color);
}

}  // namespace vrx
