// The pictures that the HDR benchmarks work on, and how they go over them: all in turn, so that no processor
// learns one picture's branches by heart.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "ground/byte_sink.h"
#include "hdr/engine/rgbe_store.h"

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

struct HdrPicture {
    std::string name;
    std::filesystem::path path;       ///< empty where the picture is built in
    std::vector<std::uint8_t> bytes;  ///< the file and a zero byte
    RgbeStore store;

    [[nodiscard]] std::span<const std::uint8_t> file() const {
        return std::span(bytes).first(bytes.size() - 1);
    }
    [[nodiscard]] double pixels() const { return static_cast<double>(store.dimX()) * store.dimY(); }
};

/// Files in place of the built-in pictures; to be called before any benchmark. Throws where one cannot be
/// read.
void usePictures(const std::vector<std::string>& files);

/// The files, or four built-in pictures of 1024 x 512.
[[nodiscard]] const std::vector<HdrPicture>& hdrPictures();

[[nodiscard]] HdrPicture builtInPicture(const std::string& name, int width, int height, unsigned seed);

using Clock = std::chrono::steady_clock;

/// `action(picture)` over `pictures` in turn; reports each picture's nanoseconds per pixel under its name.
/// `prepare(picture)` comes before each action and is not measured. Nor is a first action on each picture,
/// nor the first one on a picture of another size than the one before: they make what the next one finds, as
/// in a viewer that goes on to the next picture of its series.
template <class Prepare, class Action>
void inTurn(benchmark::State& state, const std::vector<HdrPicture>& pictures, Prepare&& prepare,
            Action&& action) {
    std::vector<Clock::duration> spent(pictures.size());
    const HdrPicture* last = nullptr;
    const auto makeReady = [&](const HdrPicture& picture, bool again) {
        const bool isLikeLast = last != nullptr && last->store.dimX() == picture.store.dimX() &&
                                last->store.dimY() == picture.store.dimY();
        last = &picture;
        prepare(picture);
        if (isLikeLast && again) return;
        action(picture);
        prepare(picture);
    };
    for (const HdrPicture& picture : pictures) makeReady(picture, false);
    for (auto _ : state) {
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            makeReady(pictures[i], true);
            const Clock::time_point start = Clock::now();
            action(pictures[i]);
            spent[i] += Clock::now() - start;
        }
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const double nanoseconds = std::chrono::duration<double, std::nano>(spent[i]).count();
        state.counters[pictures[i].name] =
            nanoseconds / static_cast<double>(state.iterations()) / pictures[i].pixels();
    }
}

template <class Action>
void inTurn(benchmark::State& state, Action&& action) {
    inTurn(
        state, hdrPictures(), [](const HdrPicture&) {}, action);
}

}  // namespace vrx::bench
