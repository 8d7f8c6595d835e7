// Where the preview shows a picture: as large as its box allows, centred, with the picture's proportions.
#pragma once

#include <cstdint>

namespace vrx {

/// Twips in a pixel at a resolution in dots per inch.
[[nodiscard]] constexpr double twipsPerPixel(int dpi) { return 1440.0 / dpi; }

/// A length in pixels as whole twips and back; halves to even, error 6 beyond 32 bits.
[[nodiscard]] std::int32_t twipsOfPixels(double pixels, double twipsInPixel);
[[nodiscard]] std::int32_t pixelsOfTwips(double twips, double twipsInPixel);

/// A length in HiMetric units (0.01 mm) as whole pixels.
[[nodiscard]] std::int32_t pixelsOfPictureLength(std::int32_t himetric, int dpi);

struct PreviewFrame {
    double left;
    double top;
    std::int32_t width;
    std::int32_t height;

    bool operator==(const PreviewFrame&) const = default;
};

/// The frame in the unit of the box; the picture's unit does not matter. A side is compared with the box
/// before it is rounded, and the corner is not rounded, unlike those of fitProportional (effects/engine).
/// Error 11 where the picture has no length to divide by.
[[nodiscard]] PreviewFrame proportionalFrame(std::int32_t boxWidth, std::int32_t boxHeight,
                                             std::int32_t pictureWidth, std::int32_t pictureHeight);

}  // namespace vrx
