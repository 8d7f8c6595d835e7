#include "picture.h"

#include <algorithm>
#include <cmath>

namespace vrx::test {
namespace {

using jpeg::Color;

constexpr std::uint8_t kUntouched = 0xEE;

std::uint32_t hash(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
    std::uint32_t value = x * 0x9E3779B1U ^ y * 0x85EBCA77U ^ seed * 0xC2B2AE3DU;
    value = (value ^ value >> 15) * 0x2C1B3C6DU;
    value = (value ^ value >> 12) * 0x297A2D39U;
    return value ^ value >> 15;
}

/// Between 0 and 1, the same for the same place.
double cell(std::uint32_t x, std::uint32_t y, std::uint32_t seed) { return hash(x, y, seed) / 4294967296.0; }

double smooth(double t) { return t * t * (3.0 - 2.0 * t); }

/// Soft noise whose shapes are as large as one unit.
double softNoise(double x, double y, std::uint32_t seed) {
    const auto ix = static_cast<std::uint32_t>(x);
    const auto iy = static_cast<std::uint32_t>(y);
    const double fx = smooth(x - ix);
    const double fy = smooth(y - iy);
    const double top = std::lerp(cell(ix, iy, seed), cell(ix + 1, iy, seed), fx);
    const double bottom = std::lerp(cell(ix, iy + 1, seed), cell(ix + 1, iy + 1, seed), fx);
    return std::lerp(top, bottom, fy);
}

/// Shapes of all sizes, smaller ones weaker; about 0.5 on average.
double texture(double x, double y, std::uint32_t seed) {
    double sum = 0.0;
    double weight = 0.4;
    for (double size = 128.0; size >= 2.0; size /= 2.0, weight /= 1.7) {
        sum += weight * softNoise(x / size, y / size, seed + static_cast<std::uint32_t>(size));
    }
    return sum;
}

std::uint8_t byteOf(double value) { return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0) + 0.5); }

std::uint8_t greyOf(const std::uint8_t* rgb) {
    return byteOf(0.299 * rgb[0] + 0.587 * rgb[1] + 0.114 * rgb[2]);
}

}  // namespace

Picture blankPicture(std::uint32_t width, std::uint32_t height) {
    return {width, height, std::vector<std::uint8_t>(std::size_t{width} * height * 3)};
}

Picture quarters(std::uint32_t side) {
    constexpr std::uint8_t kColors[4][3] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    Picture picture = blankPicture(side, side);
    for (std::uint32_t y = 0; y < side; ++y) {
        for (std::uint32_t x = 0; x < side; ++x) {
            const auto& color = kColors[(y < side / 2 ? 0 : 2) + (x < side / 2 ? 0 : 1)];
            std::copy(color, color + 3, picture.pixel(x, y));
        }
    }
    return picture;
}

Picture landscape(std::uint32_t width, std::uint32_t height) {
    Picture picture = blankPicture(width, height);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const double ground = height * (0.45 + 0.3 * texture(x, 7.0, 1));
            const double light = texture(x, y, 2) - 0.5;
            const double hue = softNoise(x / 90.0, y / 90.0, 3) - 0.5;
            const double grain = 10.0 * (cell(x, y, 4) - 0.5);
            const double sky = std::clamp(ground - y + 0.5, 0.0, 1.0);
            const double mix[3] = {std::lerp(96.0, 120.0, sky) + 40.0 * hue,
                                   std::lerp(104.0, 160.0, sky) - 20.0 * hue,
                                   std::lerp(70.0, 210.0, sky) - 30.0 * hue};
            const double contrast = std::lerp(240.0, 60.0, sky);
            for (int c = 0; c < 3; ++c) picture.pixel(x, y)[c] = byteOf(mix[c] + contrast * light + grain);
        }
    }
    return picture;
}

HostPixels hostRoom(std::uint32_t width, std::uint32_t height, Color color, bool bottomUp) {
    const std::size_t stride = (width * static_cast<std::size_t>(channelsOf(color)) + 3) / 4 * 4;
    const jpeg::PixelLayout layout{width, height, color, stride, bottomUp};
    return {layout, std::vector<std::uint8_t>(layout.size(), kUntouched)};
}

HostPixels hostPixels(const Picture& picture, Color color, bool bottomUp) {
    HostPixels pixels = hostRoom(picture.width, picture.height, color, bottomUp);
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        std::uint8_t* out = pixels.bytes.data() + pixels.layout.rowOffset(y);
        for (std::uint32_t x = 0; x < picture.width; ++x) {
            const std::uint8_t* rgb = picture.pixel(x, y);
            if (color == Color::Grey) {
                *out++ = greyOf(rgb);
            } else {
                out =
                    color == Color::Bgr ? std::reverse_copy(rgb, rgb + 3, out) : std::copy(rgb, rgb + 3, out);
            }
        }
    }
    return pixels;
}

Picture pictureOf(const HostPixels& pixels) {
    const jpeg::PixelLayout& layout = pixels.layout;
    Picture picture = blankPicture(layout.width, layout.height);
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        const std::uint8_t* in = pixels.bytes.data() + layout.rowOffset(y);
        for (std::uint32_t x = 0; x < layout.width; ++x, in += channelsOf(layout.color)) {
            std::uint8_t* rgb = picture.pixel(x, y);
            if (layout.color == Color::Grey) {
                std::fill(rgb, rgb + 3, *in);
            } else if (layout.color == Color::Bgr) {
                std::reverse_copy(in, in + 3, rgb);
            } else {
                std::copy(in, in + 3, rgb);
            }
        }
    }
    return picture;
}

double meanSquareError(const Picture& a, const Picture& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i) {
        const double difference = a.rgb[i] - b.rgb[i];
        sum += difference * difference;
    }
    return sum / static_cast<double>(a.rgb.size());
}

double peakSignalToNoise(const Picture& a, const Picture& b) {
    return 10.0 * std::log10(255.0 * 255.0 / meanSquareError(a, b));
}

}  // namespace vrx::test
