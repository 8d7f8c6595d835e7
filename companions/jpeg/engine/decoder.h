// A JPEG file in memory in, pixels out.
#pragma once

#include <cstdint>
#include <span>

#include "jpeg/engine/picture_format.h"

namespace vrx::jpeg {

/// Reads as far as the sizes.
[[nodiscard]] JpegHeader readHeader(std::span<const std::uint8_t> file);

/// Fills `pixels`, which must be as large as the picture; the padding of rows stays as it is. What a damaged
/// file still gives is written before the failure.
JpegHeader decode(std::span<const std::uint8_t> file, const PixelLayout& layout,
                  std::span<std::uint8_t> pixels);

}  // namespace vrx::jpeg
