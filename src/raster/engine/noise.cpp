#include "raster/engine/noise.h"

#include <bit>
#include <cstring>
#include <random>

#include "raster/engine/pixel_rows.h"

namespace vrx {
namespace {

class RandomBytes {
  public:
    explicit RandomBytes(float seed) : engine_(std::bit_cast<std::uint32_t>(seed)) {}

    /// 255 times a number in [0, 1), rounded. The only half among them, 127.5, rounds up to an even number.
    std::uint8_t next() {
        constexpr std::uint64_t kHalf = 1ULL << 31;
        return static_cast<std::uint8_t>((std::uint64_t{engine_()} * 255 + kHalf) >> 32);
    }

  private:
    std::mt19937 engine_;
};

}  // namespace

void randomisePixels(std::span<std::uint8_t> buffer, std::int32_t width, std::int32_t height, bool grey,
                     float seed) {
    if (!holdsPixels(buffer.size(), width, height)) return;
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    const auto pixelAt = [&](std::size_t x, std::size_t y) {
        return buffer.data() + y * rowStride(width) + x * 3;
    };
    RandomBytes random(seed);
    if (grey) {
        for (std::size_t y = 0; y < rows; ++y) {
            for (std::size_t x = 0; x < columns; ++x) std::memset(pixelAt(x, y), random.next(), 3);
        }
        return;
    }
    for (std::size_t x = 0; x < columns; ++x) {
        for (std::size_t y = 0; y < rows; ++y) {
            std::uint8_t* const pixel = pixelAt(x, y);
            pixel[0] = 0;
            pixel[1] = random.next();
            pixel[2] = random.next();
        }
    }
}

}  // namespace vrx
