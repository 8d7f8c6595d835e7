#include "pattern/engine/pattern_expansion.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <span>
#include <utility>

#include "ground/error.h"
#include "ground/rounding.h"

namespace vrx {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "running channel values are single-precision additions");

/// Brings all positions to the scale on which the largest one would be `numItem`.
void rescale(std::vector<PatternItem>& items, std::size_t largest, std::int32_t numItem) {
    if (items[largest].position == 0) return;
    const auto scale = static_cast<float>(static_cast<double>(numItem) / items[largest].position);
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (i != largest) items[i].position = toInt32(static_cast<double>(scale) * items[i].position);
    }
}

/// The first stop starts the ramp and the second one ends it, wherever they stand; black where there is none.
void pinEnds(std::vector<PatternItem>& items, std::int32_t numItem) {
    if (items.size() < 2) items.push_back({});
    items[1].position = 0;
    if (items.size() < 3) items.push_back({});
    items[2].position = numItem;
}

/// The nearest integer, halves to even, of a value far below 2^22: the sum has no bits left for a fraction,
/// and its low bits are the integer.
std::uint32_t nearest(float value) {
    constexpr float kNoFraction = 12582912.0F;  // 1.5 x 2^23
    return std::bit_cast<std::uint32_t>(value + kNoFraction) - std::bit_cast<std::uint32_t>(kNoFraction);
}

struct Channels {
    float red;
    float green;
    float blue;
};

Channels channelsOf(std::int32_t color) {
    return {static_cast<float>(Get_Red(color)), static_cast<float>(Get_Green(color)),
            static_cast<float>(Get_Blue(color))};
}

/// The sums of the steps drift over long segments, and a channel that leaves 0 to 255 by that spills into the
/// next one: hosts get the colours that the running sums give.
void fillSegment(std::span<std::int32_t> entries, std::int32_t from, std::int32_t to) {
    const auto steps = static_cast<float>(std::max<std::size_t>(entries.size() - 1, 1));
    const Channels end = channelsOf(to);
    Channels sum = channelsOf(from);
    const Channels step{(end.red - sum.red) / steps, (end.green - sum.green) / steps,
                        (end.blue - sum.blue) / steps};
    for (std::int32_t& entry : entries) {
        entry = static_cast<std::int32_t>(nearest(sum.red) + 256 * nearest(sum.green) +
                                          65536 * nearest(sum.blue));
        sum.red += step.red;
        sum.green += step.green;
        sum.blue += step.blue;
    }
}

/// Notes at each entry of the table the first stop that stands there.
void markStops(std::span<const PatternItem> stops, std::span<std::int32_t> table) {
    for (std::size_t i = stops.size() - 1; i > 0; --i) {
        // A negative position is beyond any table as well.
        const auto position = static_cast<std::size_t>(stops[i].position);
        if (position < table.size()) table[position] = static_cast<std::int32_t>(i);
    }
}

}  // namespace

std::vector<PatternItem> placeStops(std::u16string_view pattern, std::int32_t numItem) {
    std::vector<PatternItem> items;
    // The spare, and an item at most behind the last separator.
    items.reserve(2 + static_cast<std::size_t>(std::ranges::count(pattern, u';')));
    items.push_back({});
    std::size_t largest = 0;
    while (!pattern.empty()) {
        items.push_back(Split_PatternItem(Get_NextPatternItem(pattern)));
        if (items.back().position > items[largest].position) largest = items.size() - 1;
    }
    rescale(items, largest, numItem);
    // Without any position above 0 the spare comes to index 2 and ends the ramp in black.
    if (items.size() > 2) std::swap(items[2], items[largest]);
    pinEnds(items, numItem);
    return items;
}

void fillTable(std::span<const PatternItem> stops, std::span<std::int32_t> table) {
    markStops(stops, table);
    const auto isMarked = [](std::int32_t mark) { return mark != 0; };
    // The first segment begins with the table, each later one behind a stop. What is filled is not looked at
    // again.
    auto start = table.begin();
    auto stop = start;
    std::int32_t color = stops[1].color;
    while (stop + 1 != table.end()) {
        stop = std::find_if(stop + 1, table.end(), isMarked);
        const std::int32_t next = stops[static_cast<std::size_t>(*stop)].color;
        fillSegment({start, stop + 1}, color, next);
        start = stop + 1;
        color = next;
    }
}

PatternTable Get_PatternFromString(std::u16string_view pattern, std::int32_t numItem) {
    if (numItem < 0) throw platformError(Platform::SubscriptOutOfRange);
    PatternTable table(static_cast<std::uint64_t>(numItem) + 1);
    const std::vector<PatternItem> stops = placeStops(pattern, numItem);
    if (numItem == 0) return {};
    fillTable(stops, table.colors());
    return table;
}

}  // namespace vrx
