#include "hdr/engine/rgbe_store.h"

#include <utility>

namespace vrx {
namespace {

std::uint64_t checkedPlaneSize(std::int32_t dimX, std::int32_t dimY) {
    const std::uint64_t columns = static_cast<std::uint64_t>(dimX) + 1;
    const std::uint64_t rows = static_cast<std::uint64_t>(dimY) + 1;
    if (columns > kMaxByteCount / kRgbeComponents / rows) throw platformError(Platform::OutOfMemory);
    return columns * rows;
}

}  // namespace

RgbeStore::RgbeStore(std::int32_t dimX, std::int32_t dimY) { reset(dimX, dimY); }

RgbeStore::RgbeStore(std::int32_t dimX, std::int32_t dimY, std::span<const std::uint8_t> bytes)
    : dimX_(dimX), dimY_(dimY), planeSize_(bytes.size() / kRgbeComponents), bytes_(bytes) {}

void RgbeStore::reset(std::int32_t dimX, std::int32_t dimY) {
    ZeroedBytes bytes = std::move(bytes_);
    planeSize_ = 0;
    dimX_ = dimX;
    dimY_ = dimY;
    const std::uint64_t planeSize = checkedPlaneSize(dimX, dimY);
    bytes.reset(planeSize * kRgbeComponents);
    bytes_ = std::move(bytes);
    planeSize_ = static_cast<std::size_t>(planeSize);
}

}  // namespace vrx
