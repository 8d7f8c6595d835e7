#include "effects/engine/fit_proportional.h"

#include "ground/rounding.h"

namespace vrx {
namespace {

/// A side of the rectangle when the other one is as long as the box.
std::int32_t scaled(std::int32_t box, std::int32_t image, std::int32_t side) {
    if (image == 0) throw platformError(Platform::DivisionByZero);
    return toInt32(static_cast<double>(box) / image * side);
}

std::int32_t centred(std::int32_t box, std::int32_t side) { return toInt32(box / 2.0 - side / 2.0); }

}  // namespace

FittedRectangle fitProportional(std::int32_t boxWidth, std::int32_t boxHeight, std::int32_t imageWidth,
                                std::int32_t imageHeight) {
    const auto widthAtFullHeight = [&] { return scaled(boxHeight, imageHeight, imageWidth); };
    const auto heightAtFullWidth = [&] { return scaled(boxWidth, imageWidth, imageHeight); };
    std::int32_t width = boxWidth;
    std::int32_t height = boxHeight;
    if (boxWidth <= boxHeight) {
        width = widthAtFullHeight();
        if (width > boxWidth) {
            width = boxWidth;
            height = heightAtFullWidth();
        }
    } else {
        height = heightAtFullWidth();
        if (height > boxHeight) {
            height = boxHeight;
            width = widthAtFullHeight();
        }
    }
    return {centred(boxWidth, width), centred(boxHeight, height), width, height};
}

}  // namespace vrx
