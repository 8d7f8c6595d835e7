// A raster image without its automation: the bits of a bitmap in memory and the record that describes them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "VrxCommon.h"
#include "ground/bytes.h"
#include "raster/drawing_surface.h"
#include "raster/engine/bmp_file.h"
#include "raster/picture_rectangles.h"

namespace vrx {

class RasterImage {
  public:
    /// The source of what fails in here, as hosts see it.
    static constexpr char16_t kClassName[] = u"CVrxImage";

    /// Takes copies. The sizes become the record's width and height, as Singles.
    void set(std::span<const std::uint8_t> bits, const BmpInfo& info);
    /// Reads a picture file of any format that the platform knows as 24-bit bits, followed by one zero byte,
    /// and their record. The sizes stay as they are: hosts take them over with set().
    void load(const std::u16string& path);
    /// Forgets the bits and the sizes; the record stays.
    void clear();

    [[nodiscard]] std::span<const std::uint8_t> bits() const { return bits_.span(); }
    [[nodiscard]] const BmpInfo& info() const { return info_; }
    [[nodiscard]] std::int32_t dimX() const;
    [[nodiscard]] std::int32_t dimY() const;

    /// The image as a picture. A part of it is stretched into the target of a picture of the target's size;
    /// where none is given, the whole is drawn in its own size. What fails is passed over: the picture is
    /// then the last one.
    [[nodiscard]] ComPtr<IPictureDisp> picture(const std::optional<PictureRectangles>& part);
    [[nodiscard]] ComPtr<IPictureDisp> lastPicture() { return surface_.picture(); }

    /// Draws the image and writes it as a 24-bit BMP file; the path written. An empty path means
    /// ImageTemp.bmp in the library's own folder or, where that takes no files, in the user's temporary
    /// folder; an old file there goes first. An image without sizes is one black pixel. Error 481 for bits
    /// that are no bitmap of the record's kind.
    std::u16string saveBmp(const std::u16string& path);

    /// Writes rows as saveBmp() would write an image of them, which need not be in memory for it.
    static std::u16string saveRows(const std::u16string& path, const BitmapRows& rows);

    /// Writes a picture file as JPEG with a quality of 1 to 100; without an input file the image itself, by
    /// way of its temporary BMP file. Error 123 where the codec cannot write, after it has told the user.
    void convertToJpg(const std::u16string& output, std::int32_t quality, const std::u16string& input);

  private:
    void render();
    void renderPart(const std::optional<PictureRectangles>& part);

    Bytes bits_;
    BmpInfo info_{};
    float dimX_ = 0.0F;
    float dimY_ = 0.0F;
    DrawingSurface surface_;
};

}  // namespace vrx
