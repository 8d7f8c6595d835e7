// Reads a host's record with suspicion: every field that the codec relies on is checked, or the call fails.
// Addresses are left to the caller.
#pragma once

#include "jpeg/engine/picture_format.h"
#include "raster/engine/jpeg_core_properties.h"

namespace vrx::jpeg {

/// The record as hosts receive it from the start: 24-bit pixels of a bitmap, to a JPEG of quality 75.
void initialise(JpegCoreProperties& record);

/// Fails unless the record describes pixels that the codec knows and that fit a process.
[[nodiscard]] PixelLayout pixelLayoutOf(const JpegCoreProperties& record);

/// What to write. Fails unless the JPEG is of a kind that the codec writes and as large as the pixels.
[[nodiscard]] JpegFormat jpegFormatOf(const JpegCoreProperties& record);

/// Tells the host what was read.
void store(const JpegHeader& header, JpegCoreProperties& record);

}  // namespace vrx::jpeg
