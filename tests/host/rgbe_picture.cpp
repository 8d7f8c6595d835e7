#include "rgbe_picture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace host {
namespace {

using Triple = std::array<double, 3>;

std::uint8_t component(const Rgbe& pixel, int c) {
    const std::uint8_t components[] = {pixel.r, pixel.g, pixel.b, pixel.e};
    return components[c];
}

std::uint8_t byteOf(double value) {
    return value > 255 ? 255 : static_cast<std::uint8_t>(value >= 0 ? std::nearbyint(value) : 0);
}

/// ((M + 0.5) * 2^(E - 136) * 2^exposure) ^ (1 / gamma)
struct Curve {
    float multiplier;
    float inverseGamma;

    Curve(float exposure, float gamma)
        : multiplier(static_cast<float>(std::exp2(double{exposure}))),
          inverseGamma(static_cast<float>(1.0 / double{gamma})) {}

    [[nodiscard]] double operator()(std::uint8_t mantissa, std::uint8_t exponent) const {
        const double scale = std::ldexp(1.0, exponent - 136) * double{multiplier};
        return std::pow((mantissa + 0.5) * scale, double{inverseGamma});
    }
    [[nodiscard]] Triple scaled(const Rgbe& pixel) const {
        Triple colour;
        for (int c = 0; c < 3; ++c) {
            colour[static_cast<std::size_t>(c)] =
                static_cast<float>((*this)(component(pixel, c), pixel.e) / 255);
        }
        return colour;
    }
};

Triple times(const float (&matrix)[3][3], const Triple& v) {
    Triple result;
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = double{matrix[i][0]} * v[0] + double{matrix[i][1]} * v[1] + double{matrix[i][2]} * v[2];
    }
    return result;
}

Triple toYxy(const Triple& rgb) {
    static constexpr float kMatrix[3][3] = {{0.5141364F, 0.32387858F, 0.16036376F},
                                            {0.265068F, 0.67023426F, 0.06409157F},
                                            {0.0241188F, 0.1228178F, 0.84442663F}};
    const Triple xyz = times(kMatrix, rgb);
    const double sum = xyz[0] + xyz[1] + xyz[2];
    if (sum <= 0) return {};
    const double inverse = 1 / sum;
    return {xyz[1], xyz[0] * inverse, xyz[1] * inverse};
}

Triple toRgb(const Triple& yxy) {
    static constexpr float kMatrix[3][3] = {
        {2.5651F, -1.1665F, -0.3986F}, {-1.0217F, 1.9777F, 0.0439F}, {0.0753F, -0.2543F, 1.1892F}};
    const auto [luminance, x, y] = yxy;
    Triple xyz{0, luminance, 0};
    if (luminance > 0 && x > 0 && y > 0) {
        xyz[0] = x * luminance / y;
        xyz[2] = xyz[0] / x - xyz[0] - luminance;
    }
    return times(kMatrix, xyz);
}

struct Luminances {
    float smallest = 1.0e9F;
    float largest = -1.0e9F;

    void add(double luminance) {
        if (luminance < smallest) smallest = static_cast<float>(luminance);
        if (luminance > largest) largest = static_cast<float>(luminance);
    }
    [[nodiscard]] double compressed(double luminance, Exposition exposition) const {
        if (exposition == Exposition::MinMax) return (luminance - smallest) / (double{largest} - smallest);
        if (exposition != Exposition::Max) return luminance;
        const auto k = static_cast<float>(1 / (double{largest} * largest));
        return luminance * (1 + luminance * double{k}) / (1 + luminance);
    }
};

std::size_t offsetOf(const RgbePicture& picture, int x, int y) {
    return static_cast<std::size_t>(picture.height() - 1 - y) * strideOf(picture.width()) +
           static_cast<std::size_t>(3 * x);
}

}  // namespace

RgbePicture::RgbePicture(int width, int height) : width_(width), height_(height) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            pixels_.push_back({static_cast<std::uint8_t>(7 * x + 31 * y + 3),
                               static_cast<std::uint8_t>(13 * x + 5 * y + 50),
                               static_cast<std::uint8_t>(29 * x + 17 * y + 101),
                               static_cast<std::uint8_t>(134 + (x + 2 * y) % 4)});
        }
    }
}

RgbePicture& RgbePicture::fill(Rgbe pixel) {
    std::ranges::fill(pixels_, pixel);
    return *this;
}

FileBytes RgbePicture::file(int longestRun) const {
    FileBytes bytes = headerFile(width_, height_);
    for (int y = 0; y < height_; ++y) {
        append(bytes, {2, 2, width_ >> 8, width_ & 255});
        for (int c = 0; c < 4; ++c) {
            for (int x = 0; x < width_; ++x) {
                if (x % longestRun == 0) append(bytes, {std::min(longestRun, width_ - x)});
                append(bytes, {component(at(x, y), c)});
            }
        }
    }
    return bytes;
}

FileBytes RgbePicture::store(bool inverted) const {
    FileBytes bytes;
    for (int c = 0; c < 4; ++c) {
        for (int row = 0; row <= height_; ++row) {
            const int y = inverted ? height_ - row : row;
            for (int x = 0; x <= width_; ++x) {
                bytes.push_back(x < width_ && y < height_ ? component(at(x, y), c) : std::uint8_t{0});
            }
        }
    }
    return bytes;
}

FileBytes RgbePicture::bitmap(float exposure, float gamma, int rows) const {
    const Curve curve(exposure, gamma);
    FileBytes bytes(strideOf(width_) * static_cast<std::size_t>(height_));
    for (int y = 0; y < (rows < 0 ? height_ : rows); ++y) {
        for (int x = 0; x < width_; ++x) {
            const Rgbe& pixel = at(x, y);
            std::uint8_t* bgr = &bytes[offsetOf(*this, x, y)];
            for (int c = 0; c < 3; ++c) bgr[2 - c] = byteOf(curve(component(pixel, c), pixel.e));
        }
    }
    return bytes;
}

FileBytes RgbePicture::bitmap(float exposure, float gamma, Exposition exposition) const {
    const Curve curve(exposure, gamma);
    Luminances luminances;
    for (const Rgbe& pixel : pixels_) luminances.add(toYxy(curve.scaled(pixel))[0]);
    FileBytes bytes(strideOf(width_) * static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            Triple yxy = toYxy(curve.scaled(at(x, y)));
            yxy[0] = luminances.compressed(yxy[0], exposition);
            const Triple rgb = toRgb(yxy);
            std::uint8_t* bgr = &bytes[offsetOf(*this, x, y)];
            for (std::size_t c = 0; c < 3; ++c) bgr[2 - c] = byteOf(rgb[c] * 255);
        }
    }
    return bytes;
}

float linearOf(std::uint8_t mantissa, std::uint8_t exponent) {
    return static_cast<float>(std::ldexp(mantissa + 0.5, exponent - 136));
}

FileBytes headerFile(const std::string& resolution) {
    const std::string text = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n" + resolution + "\n";
    return {text.begin(), text.end()};
}

FileBytes headerFile(int width, int height) {
    return headerFile("-Y " + std::to_string(height) + " +X " + std::to_string(width));
}

void append(FileBytes& file, const std::vector<int>& bytes) {
    for (const int byte : bytes) file.push_back(static_cast<std::uint8_t>(byte));
}

}  // namespace host
