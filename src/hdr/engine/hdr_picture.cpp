#include "hdr/engine/hdr_picture.h"

#include <cmath>
#include <limits>
#include <utility>

#include "common/engine/error.h"
#include "hdr/engine/exponent_table.h"
#include "hdr/engine/rgbe_writer.h"

namespace vrx {
namespace {

constexpr float kMinGamma = 1.0F;
constexpr float kMaxGamma = 6.0F;

float inverseOf(float gamma) {
    const double inverse = 1.0 / double{gamma};
    if (std::abs(inverse) > std::numeric_limits<float>::max()) throw platformError(Platform::Overflow);
    return static_cast<float>(inverse);
}

/// What is no number counts as the lowest gamma.
float heldGamma(float gamma) {
    if (!(gamma >= kMinGamma)) return kMinGamma;
    return gamma > kMaxGamma ? kMaxGamma : gamma;
}

}  // namespace

void HdrPicture::setGamma(float gamma) {
    gamma_ = heldGamma(gamma);
    inverseGamma_ = inverseOf(gamma_);
    gammaGiven_ = true;
}

void HdrPicture::setExposure(float exposure) {
    exposure_ = exposure;
    multiplier_ = exposureMultiplier(exposure);
    exposureGiven_ = true;
}

void HdrPicture::setDimensions(std::int32_t dimX, std::int32_t dimY) {
    dimX_ = dimX;
    dimY_ = dimY;
}

void HdrPicture::setStore(RgbeStore store) {
    ++generation_;
    store_ = std::move(store);
    setDimensions(store_.dimX(), store_.dimY());
}

void HdrPicture::resetStore(bool preview) {
    ++generation_;
    store_.reset(dimX_, dimY_);
    if (preview) preview_.reset(static_cast<std::uint32_t>(dimX_), static_cast<std::uint32_t>(dimY_));
}

void HdrPicture::clear() {
    ++generation_;
    store_ = {};
    preview_ = {};
    setDimensions(0, 0);
}

float HdrPicture::component(std::int32_t x, std::int32_t y, std::int32_t component) const {
    if (!store_.contains(x, y)) return kExponentTable[0];
    const float scale = kExponentTable[store_.row(3, y)[x]];
    if (component < 0 || component >= kRgbeComponents) return scale;
    return static_cast<float>((store_.row(component, y)[x] + 0.5) * scale);
}

std::optional<std::array<double, 3>> HdrPicture::percentAt(std::int32_t x, std::int32_t y) const {
    if (!store_.contains(x, y)) return std::nullopt;
    const double scale = kExponentTable[store_.row(3, y)[x]] * 100.0F;
    std::array<double, 3> percent;
    for (int c = 0; c < 3; ++c) {
        percent[static_cast<std::size_t>(c)] = (store_.row(c, y)[x] + 0.5) * scale;
    }
    return percent;
}

bool HdrPicture::hasPixels() const {
    return dimX_ > 0 && dimY_ > 0 && store_.dimX() == dimX_ && store_.dimY() == dimY_;
}

void HdrPicture::previewRow(std::int32_t y) {
    paintPlainRow(tables_, store_, y, preview_.rowFromTop(static_cast<std::uint32_t>(y)));
}

void HdrPicture::paintInto(Bitmap24& bitmap) {
    std::optional<RowExposition> exposition;
    if (autoExposition_) exposition = expositionOf(expositionType_, measureLuminance(tables_, store_));
    if (bitmap.width() != static_cast<std::uint32_t>(dimX_) ||
        bitmap.height() != static_cast<std::uint32_t>(dimY_)) {
        bitmap.reset(static_cast<std::uint32_t>(dimX_), static_cast<std::uint32_t>(dimY_));
    }
    paintStore(tables_, exposition ? &*exposition : nullptr, store_, bitmap);
}

void HdrPicture::paint() {
    multiplier_ = exposureGiven_ ? exposureMultiplier(exposure_) : 0.0F;
    inverseGamma_ = gammaGiven_ ? inverseOf(gamma_) : 0.0F;
    buildTables();
    if (hasPixels()) paintInto(preview_);
}

Bitmap24 HdrPicture::convert(float exposure, float gamma) {
    if (exposure > -1.0F) multiplier_ = exposureMultiplier(exposure);
    if (gamma > -1.0F) {
        if (gamma == 0.0F) throw platformError(Platform::DivisionByZero);
        inverseGamma_ = inverseOf(gamma);
    }
    buildTables();
    Bitmap24 bitmap;
    if (hasPixels()) paintInto(bitmap);
    return bitmap;
}

void HdrPicture::encode(ByteSink& sink) const { encodeRgbe(store_, dimX_, dimY_, sink); }

}  // namespace vrx
