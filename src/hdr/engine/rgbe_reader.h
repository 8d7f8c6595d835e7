// Radiance scanline reader: run-length bytes in, RGBE planes out, one row at a time. Only the adaptive
// run-length form is read; flat and old run-length scanlines are refused. Everything decoded before a failure
// stays in the store.
#pragma once

#include <cstdint>
#include <limits>

#include "hdr/engine/rgbe_cursor.h"
#include "hdr/engine/rgbe_store.h"

namespace vrx {

enum class ScanlineResult {
    Decoded,
    NotRunLength,  ///< the row does not begin with the byte 2
    OutOfRuns,     ///< the row was left after `maxRuns` runs
};

inline constexpr std::uint32_t kAllRuns = std::numeric_limits<std::uint32_t>::max();

/// Decodes the next scanline of the file into row `row` of the store (0 to dimY). A run that passes the end
/// of the row is cut off there, with all of its bytes consumed. Throws where the file ends inside the row.
/// With a limit of runs it goes code by code and checks each: slower, with the same outcome.
[[nodiscard]] ScanlineResult readScanline(RgbeCursor& file, RgbeStore& store, std::int32_t row,
                                          std::uint32_t maxRuns = kAllRuns);

}  // namespace vrx
