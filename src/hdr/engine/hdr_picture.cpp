#include "hdr/engine/hdr_picture.h"

#include <cmath>
#include <limits>
#include <utility>

#include "ground/error.h"
#include "hdr/engine/modHDR.h"
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

void HdrPicture::setStore(RgbeStore store) {
    filling_.reset();
    store_ = std::move(store);
}

void HdrPicture::makeRoom(bool preview) {
    const std::int32_t width = dimX();
    const std::int32_t height = dimY();
    store_.reset(width, height);
    if (!preview) return;
    preview_.reset(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
    beginPainting(0);
    // A load can have become one with a preview after its begin.
    if (!tablesBuilt()) buildTables();
}

void HdrPicture::clear() {
    setStore({});
    preview_ = {};
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

bool HdrPicture::hasPixels() const { return !store_.empty() && store_.dimX() > 0 && store_.dimY() > 0; }

void HdrPicture::previewRow(std::int32_t y) {
    paintPlainRow(tables_, store_, y, preview_.rowFromTop(static_cast<std::uint32_t>(y)));
    painting_.rows = static_cast<std::uint32_t>(y) + 1;
}

void HdrPicture::buildNeededTables() {
    const ToneParts parts = autoExposition_ ? ToneParts::BytesAndSingles : ToneParts::Bytes;
    tables_.build(multiplier_, inverseGamma_, parts);
}

/// None for a plain painting.
std::optional<RowExposition> HdrPicture::measuredExposition() const {
    if (!autoExposition_) return std::nullopt;
    return expositionOf(expositionType_, measureLuminance(tables_, store_));
}

void HdrPicture::paint() {
    multiplier_ = exposureGiven_ ? exposureMultiplier(exposure_) : 0.0F;
    inverseGamma_ = gammaGiven_ ? inverseOf(gamma_) : 0.0F;
    buildNeededTables();
    if (!hasPixels()) {
        preview_ = {};
        return;
    }
    const std::optional<RowExposition> exposition = measuredExposition();
    const auto width = static_cast<std::uint32_t>(store_.dimX());
    const auto height = static_cast<std::uint32_t>(store_.dimY());
    if (preview_.width() != width || preview_.height() != height) preview_.reset(width, height);
    beginPainting(height);
    paintStore(tables_, exposition ? &*exposition : nullptr, store_, preview_);
}

BitmapRows HdrPicture::convert(float exposure, float gamma) {
    if (exposure > -1.0F) multiplier_ = exposureMultiplier(exposure);
    if (gamma > -1.0F) {
        if (gamma == 0.0F) throw platformError(Platform::DivisionByZero);
        inverseGamma_ = inverseOf(gamma);
    }
    buildNeededTables();
    if (!hasPixels()) return {};
    return {static_cast<std::uint32_t>(store_.dimX()), static_cast<std::uint32_t>(store_.dimY()),
            [this, exposition = measuredExposition()](std::uint32_t y, std::uint8_t* bgr) {
                paintRow(tables_, exposition ? &*exposition : nullptr, store_, static_cast<std::int32_t>(y),
                         bgr);
            }};
}

void HdrPicture::encode(ByteSink& sink) const { encodeRgbe(store_, sink); }

PictureFilling::PictureFilling(HdrPicture& picture, Resolution sizes)
    : picture_(picture), sizes_(std::make_shared<const Resolution>(sizes)) {
    picture_.filling_ = sizes_;
}

PictureFilling::~PictureFilling() {
    if (holds()) picture_.filling_.reset();
}

}  // namespace vrx
