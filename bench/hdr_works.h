// The works that the engine's benchmarks and those of whole calls have in common.
#pragma once

#include <optional>

#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/tone_painter.h"
#include "hdr_pictures.h"
#include "raster/engine/bitmap24.h"

namespace vrx::bench {

/// From the file's bytes into a store that takes the picture's sizes.
void decodeInto(RgbeStore& store, const HdrPicture& picture);

/// Tables and a bitmap, kept from one painting to the next.
class PaintingWork {
  public:
    /// Makes the tables, and paints; with automatic exposition where a type is given.
    void paint(const RgbeStore& store, std::optional<ExpositionType> type);

  private:
    ToneTables tables_;
    Bitmap24 bitmap_;
};

}  // namespace vrx::bench
