// Small 24-bit pictures for tests, in the layout of a bottom-up bitmap, with marked padding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <vector>

namespace vrx::test {

constexpr std::uint8_t kPaddingMark = 0xA5;

struct PixelBuffer {
    int width;
    int height;
    std::size_t stride;
    std::vector<std::uint8_t> bytes;

    PixelBuffer(int dimX, int dimY)
        : width(dimX),
          height(dimY),
          stride(static_cast<std::size_t>((dimX * 3 + 3) / 4 * 4)),
          bytes(stride * static_cast<std::size_t>(dimY), kPaddingMark) {
        fill([](int, int, int) { return 0; });
    }

    /// y counts from the top of the picture.
    [[nodiscard]] std::size_t offset(int x, int y, int channel) const {
        return static_cast<std::size_t>(height - 1 - y) * stride + static_cast<std::size_t>(x * 3 + channel);
    }
    [[nodiscard]] std::uint8_t& at(int x, int y, int channel) { return bytes[offset(x, y, channel)]; }
    [[nodiscard]] std::uint8_t at(int x, int y, int channel) const { return bytes[offset(x, y, channel)]; }

    /// Sets each byte to what `value(x, y, channel)` gives.
    void fill(const std::function<int(int, int, int)>& value) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                for (int c = 0; c < 3; ++c) at(x, y, c) = static_cast<std::uint8_t>(value(x, y, c));
            }
        }
    }

    /// Calls `action(x, y, channel)` for each byte inside a margin, given in columns and in rows below the
    /// top and above the bottom.
    template <class Action>
    void forInner(int columns, int top, int bottom, Action action) const {
        for (int y = top; y < height - bottom; ++y) {
            for (int x = columns; x < width - columns; ++x) {
                for (int c = 0; c < 3; ++c) action(x, y, c);
            }
        }
    }

    friend bool operator==(const PixelBuffer& a, const PixelBuffer& b) = default;
};

inline PixelBuffer uniformPicture(int width, int height, int value) {
    PixelBuffer picture(width, height);
    picture.fill([=](int, int, int) { return value; });
    return picture;
}

struct Size {
    int width;
    int height;
};

/// Contents that bring out different branches: anything, gentle noise, extremes only, slopes, few levels.
inline PixelBuffer randomPicture(int width, int height, std::mt19937& random) {
    PixelBuffer picture(width, height);
    const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
    const int kind = below(5);
    const int base = below(200);
    const auto amplitude = static_cast<unsigned>(1 + below(48));
    const int slope = below(9);
    picture.fill([&](int x, int y, int) {
        switch (kind) {
            case 0:
                return below(256);
            case 1:
                return base + below(amplitude);
            case 2:
                return below(2) * 255;
            case 3:
                return (x * slope + y * (8 - slope) + below(2)) % 256;
            default:
                return base + below(3) * static_cast<int>(amplitude / 2);
        }
    });
    return picture;
}

}  // namespace vrx::test
