// A raster image without its automation: the bits of a bitmap in memory and the record that describes them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "VrxCommon.h"
#include "raster/drawing_surface.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

class RasterImage {
  public:
    /// The source of what fails in here, as hosts see it.
    static constexpr char16_t kClassName[] = u"CVrxImage";

    /// Takes copies. The sizes become the record's width and height, as Singles.
    void set(std::span<const std::uint8_t> bits, const BmpInfo& info);
    void set(const Bitmap24& bitmap);
    /// Forgets the bits and the sizes; the record stays.
    void clear();

    [[nodiscard]] std::span<const std::uint8_t> bits() const { return bits_; }
    [[nodiscard]] const BmpInfo& info() const { return info_; }
    [[nodiscard]] std::int32_t dimX() const;
    [[nodiscard]] std::int32_t dimY() const;

    /// Draws the image and writes it as a 24-bit BMP file; the path written. An empty path means
    /// ImageTemp.bmp in the library's own folder or, where that takes no files, in the user's temporary
    /// folder. Error 481 for an image without pixels, or with bits that are no bitmap of the record's kind.
    std::u16string saveBmp(const std::u16string& path);

  private:
    void render();
    void writeSurface(const std::u16string& path) const;

    std::vector<std::uint8_t> bits_;
    BmpInfo info_{};
    float dimX_ = 0.0F;
    float dimY_ = 0.0F;
    DrawingSurface surface_;
};

}  // namespace vrx
