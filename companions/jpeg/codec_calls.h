// Reading and writing as a host's record asks for it. Failures are thrown: jpeg::Failure, or vrx::Error from
// the file layer.
#pragma once

#include "raster/engine/jpeg_core_properties.h"

namespace vrx::jpeg {

/// Only requests to read; the record then holds what was read of the header.
void read(JpegCoreProperties& record, JpegRequest request);

/// Only requests to write. A file appears whole, or the old one stays; memory takes the whole JPEG or
/// nothing, and the record then holds its size.
void write(JpegCoreProperties& record, JpegRequest request);

}  // namespace vrx::jpeg
