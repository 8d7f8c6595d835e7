// Radiance RGBE writer: header and adaptive run-length scanlines.
#pragma once

#include "ground/byte_sink.h"
#include "hdr/engine/rgbe_store.h"

namespace vrx {

/// Writes the whole file for the store's picture, its bytes as they are. A picture without rows needs no
/// bytes. Fails ("File Error!") before anything is written where the store has rows but no bytes, or where
/// they are wider than the 65535 pixels that a scanline can name.
void encodeRgbe(const RgbeStore& store, ByteSink& sink);

}  // namespace vrx
