// Bitmap files before the system reads them: it may take the headers' word for what follows.
#pragma once

#include <cstdint>
#include <span>

namespace vrx {

/// Whether the file is a bitmap file without pixels, or with less in it than its headers promise. Files of
/// other kinds are not judged.
[[nodiscard]] bool isBrokenBmp(std::span<const std::uint8_t> file);

}  // namespace vrx
