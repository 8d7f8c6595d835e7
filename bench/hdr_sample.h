// What the benchmarks of the HDR engine and of other libraries share: the picture, its file, and the counter.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "hdr/engine/rgbe_writer.h"
#include "noise_picture.h"

namespace vrx::bench {

/// A file in memory; room that it has once it keeps.
class MemoryFile final : public ByteSink {
  public:
    void write(std::span<const std::uint8_t> bytes) override {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    }
    void clear() { bytes_.clear(); }
    [[nodiscard]] std::span<const std::uint8_t> span() const { return bytes_; }

  private:
    std::vector<std::uint8_t> bytes_;
};

struct Sample {
    RgbeStore store;
    MemoryFile file;
};

/// A picture and its file, made once for each width; twice as wide as high.
inline const Sample& sampleOf(const benchmark::State& state) {
    static std::map<int, Sample> samples;
    const int width = static_cast<int>(state.range(0));
    auto found = samples.find(width);
    if (found == samples.end()) {
        RgbeStore store = noisePicture(width, width / 2);
        MemoryFile file;
        encodeRgbe(store, width, width / 2, file);
        found = samples.emplace(width, Sample{std::move(store), std::move(file)}).first;
    }
    return found->second;
}

inline void reportPerPixel(benchmark::State& state) {
    const double pixels = static_cast<double>(state.range(0)) * static_cast<double>(state.range(0) / 2);
    state.counters["ns/px"] = benchmark::Counter(
        pixels / 1e9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

#define VRX_PICTURE_SIZES Arg(1024)->Arg(4096)->Unit(benchmark::kMillisecond)

}  // namespace vrx::bench
