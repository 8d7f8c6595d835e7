// Random and hostile pattern strings: the engine against the step-by-step model, and its time on large ones.
#include "pattern_model.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

#include "failure.h"
#include "pattern/engine/pattern_number.h"
#include "pattern_colors.h"

namespace vrx::test {
namespace {

using Random = std::mt19937;

int below(Random& random, int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

std::u16string widened(const std::string& text) { return {text.begin(), text.end()}; }

std::string randomText(Random& random, const std::string& alphabet, int longest) {
    std::string text(static_cast<std::size_t>(below(random, longest + 1)), ' ');
    for (char& c : text)
        c = alphabet[static_cast<std::size_t>(below(random, static_cast<int>(alphabet.size())))];
    return text;
}

/// Mostly well-formed items; positions from a small range, so that many are equal or adjacent.
std::string randomPattern(Random& random) {
    const int scale = 1 + below(random, 40);
    std::string pattern;
    for (int items = below(random, 12); items > 0; --items) {
        switch (below(random, 10)) {
            case 0:
                pattern += randomText(random, " -;.&hHoOeE+x0123456789", 8);
                break;
            case 1:
                pattern += std::to_string(below(random, scale));
                break;
            default:
                pattern +=
                    std::to_string(below(random, scale)) + "-" + std::to_string(below(random, 1 << 24));
        }
        if (items > 1 || below(random, 2) == 0) pattern += ';';
    }
    return pattern;
}

/// The model's table, or the number of its error.
struct Expected {
    int error;
    model::Table table;
};

Expected expectedOf(const std::string& pattern, std::int32_t numItem) {
    Expected expected{};
    expected.error = errorNumberOf([&] { expected.table = model::expand(pattern, numItem); });
    return expected;
}

void expectEqual(const std::string& pattern, std::int32_t numItem) {
    const Expected expected = expectedOf(pattern, numItem);
    std::vector<std::int32_t> colors;
    const int error = errorNumberOf([&] { colors = colorsOf(widened(pattern), numItem); });
    ASSERT_EQ(error, expected.error) << pattern << " over " << numItem;
    if (error != 0) return;
    model::Table table(colors.begin(), colors.end());
    table.resize(static_cast<std::size_t>(numItem) + 1);
    ASSERT_EQ(table, expected.table) << pattern << " over " << numItem;
}

TEST(PatternModel, RandomPatternsExpandAsStepByStep) {
    Random random(20'010'501);
    for (int i = 0; i < 20'000; ++i) {
        const std::string pattern = randomPattern(random);
        expectEqual(pattern, below(random, 60));
        if (HasFatalFailure()) return;
    }
}

TEST(PatternModel, RandomCharactersExpandAsStepByStep) {
    Random random(7);
    for (int i = 0; i < 20'000; ++i) {
        expectEqual(randomText(random, "  --;;..&HhOoEeDd+x0123456789", 24), below(random, 30));
        if (HasFatalFailure()) return;
    }
}

TEST(PatternModel, RandomStopsFillTheTableAsStepByStep) {
    Random random(3);
    for (int i = 0; i < 20'000; ++i) {
        const std::int32_t numItem = 1 + below(random, 40);
        std::vector<PatternItem> stops{
            {0, 0}, {0, below(random, 1 << 24)}, {numItem, below(random, 1 << 24)}};
        for (int more = below(random, 30); more > 0; --more) {
            stops.push_back({below(random, 3 * numItem) - numItem, below(random, 1 << 24)});
        }
        std::vector<std::int32_t> colors(static_cast<std::size_t>(numItem) + 1);
        fillTable(stops, colors);
        ASSERT_EQ(model::Table(colors.begin(), colors.end()), model::fill(stops, numItem));
    }
}

TEST(PatternModel, RandomNumbersReadAsStepByStep) {
    Random random(11);
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = randomText(random, "  +-.&HOeD00123456789", 14);
        const std::u16string wide = widened(text);
        std::int32_t expected = 0;
        std::int32_t value = 0;
        const int expectedError = errorNumberOf([&] { expected = model::numericValue(text); });
        ASSERT_EQ(errorNumberOf([&] { value = readNumber(wide); }), expectedError) << text;
        ASSERT_EQ(value, expected) << text;

        const bool isNumber = model::isValidNumber(text);
        std::optional<std::int32_t> whole;
        const int wholeError = errorNumberOf([&] { whole = wholeNumber(wide); });
        ASSERT_EQ(wholeError, isNumber ? expectedError : 0) << text;
        ASSERT_EQ(whole, isNumber && wholeError == 0 ? std::optional(expected) : std::nullopt) << text;
    }
}

// Each of these would take hours if stops were searched for one by one, or if every item moved what is left.
TEST(LargePattern, TenMegabytesOfDescendingStopsAreExpanded) {
    std::string pattern = "0-255;";
    for (int position = 999'999; pattern.size() < 10'000'000; --position) {
        pattern += std::to_string(position) + "-65280;";
    }
    const auto table = colorsOf(widened(pattern), 1'000'000);
    EXPECT_EQ(table.front(), 255);
    EXPECT_EQ(table.back(), 65280);
}

TEST(LargePattern, TenMegabytesOfSemicolonsAreExpanded) {
    EXPECT_EQ(colorsOf(std::u16string(10'000'000, u';'), 10), std::vector<std::int32_t>(11, 0));
}

TEST(LargePattern, TenMegabytesOfOneItemAreExpanded) {
    const std::u16string blanks(5'000'000, u' ');
    EXPECT_EQ(colorsOf(u"0-255;" + blanks + u"1000-16711680" + blanks + u";", 100),
              colorsOf(u"0-255;1000-16711680;", 100));
    const std::u16string digits(10'000'000, u'9');
    EXPECT_EQ(errorNumberOf([&] { static_cast<void>(colorsOf(digits, 10)); }), 6);
}

}  // namespace
}  // namespace vrx::test
