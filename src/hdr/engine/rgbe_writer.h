// Radiance RGBE writer: header and adaptive run-length scanlines.
#pragma once

#include <cstdint>
#include <span>

#include "ground/byte_sink.h"
#include "hdr/engine/rgbe_store.h"

namespace vrx {

/// The most pixels that a scanline can name.
inline constexpr std::int32_t kMaxScanlineWidth = 65535;

/// Writes the whole file for the store's picture, its bytes as they are. A picture without rows needs no
/// bytes. Fails ("File Error!") before anything is written where the store has rows but no bytes, or where
/// they are wider than the 65535 pixels that a scanline can name.
void encodeRgbe(const RgbeStore& store, ByteSink& sink);

/// The run-length codes of one plane of one row: runs of at least 4 as (128 + length, byte), everything else
/// as literal chunks (length, bytes ...); a lone run of 2 or 3 before a long run is written as a run. `out`
/// has room for runLengthBound(plane.size()); the end of what was written is returned. A plane has at most
/// kMaxScanlineWidth bytes.
std::uint8_t* encodePlane(std::span<const std::uint8_t> plane, std::uint8_t* out);

/// The most bytes that a plane of one row can take: it is never longer than its literal chunks.
[[nodiscard]] constexpr std::uint64_t runLengthBound(std::uint64_t width) {
    return width + (width + 127) / 128;
}

}  // namespace vrx
