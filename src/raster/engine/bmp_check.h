// Bitmap files before the system reads them: it may take the headers' word for what follows.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

/// Whether the file is a bitmap file that the system's reader must not see: anything but run-length-coded
/// rows, and such rows with less in the file than its headers promise. Files of other kinds are not judged.
[[nodiscard]] bool isBrokenBmp(std::span<const std::uint8_t> file);

}  // namespace vrx
