#include "raster/engine/resample.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "ground/error.h"
#include "ground/processor.h"
#include "raster/engine/pixel_rows.h"
#include "raster/engine/resample_rows.h"

namespace vrx {
namespace {

float scaleOf(std::int32_t sourceSize, std::int32_t targetSize) {
    return static_cast<float>((sourceSize - 1.0) / (targetSize - 1.0));
}

/// Whether fractions have 8 bits at most: then two of them and a byte multiply without rounding in a Single.
bool isShort(float scale) { return std::floor(scale * 256.0F) == scale * 256.0F; }

/// A coordinate of the target in the source.
struct Place {
    std::size_t index;
    double fraction;

    Place(float scale, std::size_t coordinate, std::size_t last) {
        const double place = double{scale} * static_cast<double>(coordinate);
        const double floor = std::floor(place);
        index = std::min(static_cast<std::size_t>(floor), last);
        fraction = place - floor;
    }
};

class ColumnTable {
  public:
    ColumnTable(float scale, std::int32_t sourceWidth, std::int32_t targetWidth)
        : last_(static_cast<std::size_t>(sourceWidth) - 1) {
        const auto count = static_cast<std::size_t>(targetWidth);
        lefts_.reserve(count);
        fractions_.reserve(count);
        singles_.reserve(count);
        for (std::size_t x = 0; x < count; ++x) {
            const Place place(scale, x, last_);
            lefts_.push_back(static_cast<std::uint32_t>(place.index * 3));
            fractions_.push_back(place.fraction);
            singles_.push_back(static_cast<float>(place.fraction));
        }
        cutIntoTiles();
    }

    [[nodiscard]] ResampleColumns view() const {
        return {lefts_.data(),    fractions_.data(), singles_.data(), lefts_.size(),
                tileEnds_.data(), tileEnds_.size(),  last_ * 3};
    }

  private:
    void cutIntoTiles() {
        std::size_t begin = 0;
        for (std::size_t x = 1; x < lefts_.size(); ++x) {
            if (lefts_[x] - lefts_[begin] <= kResampleTileSize - 6) continue;
            tileEnds_.push_back(x);
            begin = x;
        }
        tileEnds_.push_back(lefts_.size());
    }

    std::size_t last_;
    std::vector<std::size_t> tileEnds_;
    std::vector<std::uint32_t> lefts_;
    std::vector<double> fractions_;
    std::vector<float> singles_;
};

void copyRows(const ResampleSource& source, const ResampleTarget& target) {
    const std::size_t stride = rowStride(source.width);
    for (std::size_t y = 0; y < static_cast<std::size_t>(source.height); ++y) {
        std::memcpy(target.pixels.data() + y * stride, source.pixels.data() + y * stride,
                    static_cast<std::size_t>(source.width) * 3);
    }
}

void blendAll(const ResampleSource& source, const ResampleTarget& target) {
    const float xScale = scaleOf(source.width, target.width);
    const float yScale = scaleOf(source.height, target.height);
    const bool exact = isShort(xScale) && isShort(yScale);
    const auto resampleRow = hasAvx2() ? avx2::resampleRow : baseline::resampleRow;
    const ColumnTable columns(xScale, source.width, target.width);
    const auto last = static_cast<std::size_t>(source.height) - 1;
    const auto sourceRow = [&](std::size_t y) {
        return source.pixels.data() + std::min(y, last) * rowStride(source.width);
    };
    for (std::size_t y = 0; y < static_cast<std::size_t>(target.height); ++y) {
        const Place place(yScale, y, last);
        const ResampleRow row{sourceRow(place.index), sourceRow(place.index + 1), place.fraction, exact};
        resampleRow(row, columns.view(), target.pixels.data() + y * rowStride(target.width));
    }
}

}  // namespace

void resample(const ResampleSource& source, const ResampleTarget& target) {
    if (!holdsPixels(target.pixels.size(), target.width, target.height)) return;
    if (!holdsPixels(source.pixels.size(), source.width, source.height)) {
        throw platformError(Platform::SubscriptOutOfRange);
    }
    if (source.width == target.width && source.height == target.height) return copyRows(source, target);
    if (target.width == 1 || target.height == 1) throw platformError(Platform::DivisionByZero);
    blendAll(source, target);
}

}  // namespace vrx
