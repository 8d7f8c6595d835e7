// Automatic exposition: luminance of the tone-mapped picture compressed by one of two operators, in CIE Yxy.
// Reinhard et al., "Photographic Tone Reproduction for Digital Images", 2002, gives the first; the second
// stretches the luminance range linearly.
#pragma once

#include <cstdint>

#include "hdr/engine/auto_exposition_rows.h"
#include "hdr/engine/rgbe_store.h"
#include "hdr/engine/tone_tables.h"

namespace vrx {

/// The published values of Enum_AutoExpositionType; others leave the luminance as it is.
enum class ExpositionType : std::int32_t { Max = 0, MinMax = 1 };

/// What the operators need to know of the whole picture: Singles, but for a white point beyond a Single.
struct LuminanceRange {
    float minimum = 1.0e9F;
    float maximum = -1.0e9F;
    double whitePoint = 0.0;  ///< 1 / (maximum * maximum)
};

/// Luminance of the single-precision table's colours (exposed and gamma-corrected, not linear radiance) over
/// the picture's columns and rows. Error 11 where the largest luminance is 0.
[[nodiscard]] LuminanceRange measureLuminance(const ToneTables& tables, const RgbeStore& store);

/// What is done to every row of a painting. Error 11 for MinMax where all luminances are the same.
[[nodiscard]] RowExposition expositionOf(ExpositionType type, const LuminanceRange& range);

/// One row of the store to bytes blue, green, red. Arithmetic in double precision from Singles, results times
/// 255, rounded half to even and held to 0 .. 255. The same bytes on every processor.
void paintExposedRow(const ToneTables& tables, const RowExposition& exposition, const RgbeStore& store,
                     std::int32_t y, std::uint8_t* bgr) noexcept;

}  // namespace vrx
