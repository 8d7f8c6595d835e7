// A picture in RGBE and everything that it must become, worked out from the formulas and not by the library.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "throwaway_folder.h"

namespace host {

struct Rgbe {
    std::uint8_t r, g, b, e;
};

enum class Exposition { Max, MinMax, Unknown };

class RgbePicture {
  public:
    /// Neighbours differ in all components; with exposure 0 and gamma 1 the bytes are spread over 0 .. 255.
    RgbePicture(int width, int height);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] Rgbe& at(int x, int y) { return pixels_[static_cast<std::size_t>(y * width_ + x)]; }
    [[nodiscard]] const Rgbe& at(int x, int y) const {
        return pixels_[static_cast<std::size_t>(y * width_ + x)];
    }
    /// The same pixel everywhere.
    RgbePicture& fill(Rgbe pixel);

    /// A Radiance file of literal runs, each of at most this length.
    [[nodiscard]] FileBytes file(int longestRun = 128) const;
    /// All planes of a store (0 To width, 0 To height, 0 To 3). Inverted, scanline y is in row height - y.
    [[nodiscard]] FileBytes store(bool inverted = false) const;
    /// The 24-bit bitmap, bottom-up with padded rows; `rows` from the top, black below.
    [[nodiscard]] FileBytes bitmap(float exposure, float gamma, int rows = -1) const;
    /// The same with automatic exposition.
    [[nodiscard]] FileBytes bitmap(float exposure, float gamma, Exposition exposition) const;

  private:
    int width_;
    int height_;
    std::vector<Rgbe> pixels_;
};

/// Bytes of a row of a 24-bit bitmap.
[[nodiscard]] constexpr std::size_t strideOf(int width) {
    return (static_cast<std::size_t>(width) * 3 + 3) & ~std::size_t{3};
}

/// (mantissa + 0.5) * 2^(exponent - 136)
[[nodiscard]] float linearOf(std::uint8_t mantissa, std::uint8_t exponent);

/// Magic, FORMAT, the empty line and this resolution line.
[[nodiscard]] FileBytes headerFile(const std::string& resolution);
[[nodiscard]] FileBytes headerFile(int width, int height);
void append(FileBytes& file, const std::vector<int>& bytes);

}  // namespace host
