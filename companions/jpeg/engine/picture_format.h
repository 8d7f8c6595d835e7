// How pixels lie in memory, and how a JPEG picture stores them; the numbers are those of the record.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vrx::jpeg {

enum class Color : std::int32_t { Rgb = 1, Bgr = 2, YCbCr = 3, Grey = 4 };

/// How many pixels share one pair of color values: 1, 2 x 2, 2 x 1, or something that only reading meets.
enum class Subsampling : std::int32_t { None = 0, TwoByTwo = 1, TwoByOne = 2, Other = 3 };

[[nodiscard]] constexpr std::int32_t channelsOf(Color color) { return color == Color::Grey ? 1 : 3; }

/// The largest width or height that the JPEG library takes.
constexpr std::uint32_t kMaxSide = 65500;
/// The largest picture: what it needs in memory, several times, still fits a 32-bit process.
constexpr std::uint64_t kMaxPixels = 1U << 28;

struct PixelLayout {
    std::uint32_t width;
    std::uint32_t height;
    Color color;
    std::size_t stride;
    bool bottomUp;

    [[nodiscard]] std::size_t rowSize() const {
        return std::size_t{width} * static_cast<std::size_t>(channelsOf(color));
    }
    /// Bytes from the first pixel to the last one; the padding behind the last row does not count.
    [[nodiscard]] std::size_t size() const { return stride * (height - 1) + rowSize(); }
    /// Where the row begins that is y rows below the top of the picture.
    [[nodiscard]] std::size_t rowOffset(std::uint32_t y) const {
        return stride * (bottomUp ? height - 1 - y : y);
    }
};

struct JpegFormat {
    Color color;
    Subsampling subsampling;
    int quality;
};

/// What the header of a JPEG picture tells.
struct JpegHeader {
    std::uint32_t width;
    std::uint32_t height;
    Color color;
    Subsampling subsampling;
};

}  // namespace vrx::jpeg
