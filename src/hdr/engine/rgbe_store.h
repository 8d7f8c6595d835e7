// The pixel store of an HDR picture: raw RGBE bytes in four planes, x fastest, then y, then the component.
// It is one column wider and one row higher than the picture, as hosts see it through Get_HDR and Set_HDR.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ground/bytes.h"

namespace vrx {

inline constexpr int kRgbeComponents = 4;

class RgbeStore {
  public:
    RgbeStore() = default;
    /// Bounds (0 to dimX, 0 to dimY, 0 to 3), all bytes zero; error 7 where the process cannot hold it.
    RgbeStore(std::int32_t dimX, std::int32_t dimY);

    /// A copy of all bytes of a store of these bounds.
    RgbeStore(std::int32_t dimX, std::int32_t dimY, std::span<const std::uint8_t> bytes);

    /// All zero in other sizes. Where that fails, the store has the sizes and no bytes.
    void reset(std::int32_t dimX, std::int32_t dimY);

    /// Without bytes.
    [[nodiscard]] bool empty() const { return planeSize_ == 0; }
    [[nodiscard]] std::int32_t dimX() const { return dimX_; }
    [[nodiscard]] std::int32_t dimY() const { return dimY_; }

    /// Bytes from one row to the next: dimX + 1.
    [[nodiscard]] std::size_t stride() const { return static_cast<std::size_t>(dimX_) + 1; }
    [[nodiscard]] std::size_t size() const { return planeSize_ * kRgbeComponents; }
    [[nodiscard]] const std::uint8_t* data() const { return bytes_.data(); }
    [[nodiscard]] std::uint8_t* data() { return bytes_.data(); }

    /// The plane of component c, row y (0 to dimY).
    [[nodiscard]] const std::uint8_t* row(int c, std::int32_t y) const {
        return bytes_.data() + offset(c, y);
    }
    [[nodiscard]] std::uint8_t* row(int c, std::int32_t y) { return bytes_.data() + offset(c, y); }

    [[nodiscard]] bool contains(std::int32_t x, std::int32_t y) const {
        return !empty() && x >= 0 && x <= dimX_ && y >= 0 && y <= dimY_;
    }

  private:
    [[nodiscard]] std::size_t offset(int c, std::int32_t y) const {
        return static_cast<std::size_t>(c) * planeSize_ + static_cast<std::size_t>(y) * stride();
    }

    std::int32_t dimX_ = 0;
    std::int32_t dimY_ = 0;
    std::size_t planeSize_ = 0;
    ZeroedBytes bytes_;
};

}  // namespace vrx
