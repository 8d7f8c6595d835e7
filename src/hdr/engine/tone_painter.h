// Rows of RGBE bytes to rows of 24-bit bitmaps, plain or with automatic exposition.
#pragma once

#include <cstddef>
#include <cstdint>

#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/rgbe_store.h"
#include "hdr/engine/tone_tables.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

/// One row of the store to `width` pixels blue, green, red: the byte table's entry for each component.
void paintPlainRow(const ToneTables& tables, const RgbeStore& store, std::int32_t y, std::uint8_t* bgr);

/// One row of the store, without `exposition` plain.
void paintRow(const ToneTables& tables, const RowExposition* exposition, const RgbeStore& store,
              std::int32_t y, std::uint8_t* bgr);

/// The whole store, its first row at the bitmap's top. Without `exposition` plain.
void paintStore(const ToneTables& tables, const RowExposition* exposition, const RgbeStore& store,
                Bitmap24& bitmap);

}  // namespace vrx
