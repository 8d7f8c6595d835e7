#include "pattern/engine/pattern_writer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "ground/decimal_text.h"
#include "ground/error.h"
#include "ground/rounding.h"

namespace vrx {
namespace {

// The scale of written positions, and in the ramp's own units the gap that ends the writing.
constexpr double kScale = 1000.0;
constexpr std::int64_t kGap = 1000;

/// Where they are equal, the first in the list comes first.
std::vector<CVrxPatternColor> byPosition(std::span<const CVrxPatternColor> stops) {
    std::vector<CVrxPatternColor> sorted(stops.begin(), stops.end());
    std::ranges::stable_sort(sorted, {}, &CVrxPatternColor::position);
    return sorted;
}

}  // namespace

std::u16string writePattern(std::span<const CVrxPatternColor> stops, std::int32_t rampWidth) {
    if (rampWidth == 0) throw platformError(Platform::DivisionByZero);
    const auto factor = static_cast<float>(kScale / rampWidth);
    std::u16string text;
    std::int64_t current = -1;
    for (const CVrxPatternColor& stop : byPosition(stops)) {
        if (current >= rampWidth || stop.position() - current >= kGap) break;
        if (stop.position() <= current) continue;
        text += decimalText(toInt32(static_cast<double>(factor) * stop.position()));
        text += u'-';
        text += decimalText(stop.color());
        text += u';';
        current = stop.position();
    }
    return text;
}

}  // namespace vrx
