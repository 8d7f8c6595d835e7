// The header of a Radiance picture file: text lines, of which only the resolution line counts.
#pragma once

#include <cstdint>

#include "hdr/engine/rgbe_cursor.h"

namespace vrx {

struct Resolution {
    std::int32_t dimX;
    std::int32_t dimY;
};

/// Reads lines up to and including the resolution line ("-Y 480 +X 640" or with the axes exchanged; the signs
/// do not matter) and leaves the cursor behind it. Magic, FORMAT and EXPOSURE lines are passed over unread.
/// Fails where no such line begins within the first 10000 bytes, where a line before it has 1000 characters,
/// or where a size is missing, negative, no number or beyond 32 bits. Sizes are read as Visual Basic reads a
/// Long: "480.0", "4.8e2" and "&H1E0" are 480.
[[nodiscard]] Resolution readResolution(RgbeCursor& file);

}  // namespace vrx
