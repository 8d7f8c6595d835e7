// The run-length codes of planes. Compiled once for every processor and once for those with AVX2; both write
// the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vrx {

/// The most pixels that a scanline can name.
inline constexpr std::int32_t kMaxScanlineWidth = 65535;

/// The most bytes that a plane of one row can take: it is never longer than its literal chunks.
[[nodiscard]] constexpr std::uint64_t runLengthBound(std::uint64_t width) {
    return width + (width + 127) / 128;
}

// The codes of one plane of one row: runs of at least 4 as (128 + length, byte), everything else as literal
// chunks (length, bytes ...); a lone run of 2 or 3 before a long run is written as a run. `out` has room for
// runLengthBound(plane.size()); the end of what was written is returned. A plane has at most
// kMaxScanlineWidth bytes.

namespace baseline {
std::uint8_t* encodePlane(std::span<const std::uint8_t> plane, std::uint8_t* out);
}  // namespace baseline

namespace avx2 {
std::uint8_t* encodePlane(std::span<const std::uint8_t> plane, std::uint8_t* out);
}  // namespace avx2

}  // namespace vrx
