// Automatic exposition: luminance of the tone-mapped picture compressed by one of two operators, in CIE Yxy.
// Reinhard et al., "Photographic Tone Reproduction for Digital Images", 2002, gives the first; the second
// stretches the luminance range linearly.
#pragma once

#include <cstdint>

#include "hdr/engine/rgbe_store.h"
#include "hdr/engine/tone_tables.h"

namespace vrx {

/// The published values of Enum_AutoExpositionType; others leave the luminance as it is.
enum class ExpositionType : std::int32_t { Max = 0, MinMax = 1 };

/// What the operators need to know of the whole picture, as Singles.
struct LuminanceRange {
    float minimum = 1.0e9F;
    float maximum = -1.0e9F;
    float whitePoint = 0.0F;  ///< 1 / (maximum * maximum)
};

struct Exposition {
    ExpositionType type;
    LuminanceRange range;
};

/// Luminance of the single-precision table's colours (exposed and gamma-corrected, not linear radiance) over
/// the picture's columns and rows. Error 11 where the largest luminance is 0, 6 where it is too small to
/// square.
[[nodiscard]] LuminanceRange measureLuminance(const ToneTables& tables, const RgbeStore& store);

/// One row of the store to bytes blue, green, red. Arithmetic in double precision from Singles, results times
/// 255, rounded half to even and held to 0 .. 255. The same bytes on every processor.
void paintExposedRow(const ToneTables& tables, const Exposition& exposition, const RgbeStore& store,
                     std::int32_t y, std::uint8_t* bgr);

}  // namespace vrx
