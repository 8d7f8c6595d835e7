// The row kernels of blur and smoothing. They are compiled once for every processor and once for those with
// AVX2; both give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vrx {

/// Rows of 24-bit pixels as they lie in memory, 3 rows of 3 pixels at least, and room to work in.
struct SmoothingRows {
    std::uint8_t* pixels;
    std::size_t stride;
    std::size_t size;     ///< bytes of a row that belong to pixels
    std::size_t count;    ///< rows
    std::uint16_t* work;  ///< kSmoothingWorkRows times `size` words
};

inline constexpr std::size_t kSmoothingWorkRows = 3;

// The first two rows in memory and the last one stay, as do the first and the last pixel of each row.
namespace baseline {
void blurRows(const SmoothingRows& rows);
void medianCutRows(const SmoothingRows& rows);
}  // namespace baseline

namespace avx2 {
void blurRows(const SmoothingRows& rows);
void medianCutRows(const SmoothingRows& rows);
}  // namespace avx2

}  // namespace vrx
