// Speed of the pattern engine: expansion in nanoseconds per table entry, reading per character.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <vector>

#include "pattern/engine/pattern_expansion.h"

namespace vrx::bench {
namespace {

constexpr std::int32_t kEntries = 1'000'000;
constexpr std::size_t kTextSize = 10'000'000;

void reportPer(benchmark::State& state, const char* name, double count) {
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

/// From the text to a new table: the system's price for new pages is in it.
void expandNew(benchmark::State& state) {
    const std::u16string pattern = rainbow(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(Get_PatternFromString(pattern, kEntries - 1));
    reportPer(state, "ns/entry", kEntries);
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
    reportPer(state, "ns/entry", kEntries);
}

/// A text of ten million characters that repeats one item, over a small table.
void readItems(benchmark::State& state, std::u16string_view item) {
    std::u16string pattern;
    while (pattern.size() < kTextSize) pattern += item;
    for (auto _ : state) benchmark::DoNotOptimize(Get_PatternFromString(pattern, 255));
    reportPer(state, "ns/char", static_cast<double>(pattern.size()));
}

BENCHMARK(expandNew)->Arg(2)->Arg(5)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(expandAgain)->Arg(2)->Arg(5)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readItems, stops, u"500-16777215;")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readItems, emptyItems, u";")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readItems, oneLongNumber, u"0")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readItems, oneLongBlank, u" ")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vrx::bench

BENCHMARK_MAIN();
