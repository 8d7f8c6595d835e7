// Any pixels written as a file read back the same: two bytes of width, then the store's planes row by row.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"
#include "hdr/engine/rgbe_writer.h"

namespace {

using namespace vrx;

void require(bool condition) {
    if (!condition) std::abort();
}

class MemorySink final : public ByteSink {
  public:
    std::vector<std::uint8_t> bytes;

    void write(std::span<const std::uint8_t> block) override {
        bytes.insert(bytes.end(), block.begin(), block.end());
    }
};

/// As many rows as the bytes begin; what the last one lacks is zero.
RgbeStore storeOf(std::span<const std::uint8_t> bytes, std::size_t width) {
    const std::size_t rowSize = kRgbeComponents * std::max<std::size_t>(width, 1);
    const std::size_t rows = (bytes.size() + rowSize - 1) / rowSize;
    RgbeStore store(static_cast<std::int32_t>(width), static_cast<std::int32_t>(rows));
    for (std::int32_t y = 0; y < store.dimY(); ++y) {
        for (int c = 0; c < kRgbeComponents; ++c) {
            const std::size_t count = std::min(width, bytes.size());
            std::copy_n(bytes.begin(), count, store.row(c, y));
            bytes = bytes.subspan(count);
        }
    }
    return store;
}

using Encoder = std::uint8_t* (*)(std::span<const std::uint8_t>, std::uint8_t*);

std::vector<std::uint8_t> codesOf(Encoder encoder, std::span<const std::uint8_t> plane) {
    std::vector<std::uint8_t> codes(static_cast<std::size_t>(runLengthBound(plane.size())));
    const std::uint8_t* end = encoder(plane, codes.data());
    codes.resize(static_cast<std::size_t>(end - codes.data()));
    return codes;
}

void checkPlanes(const RgbeStore& store) {
    for (std::int32_t y = 0; y < store.dimY(); ++y) {
        for (int c = 0; c < kRgbeComponents; ++c) {
            const std::vector<std::uint8_t> plane(store.row(c, y), store.row(c, y) + store.dimX());
            require(codesOf(encodePlane, plane) == codesOf(encodePlaneByBytes, plane));
        }
    }
}

void checkFile(const RgbeStore& store) {
    MemorySink file;
    encodeRgbe(store, store.dimX(), store.dimY(), file);
    const std::size_t size = file.bytes.size();
    file.bytes.push_back(0);

    RgbeCursor cursor(file.bytes, 1);
    const Resolution resolution = readResolution(cursor);
    require(resolution.dimX == store.dimX() && resolution.dimY == store.dimY());
    RgbeStore again(resolution.dimX, resolution.dimY);
    for (std::int32_t y = 0; y < again.dimY(); ++y) {
        require(readScanline(cursor, again, y) == ScanlineResult::Decoded);
    }
    require(cursor.position() == size);
    require(std::equal(store.data(), store.data() + store.size(), again.data()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::size_t width = (data[0] | std::size_t{data[1]} << 8) % 1025;
    const RgbeStore store = storeOf({data + 2, size - 2}, width);
    checkPlanes(store);
    checkFile(store);
    return 0;
}
