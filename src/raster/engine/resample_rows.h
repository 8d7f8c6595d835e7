// The row kernel of resampling. It is compiled once for every processor and once for those with AVX2; both
// give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vrx {

/// Where the columns of the target lie in a row of the source.
struct ResampleColumns {
    const std::uint32_t* lefts;  ///< byte offsets of the pixels at or before them, ascending
    const double* fractions;     ///< how far they are on the way to the next pixel
    const float* singles;        ///< the fractions rounded
    std::size_t count;
    const std::size_t* tileEnds;  ///< cuts the columns into tiles that span kResampleTileSize bytes at most
    std::size_t tileCount;
    std::size_t last;  ///< offset of the last pixel of the source's row, which follows itself
};

// As Singles, small enough for the processor's nearest cache.
inline constexpr std::size_t kResampleTileSize = 4096;

/// Where a row of the target lies between two of the source.
struct ResampleRow {
    const std::uint8_t* lower;
    const std::uint8_t* upper;
    double fraction;  ///< from the lower one to the upper one
    bool exact;       ///< no Single rounds on the way to a byte: all fractions are short
};

namespace baseline {
void resampleRow(const ResampleRow& row, const ResampleColumns& columns, std::uint8_t* out);
}

namespace avx2 {
void resampleRow(const ResampleRow& row, const ResampleColumns& columns, std::uint8_t* out);
}

}  // namespace vrx
