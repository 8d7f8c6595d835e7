// The pattern editor without its window: the stops, which of them is selected, and what adding, removing,
// dragging and resizing do to them. Positions are columns of the ramp, 0 to its width.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pattern/engine/CVrxPatternColor.h"
#include "pattern/engine/modPattern.h"

namespace vrx {

class PatternEditor {
  public:
    /// The two first stops are the ends of the ramp, which neither move nor go.
    static constexpr std::size_t kLeftEnd = 0;
    static constexpr std::size_t kRightEnd = 1;

    [[nodiscard]] std::int32_t rampWidth() const { return rampWidth_; }
    /// At least 1. Every stop keeps its place in proportion, through any number of changes.
    void setRampWidth(std::int32_t width);

    /// Puts the stops of a pattern string, whose positions are thousandths of the ramp, in the place of the
    /// old ones; missing ends are black. The last one made is selected. Overflow for numbers beyond 32 bits;
    /// the old stops then stay.
    void build(std::u16string_view pattern);
    /// Leaves no stop at all.
    void clear();

    [[nodiscard]] std::size_t count() const { return stops_.size(); }
    [[nodiscard]] const CVrxPatternColor& stop(std::size_t index) const { return stops_[index].color; }
    [[nodiscard]] std::size_t selected() const { return selected_; }
    void select(std::size_t index) { selected_ = index; }
    /// The stop that follows to the right or the left of the selected one; at an end that one itself.
    [[nodiscard]] std::size_t neighbour(bool right) const;

    /// A new black stop near the middle, selected.
    void add();
    /// False for an end of the ramp.
    bool removeSelected();
    /// Moves a stop by so many columns, held to the ramp. False when it stays where it is; an end always
    /// does.
    bool move(std::size_t index, std::int32_t columns);
    void setColor(std::size_t index, std::int32_t color) { stops_[index].color.setColor(color); }

    /// The pattern string of the stops; empty without any.
    [[nodiscard]] std::u16string pattern() const;

  private:
    /// Where a stop was put, from which its column follows at every width: `position` of `width`.
    struct Place {
        std::int32_t position;
        std::int32_t width;
    };
    struct Stop {
        CVrxPatternColor color;
        Place place;
    };

    static constexpr Place kLeftPlace{0, 1};
    static constexpr Place kRightPlace{1, 1};

    [[nodiscard]] Stop makeStop(const PatternItem& item) const;
    void put(Stop& stop, Place place) const;

    std::int32_t rampWidth_ = 1;
    std::vector<Stop> stops_;
    std::size_t selected_ = 0;
};

/// A fraction as the editor shows it while a stop is dragged: "50.0%", halves away from zero.
[[nodiscard]] std::u16string percentText(float fraction);

/// Follows a flag that is dragged, from the pointer's columns in it and the column of its left edge.
class FlagDrag {
  public:
    void press(std::int32_t x, std::int32_t flagLeft) {
        offset_ = x;
        last_ = flagLeft + x;
    }
    /// By how much the flag is to move; 0 where the pointer has not moved.
    [[nodiscard]] std::int32_t movement(std::int32_t x, std::int32_t flagLeft) {
        if (flagLeft + x == last_) return 0;
        last_ = flagLeft + x;
        return x - offset_;
    }

  private:
    std::int32_t offset_ = 0;
    std::int32_t last_ = 0;
};

}  // namespace vrx
