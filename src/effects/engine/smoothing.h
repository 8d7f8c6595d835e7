// Blur and smoothing of 24-bit pixels in place. Row 0 is the top of the picture and the last one in memory;
// the first and the last column, row 0 and the last two rows stay as they are, and so does the padding.
// Fewer than 3 columns or 4 rows change nothing. Error 9 for a buffer that is shorter than the rows.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

/// Each byte becomes the mean of its 3 x 3 neighbourhood weighted 1 2 1, 2 4 2, 1 2 1.
void blur(std::span<std::uint8_t> buffer, std::int32_t dimX, std::int32_t dimY);

/// The same where the neighbourhood is flat; the more it varies, the more of the byte itself remains.
void medianCut(std::span<std::uint8_t> buffer, std::int32_t dimX, std::int32_t dimY);

}  // namespace vrx
