// Speed of the pattern engine: expansion in nanoseconds per table entry, reading per character.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <vector>

#include "benchmarks.h"
#include "pattern/engine/pattern_expansion.h"
#include "report.h"

namespace vrx::bench {
namespace {

constexpr std::int32_t kEntries = 1'000'000;
constexpr std::size_t kTextSize = 10'000'000;

/// In the place of pixels stand the table's entries or the text's characters.
void reportPer(benchmark::State& state, const std::string& name, double count) {
    state.counters[name] = benchmark::Counter(
        count / 1e9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// A rainbow of so many stops.
std::u16string rainbow(std::int64_t stops) {
    constexpr std::u16string_view kColors[] = {u"255", u"65535", u"65280", u"16776960", u"16711680"};
    std::u16string pattern;
    for (std::int64_t i = 0; i < stops; ++i) {
        const std::string position = std::to_string(i);
        pattern.append(position.begin(), position.end()).append(u"-").append(kColors[i % 5]).append(u";");
    }
    return pattern;
}

/// From the text to a new table.
void expandNew(benchmark::State& state) {
    const std::u16string pattern = rainbow(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(Get_PatternFromString(pattern, kEntries - 1).colors().data());
    reportPer(state, std::to_string(state.range(0)) + " stops", kEntries);
}

/// From the text to a table whose memory is in use already.
void expandAgain(benchmark::State& state) {
    const std::u16string pattern = rainbow(state.range(0));
    std::vector<std::int32_t> table;
    for (auto _ : state) {
        table.assign(kEntries, 0);
        fillTable(placeStops(pattern, kEntries - 1), table);
        benchmark::DoNotOptimize(table.data());
    }
    reportPer(state, std::to_string(state.range(0)) + " stops", kEntries);
}

/// A text of ten million characters that repeats one item, over a small table.
void readItems(benchmark::State& state, const char* name, std::u16string_view item) {
    std::u16string pattern;
    while (pattern.size() < kTextSize) pattern += item;
    for (auto _ : state) benchmark::DoNotOptimize(Get_PatternFromString(pattern, 255).colors().data());
    reportPer(state, name, static_cast<double>(pattern.size()));
}

void addExpansion(const char* work, void (*function)(benchmark::State&)) {
    add(work, "vrx", function)->Arg(2)->Arg(5)->Arg(1000);
}

void addReading(const char* name, std::u16string_view item) {
    add("pattern, per character", "vrx", [=](benchmark::State& state) { readItems(state, name, item); });
}

}  // namespace

void addPatternBenchmarks() {
    addExpansion("pattern, new table", expandNew);
    addExpansion("pattern, per entry", expandAgain);
    addReading("stops", u"500-16777215;");
    addReading("empty items", u";");
    addReading("one long number", u"0");
    addReading("one long blank", u" ");
}

}  // namespace vrx::bench
