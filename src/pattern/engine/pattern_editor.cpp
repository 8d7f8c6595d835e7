#include "pattern/engine/pattern_editor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "ground/rounding.h"
#include "pattern/engine/pattern_writer.h"

namespace vrx {
namespace {

// The scale of positions in a pattern string.
constexpr std::int32_t kScale = 1000;

/// Where a new stop stands: a little to the right of the middle.
std::int32_t columnOfNewStop(std::int32_t rampWidth) { return toInt32(rampWidth / 2.0 + 3.0); }

}  // namespace

void PatternEditor::put(Stop& stop, Place place) const {
    const auto scale = static_cast<float>(static_cast<double>(rampWidth_) / place.width);
    stop.color.setMaxPos(rampWidth_);
    stop.color.setPosition(toInt32(static_cast<double>(scale) * place.position));
    stop.place = place;
}

PatternEditor::Stop PatternEditor::makeStop(const PatternItem& item) const {
    Stop stop{};
    put(stop, {item.position, kScale});
    stop.color.setColor(item.color);
    return stop;
}

void PatternEditor::setRampWidth(std::int32_t width) {
    rampWidth_ = std::max(width, 1);
    for (Stop& stop : stops_) put(stop, stop.place);
}

void PatternEditor::build(std::u16string_view pattern) {
    std::vector<Stop> stops;
    std::int32_t largest = 0;
    std::size_t largestIndex = kLeftEnd;
    while (!pattern.empty()) {
        const PatternItem item = Split_PatternItem(Get_NextPatternItem(pattern));
        stops.push_back(makeStop(item));
        if (item.position > largest) {
            largest = item.position;
            largestIndex = stops.size() - 1;
        }
    }
    // Without any position above 0 no stop is the largest. Two stops stand as they are written.
    if (stops.size() > 2 && largest > 0) {
        Swap_PatternColor(stops[kRightEnd].color, stops[largestIndex].color);
        std::swap(stops[kRightEnd].place, stops[largestIndex].place);
    }
    while (stops.size() <= kRightEnd) stops.push_back(makeStop({}));
    put(stops[kLeftEnd], kLeftPlace);
    put(stops[kRightEnd], kRightPlace);
    stops_ = std::move(stops);
    selected_ = stops_.size() - 1;
}

void PatternEditor::clear() {
    stops_.clear();
    selected_ = 0;
}

std::size_t PatternEditor::neighbour(bool right) const {
    std::vector<std::size_t> order(stops_.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    // Stops at the right end's own column stand before it, so that it is the last one.
    const auto key = [this](std::size_t i) { return std::pair(stop(i).position(), i == kRightEnd); };
    std::ranges::stable_sort(order, {}, key);
    const auto here = std::ranges::find(order, selected_);
    if (here == order.end()) return selected_;
    if (right) return here + 1 == order.end() ? selected_ : *(here + 1);
    return here == order.begin() ? selected_ : *(here - 1);
}

void PatternEditor::add() {
    Stop& stop = stops_.emplace_back();
    put(stop, {columnOfNewStop(rampWidth_), rampWidth_});
    selected_ = stops_.size() - 1;
}

bool PatternEditor::removeSelected() {
    if (selected_ <= kRightEnd || selected_ >= stops_.size()) return false;
    stops_[selected_] = stops_.back();
    stops_.pop_back();
    selected_ = stops_.size() - 1;
    return true;
}

bool PatternEditor::move(std::size_t index, std::int32_t columns) {
    if (index <= kRightEnd || index >= stops_.size() || columns == 0) return false;
    Stop& stop = stops_[index];
    const std::int64_t wanted = std::int64_t{stop.color.position()} + columns;
    const auto column = static_cast<std::int32_t>(std::clamp<std::int64_t>(wanted, 0, rampWidth_));
    if (column == stop.color.position()) return false;
    put(stop, {column, rampWidth_});
    return true;
}

std::u16string PatternEditor::pattern() const {
    std::vector<CVrxPatternColor> colors;
    colors.reserve(stops_.size());
    for (const Stop& stop : stops_) colors.push_back(stop.color);
    return writePattern(colors, rampWidth_);
}

std::u16string percentText(float fraction) {
    // A single has seven digits that count: 0.0025 is a half although it is stored as a little less.
    const long long counted = std::llround(static_cast<double>(fraction) * 1e7);
    const long long tenths = (counted + 5000) / 10000;
    const std::string digits = std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + '%';
    return {digits.begin(), digits.end()};
}

}  // namespace vrx
