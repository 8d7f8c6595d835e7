// An HDR picture without its host: pixel store, viewing parameters, tone tables and the preview bitmap.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "ground/byte_sink.h"
#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_store.h"
#include "hdr/engine/tone_painter.h"
#include "hdr/engine/tone_tables.h"
#include "raster/engine/bitmap24.h"
#include "raster/engine/bmp_file.h"

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

    // Pixels. The sizes are the store's, or those that a load has announced for it.
    [[nodiscard]] std::int32_t dimX() const { return filling_ ? filling_->dimX : store_.dimX(); }
    [[nodiscard]] std::int32_t dimY() const { return filling_ ? filling_->dimY : store_.dimY(); }
    [[nodiscard]] const RgbeStore& store() const { return store_; }
    [[nodiscard]] RgbeStore& store() { return store_; }
    void setStore(RgbeStore store);
    void makeRoom(bool preview);  ///< a store all zero in these sizes, and a black preview bitmap on demand
    void clear();

    /// (component + 0.5) * 2^(E - 136). Outside the store 2^-136; the scale alone where only the component
    /// is.
    [[nodiscard]] float component(std::int32_t x, std::int32_t y, std::int32_t component) const;
    /// Linear red, green and blue in percent; nothing outside the store.
    [[nodiscard]] std::optional<std::array<double, 3>> percentAt(std::int32_t x, std::int32_t y) const;

    // Painting.
    [[nodiscard]] bool tablesBuilt() const { return tables_.built(); }
    [[nodiscard]] const Bitmap24& preview() const { return preview_; }
    /// Of the preview bitmap.
    [[nodiscard]] PaintedRows painting() const { return painting_; }
    /// For plain painting.
    void buildTables() { tables_.build(multiplier_, inverseGamma_, ToneParts::Bytes); }
    /// One row of the store, plain, into the preview bitmap.
    void previewRow(std::int32_t y);
    /// The whole store into the preview bitmap with the parameters as they are now; empty without pixels.
    void paint();
    /// What paints the rows of the whole store as long as the picture is not changed; none without pixels. An
    /// exposure or a gamma above -1 replaces the multiplier or the inverse gamma until the next paint(),
    /// without being held to a range; error 11 for a gamma of 0.
    [[nodiscard]] BitmapRows convert(float exposure, float gamma);

    /// The picture as a Radiance file.
    void encode(ByteSink& sink) const;

  private:
    friend class PictureFilling;

    [[nodiscard]] bool hasPixels() const;
    void buildNeededTables();
    void beginPainting(std::uint32_t rows) { painting_ = {painting_.number + 1, rows}; }
    [[nodiscard]] std::optional<RowExposition> measuredExposition() const;

    float gamma_ = 0.0F;
    float inverseGamma_ = 0.0F;
    bool gammaGiven_ = false;
    float exposure_ = 0.0F;
    float multiplier_ = 0.0F;
    bool exposureGiven_ = false;
    bool autoExposition_ = false;
    ExpositionType expositionType_ = ExpositionType::Max;

    RgbeStore store_;
    // Of the load that fills the store, if one does. Shared, as hosts can leave a load without returning.
    std::shared_ptr<const Resolution> filling_;
    ToneTables tables_;
    Bitmap24 preview_;
    PaintedRows painting_;
};

/// A load's hold on a picture, from its resolution line to its end. Another load, other pixels or their
/// clearing take it away for good: the picture is then no longer this load's.
class PictureFilling {
  public:
    /// The picture has these sizes at once, while its pixels stay those of before.
    PictureFilling(HdrPicture& picture, Resolution sizes);
    PictureFilling(const PictureFilling&) = delete;
    PictureFilling& operator=(const PictureFilling&) = delete;
    ~PictureFilling();

    [[nodiscard]] bool holds() const { return picture_.filling_ == sizes_; }

  private:
    HdrPicture& picture_;
    std::shared_ptr<const Resolution> sizes_;
};

}  // namespace vrx
