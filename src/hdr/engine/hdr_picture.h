// An HDR picture without its host: pixel store, viewing parameters, tone tables and the preview bitmap.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "common/engine/byte_sink.h"
#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/rgbe_store.h"
#include "hdr/engine/tone_painter.h"
#include "hdr/engine/tone_tables.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

class HdrPicture {
  public:
    // Viewing parameters. Until a gamma or an exposure is given, its inverse or multiplier is 0, and pictures
    // come out nearly black: hosts give both before they paint.
    [[nodiscard]] float gamma() const { return gamma_; }
    void setGamma(float gamma);  ///< held to 1 .. 6
    [[nodiscard]] float exposure() const { return exposure_; }
    void setExposure(float exposure);  ///< in stops
    [[nodiscard]] bool autoExposition() const { return autoExposition_; }
    void setAutoExposition(bool on) { autoExposition_ = on; }
    [[nodiscard]] ExpositionType expositionType() const { return expositionType_; }
    void setExpositionType(ExpositionType type) { expositionType_ = type; }

    // Pixels. The sizes are those of the last resolution line, array or clearing; the store may lag behind
    // them.
    [[nodiscard]] std::int32_t dimX() const { return dimX_; }
    [[nodiscard]] std::int32_t dimY() const { return dimY_; }
    void setDimensions(std::int32_t dimX, std::int32_t dimY);
    [[nodiscard]] const RgbeStore& store() const { return store_; }
    [[nodiscard]] RgbeStore& store() { return store_; }
    void setStore(RgbeStore store);  ///< takes the sizes from the store
    void resetStore(bool preview);   ///< all zero in the current sizes, and a black preview bitmap on demand
    void clear();
    /// Changes whenever the store is exchanged; a load in progress notices by it that its store is gone.
    [[nodiscard]] std::uint32_t generation() const { return generation_; }

    /// (component + 0.5) * 2^(E - 136). Outside the store 2^-136; the scale alone where only the component
    /// is.
    [[nodiscard]] float component(std::int32_t x, std::int32_t y, std::int32_t component) const;
    /// Linear red, green and blue in percent; nothing outside the store.
    [[nodiscard]] std::optional<std::array<double, 3>> percentAt(std::int32_t x, std::int32_t y) const;

    // Painting.
    [[nodiscard]] bool tablesBuilt() const { return tables_.built(); }
    [[nodiscard]] const Bitmap24& preview() const { return preview_; }
    void buildTables() { tables_.build(multiplier_, inverseGamma_); }
    /// One row of the store, plain, into the preview bitmap.
    void previewRow(std::int32_t y);
    /// The whole store into the preview bitmap with the parameters as they are now. Nothing without pixels.
    void paint();
    /// A bitmap of the whole store. An exposure or a gamma above -1 replaces the multiplier or the inverse
    /// gamma until the next paint(), without being held to a range; error 11 for a gamma of 0.
    [[nodiscard]] Bitmap24 convert(float exposure, float gamma);

    /// The picture as a Radiance file.
    void encode(ByteSink& sink) const;

  private:
    [[nodiscard]] bool hasPixels() const;
    void paintInto(Bitmap24& bitmap);

    float gamma_ = 0.0F;
    float inverseGamma_ = 0.0F;
    bool gammaGiven_ = false;
    float exposure_ = 0.0F;
    float multiplier_ = 0.0F;
    bool exposureGiven_ = false;
    bool autoExposition_ = false;
    ExpositionType expositionType_ = ExpositionType::Max;

    std::int32_t dimX_ = 0;
    std::int32_t dimY_ = 0;
    std::uint32_t generation_ = 0;
    RgbeStore store_;
    ToneTables tables_;
    Bitmap24 preview_;
};

}  // namespace vrx
