// Pattern strings: the first byte gives the size of the table, the others are the text. Short texts must give
// what the step-by-step model gives.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "../engine/pattern_colors.h"
#include "../engine/pattern_model.h"
#include "ground/error.h"

namespace {

using vrx::test::model::Table;

// The model's time grows with the square of the length.
constexpr std::size_t kModelLength = 200;

/// What the action gives, or the number of its error.
template <class Action>
std::pair<std::int32_t, Table> outcomeOf(Action action) {
    try {
        return {0, action()};
    } catch (const vrx::Error& error) {
        return {error.number, {}};
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::int32_t numItem = data[0];
    const std::string text(data + 1, data + size);
    const std::u16string wide(data + 1, data + size);
    const auto outcome = outcomeOf([&] {
        const std::vector<std::int32_t> colors = vrx::test::colorsOf(wide, numItem);
        Table table(colors.begin(), colors.end());
        table.resize(static_cast<std::size_t>(numItem) + 1);
        return table;
    });
    if (text.size() > kModelLength) return 0;
    const auto expected = outcomeOf([&] { return vrx::test::model::expand(text, numItem); });
    if (outcome != expected) std::abort();
    return 0;
}
