#include "ground/upper_case.h"

#include <algorithm>
#include <iterator>

namespace vrx {
namespace {

/// Every `step`-th character from `first` to `last` becomes the one `offset` further on.
struct Range {
    char16_t first;
    char16_t last;
    int step;
    int offset;
};

constexpr Range kRanges[] = {
#include "ground/upper_case_table.inc"
};

}  // namespace

char16_t upperCase(char16_t character) {
    const Range* range = std::lower_bound(std::begin(kRanges), std::end(kRanges), character,
                                          [](const Range& row, char16_t code) { return row.last < code; });
    if (range == std::end(kRanges) || character < range->first) return character;
    if ((character - range->first) % range->step != 0) return character;
    return static_cast<char16_t>(character + range->offset);
}

bool equalInUpperCase(std::u16string_view a, std::u16string_view b) {
    return std::ranges::equal(a, b, {}, upperCase, upperCase);
}

}  // namespace vrx
