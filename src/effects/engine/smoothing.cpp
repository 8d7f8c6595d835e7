#include "effects/engine/smoothing.h"

#include <vector>

#include "effects/engine/smoothing_rows.h"
#include "ground/processor.h"
#include "raster/engine/pixel_rows.h"

namespace vrx {
namespace {

void smoothWith(void (*smoothRows)(const SmoothingRows&), std::span<std::uint8_t> buffer, std::int32_t dimX,
                std::int32_t dimY) {
    if (!holdsPixels(buffer.size(), dimX, dimY) || dimX < 3 || dimY < 4) return;
    const std::size_t size = static_cast<std::size_t>(dimX) * 3;
    std::vector<std::uint16_t> work(kSmoothingWorkRows * size);
    smoothRows({buffer.data(), rowStride(dimX), size, static_cast<std::size_t>(dimY), work.data()});
}

}  // namespace

void blur(std::span<std::uint8_t> buffer, std::int32_t dimX, std::int32_t dimY) {
    smoothWith(hasAvx2() ? avx2::blurRows : baseline::blurRows, buffer, dimX, dimY);
}

void medianCut(std::span<std::uint8_t> buffer, std::int32_t dimX, std::int32_t dimY) {
    smoothWith(hasAvx2() ? avx2::medianCutRows : baseline::medianCutRows, buffer, dimX, dimY);
}

}  // namespace vrx
