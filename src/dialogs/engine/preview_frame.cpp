#include "dialogs/engine/preview_frame.h"

#include "ground/himetric.h"
#include "ground/rounding.h"

namespace vrx {
namespace {

/// A side of the frame when the picture's other side is as long as the box. The order counts: the
/// quotient is rounded before the product.
double scaledSide(std::int32_t box, std::int32_t picture, std::int32_t side) {
    if (picture == 0) throw platformError(Platform::DivisionByZero);
    return static_cast<double>(box) / picture * side;
}

}  // namespace

std::int32_t twipsOfPixels(double pixels, double twipsInPixel) { return toInt32(pixels * twipsInPixel); }

std::int32_t pixelsOfTwips(double twips, double twipsInPixel) { return toInt32(twips / twipsInPixel); }

std::int32_t pixelsOfPictureLength(std::int32_t himetric, int dpi) {
    return toInt32(pixelLengthOf(himetric, dpi));
}

PreviewFrame proportionalFrame(std::int32_t boxWidth, std::int32_t boxHeight, std::int32_t pictureWidth,
                               std::int32_t pictureHeight) {
    const auto widthAtFullHeight = [&] { return scaledSide(boxHeight, pictureHeight, pictureWidth); };
    const auto heightAtFullWidth = [&] { return scaledSide(boxWidth, pictureWidth, pictureHeight); };
    const bool fillsWidth =
        boxWidth <= boxHeight ? widthAtFullHeight() > boxWidth : heightAtFullWidth() <= boxHeight;
    const std::int32_t width = fillsWidth ? boxWidth : toInt32(widthAtFullHeight());
    const std::int32_t height = fillsWidth ? toInt32(heightAtFullWidth()) : boxHeight;
    return {boxWidth / 2.0 - width / 2.0, boxHeight / 2.0 - height / 2.0, width, height};
}

}  // namespace vrx
