// Pictures made for the codec's tests, and what may be said of two pictures that should be alike.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "jpeg/engine/picture_format.h"

namespace vrx::test {

/// Red, green, blue; rows from the top, without padding.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> rgb;

    [[nodiscard]] std::uint8_t* pixel(std::uint32_t x, std::uint32_t y) {
        return &rgb[(std::size_t{y} * width + x) * 3];
    }
    [[nodiscard]] const std::uint8_t* pixel(std::uint32_t x, std::uint32_t y) const {
        return &rgb[(std::size_t{y} * width + x) * 3];
    }
};

/// Pixels as a host lays them out.
struct HostPixels {
    jpeg::PixelLayout layout;
    std::vector<std::uint8_t> bytes;
};

Picture blankPicture(std::uint32_t width, std::uint32_t height);

/// Red, green, blue and white quarters: top left, top right, bottom left, bottom right.
Picture quarters(std::uint32_t side);

/// Like a photograph: large soft shapes, edges, texture of all sizes and a little noise; the same every time.
Picture landscape(std::uint32_t width, std::uint32_t height);

/// Rows padded to multiples of 4 bytes; the padding is 0xEE.
HostPixels hostPixels(const Picture& picture, jpeg::Color color, bool bottomUp);

/// Room for a picture, all 0xEE.
HostPixels hostRoom(std::uint32_t width, std::uint32_t height, jpeg::Color color, bool bottomUp);

/// The picture in a host's red, green and blue pixels, or in grey ones.
Picture pictureOf(const HostPixels& pixels);

double meanSquareError(const Picture& a, const Picture& b);
/// In decibels.
double peakSignalToNoise(const Picture& a, const Picture& b);

}  // namespace vrx::test
