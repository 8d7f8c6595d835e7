#include "hdr/engine/rgbe_writer.h"

#include <algorithm>
#include <string>

#include "ground/bytes.h"
#include "ground/processor.h"
#include "hdr/engine/hdr_error.h"
#include "hdr/engine/run_length_rows.h"

namespace vrx {
namespace {

constexpr std::uint64_t kScanlineHeaderSize = 4;
constexpr std::size_t kBlockSize = 1 << 18;

std::string headerOf(std::int32_t dimX, std::int32_t dimY) {
    return "#?RADIANCE\n"
           "SOFTWARE=QUILB\n"
           "FORMAT=32-bit_rle_rgbe\n"
           "EXPOSURE=1.0000000000000\n"
           "\n"
           "-Y " +
           std::to_string(dimY) + " +X " + std::to_string(dimX) + "\n";
}

std::uint8_t* writeScanline(const RgbeStore& store, std::int32_t y, std::uint8_t* out) {
    const auto encodePlane = hasAvx2() ? avx2::encodePlane : baseline::encodePlane;
    const auto width = static_cast<std::size_t>(store.dimX());
    *out++ = 2;
    *out++ = 2;
    *out++ = static_cast<std::uint8_t>(width >> 8);
    *out++ = static_cast<std::uint8_t>(width & 0xFF);
    for (int c = 0; c < kRgbeComponents; ++c) out = encodePlane({store.row(c, y), width}, out);
    return out;
}

}  // namespace

void encodeRgbe(const RgbeStore& store, ByteSink& sink) {
    const std::int32_t rows = store.dimY();
    if (rows > 0 && (store.empty() || store.dimX() > kMaxScanlineWidth)) throw fileError();
    const std::string header = headerOf(store.dimX(), rows);
    sink.write({reinterpret_cast<const std::uint8_t*>(header.data()), header.size()});
    if (rows == 0) return;

    const auto scanlineBound = static_cast<std::size_t>(
        kScanlineHeaderSize + kRgbeComponents * runLengthBound(static_cast<std::uint64_t>(store.dimX())));
    Bytes block(std::max(kBlockSize, scanlineBound));
    std::uint8_t* end = block.data();
    for (std::int32_t y = 0; y < rows; ++y) {
        if (block.size() - static_cast<std::size_t>(end - block.data()) < scanlineBound) {
            sink.write({block.data(), end});
            end = block.data();
        }
        end = writeScanline(store, y, end);
    }
    sink.write({block.data(), end});
}

}  // namespace vrx
