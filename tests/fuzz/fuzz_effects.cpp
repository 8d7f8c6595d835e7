// Blur, smoothing, grey, noise and resampling of any bytes in any size: they refuse without a change, or
// change nothing but pixels, and give the same bytes with every instruction set.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

#include "effects/engine/grey.h"
#include "effects/engine/smoothing.h"
#include "effects/engine/smoothing_rows.h"
#include "ground/error.h"
#include "raster/engine/noise.h"
#include "raster/engine/pixel_rows.h"
#include "raster/engine/resample.h"

namespace {

using namespace vrx;

using Pixels = std::vector<std::uint8_t>;

void require(bool condition) {
    if (!condition) std::abort();
}

struct Input {
    std::span<const std::uint8_t> bytes;

    template <class T>
    T take() {
        T value{};
        const std::size_t size = std::min(sizeof value, bytes.size());
        std::memcpy(&value, bytes.data(), size);
        bytes = bytes.subspan(size);
        return value;
    }
    /// Small for most inputs.
    std::int32_t takeSize() {
        const auto kind = take<std::uint8_t>();
        return kind == 0xFF ? take<std::int32_t>() : kind % 80;
    }
};

struct Sizes {
    std::int32_t width;
    std::int32_t height;

    [[nodiscard]] bool hold(std::size_t i) const {
        const std::size_t stride = rowStride(width);
        return width > 0 && height > 0 && i / stride < static_cast<std::size_t>(height) &&
               i % stride < static_cast<std::size_t>(width) * 3;
    }
};

/// Runs an action on a copy and returns that. What is no pixel must stay, and everything when it fails.
template <class Action>
Pixels applied(const Pixels& before, Sizes sizes, Action action) {
    Pixels after = before;
    try {
        action(after);
    } catch (const Error& error) {
        require(error.number == 9 || error.number == 11);
        require(after == before);
    }
    for (std::size_t i = 0; i < after.size(); ++i) require(after[i] == before[i] || sizes.hold(i));
    return after;
}

void smooth(const Pixels& pixels, Sizes sizes,
            void (*effect)(std::span<std::uint8_t>, std::int32_t, std::int32_t),
            void (*plainRows)(const SmoothingRows&)) {
    const Pixels result =
        applied(pixels, sizes, [&](Pixels& after) { effect(after, sizes.width, sizes.height); });
    if (sizes.width < 3 || sizes.height < 4 || result == pixels) return;
    Pixels plain = pixels;
    const std::size_t size = static_cast<std::size_t>(sizes.width) * 3;
    std::vector<std::uint16_t> work(kSmoothingWorkRows * size);
    plainRows(
        {plain.data(), rowStride(sizes.width), size, static_cast<std::size_t>(sizes.height), work.data()});
    require(result == plain);
}

void enlargeOrReduce(const Pixels& pixels, Sizes sizes, Input& input) {
    const Sizes target{input.takeSize(), input.takeSize()};
    const Pixels blank(20000, 0x5A);
    applied(blank, target, [&](Pixels& after) {
        resample({pixels, sizes.width, sizes.height}, {after, target.width, target.height});
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{{data, size}};
    const auto choice = input.take<std::uint8_t>();
    const Sizes sizes{input.takeSize(), input.takeSize()};
    const auto option = input.take<std::uint8_t>();
    Input copy = input;
    const Pixels pixels(input.bytes.begin(), input.bytes.end());
    switch (choice % 5) {
        case 0:
            smooth(pixels, sizes, blur, baseline::blurRows);
            break;
        case 1:
            smooth(pixels, sizes, medianCut, baseline::medianCutRows);
            break;
        case 2:
            applied(pixels, sizes, [&](Pixels& after) {
                convertToGrey(after, sizes.width, sizes.height, {choice > 99, option});
            });
            break;
        case 3:
            applied(pixels, sizes, [&](Pixels& after) {
                randomisePixels(after, sizes.width, sizes.height, choice > 99, option);
            });
            break;
        default:
            enlargeOrReduce(pixels, sizes, copy);
    }
    return 0;
}
