// A 24-bit bitmap as Windows lays it out: blue, green, red; rows bottom-up, each padded to a multiple of 4
// bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ground/bytes.h"
#include "ground/error.h"

namespace vrx {

/// Bytes from one row to the next for a width in pixels.
[[nodiscard]] constexpr std::uint64_t strideOf(std::uint32_t width) {
    return (std::uint64_t{width} * 3 + 3) & ~std::uint64_t{3};
}

/// Bytes of all rows; error 7 for more than a process can hold.
[[nodiscard]] inline std::uint64_t bitmapSize(std::uint32_t width, std::uint32_t height) {
    if (height != 0 && strideOf(width) > kMaxByteCount / height) throw platformError(Platform::OutOfMemory);
    return strideOf(width) * height;
}

/// How far a bitmap is painted: the rows from the top that are there, black below them. Rows of one painting
/// do not change any more, so copies of it need only those that have come since.
struct PaintedRows {
    std::uint32_t number = 0;  ///< another for each painting, 0 for none
    std::uint32_t rows = 0;
};

class Bitmap24 {
  public:
    Bitmap24() = default;
    /// A black bitmap; error 7 where it is larger than the process can hold.
    Bitmap24(std::uint32_t width, std::uint32_t height) { reset(width, height); }

    /// Black again in other sizes. Where that fails, the bitmap is empty.
    void reset(std::uint32_t width, std::uint32_t height) {
        width_ = 0;
        height_ = 0;
        pixels_.reset(bitmapSize(width, height));
        width_ = width;
        height_ = height;
    }

    [[nodiscard]] std::uint32_t width() const { return width_; }
    [[nodiscard]] std::uint32_t height() const { return height_; }
    [[nodiscard]] std::size_t stride() const { return static_cast<std::size_t>(strideOf(width_)); }
    [[nodiscard]] std::size_t size() const { return pixels_.size(); }
    [[nodiscard]] bool empty() const { return width_ == 0 || height_ == 0; }
    [[nodiscard]] const std::uint8_t* data() const { return pixels_.data(); }
    [[nodiscard]] std::uint8_t* data() { return pixels_.data(); }

    /// The row that is y rows below the top of the picture.
    [[nodiscard]] const std::uint8_t* rowFromTop(std::uint32_t y) const {
        return pixels_.data() + (height_ - 1 - y) * stride();
    }
    [[nodiscard]] std::uint8_t* rowFromTop(std::uint32_t y) {
        return pixels_.data() + (height_ - 1 - y) * stride();
    }

  private:
    std::uint32_t width_ = 0;
    std::uint32_t height_ = 0;
    ZeroedBytes pixels_;
};

}  // namespace vrx
