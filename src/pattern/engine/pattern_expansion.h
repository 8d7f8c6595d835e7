// From a pattern string to a table of colours.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "ground/bytes.h"
#include "pattern/engine/modPattern.h"

namespace vrx {

/// The stops of a pattern string on a ramp from 0 to `numItem`, from index 1 on; index 0 is a spare. Index 1
/// is the start of the ramp and index 2 its end; both always exist.
[[nodiscard]] std::vector<PatternItem> placeStops(std::u16string_view pattern, std::int32_t numItem);

/// Colours a table of at least two entries, all zero at first, from stops as `placeStops` gives them: the one
/// at index 2 stands at the last entry. Of the stops at one entry only the first counts, and none outside of
/// the table.
void fillTable(std::span<const PatternItem> stops, std::span<std::int32_t> table);

/// A table of colours, all black at first.
class PatternTable {
  public:
    PatternTable() = default;
    /// Out of memory for one that no process can have.
    explicit PatternTable(std::uint64_t size) : memory_(size * sizeof(std::int32_t)) {}

    [[nodiscard]] std::span<std::int32_t> colors() {
        return {reinterpret_cast<std::int32_t*>(memory_.data()), memory_.size() / sizeof(std::int32_t)};
    }

  private:
    ZeroedBytes memory_;
};

/// The colours 0 to `numItem` of a pattern; none when `numItem` is 0. Subscript out of range for a negative
/// `numItem`, out of memory for one that no table can have, overflow for numbers beyond 32 bits.
[[nodiscard]] PatternTable Get_PatternFromString(std::u16string_view pattern, std::int32_t numItem);

}  // namespace vrx
