// Bilinear resampling of 24-bit pixels. Rows are padded to a multiple of 4 bytes; the first one in memory is
// row 0.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

struct ResampleSource {
    std::span<const std::uint8_t> pixels;
    std::int32_t width;
    std::int32_t height;
};

struct ResampleTarget {
    std::span<std::uint8_t> pixels;
    std::int32_t width;
    std::int32_t height;
};

/// Corners map to corners; pixels beyond the last column or row are taken to be like these. A target of the
/// source's size becomes a copy; the padding of its rows stays. Fails before anything is written: error 11
/// for another size with a width or height of 1, 9 for memory shorter than its rows and for a source without
/// pixels. A target without pixels is left alone.
void resample(const ResampleSource& source, const ResampleTarget& target);

}  // namespace vrx
