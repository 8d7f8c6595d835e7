// Any pixels written as a file read back the same, and are painted the same by all kernels: two bytes of
// width, then the store's planes row by row.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "ground/processor.h"
#include "hdr/engine/auto_exposition.h"
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"
#include "hdr/engine/rgbe_writer.h"
#include "plane_codes.h"
#include "run_length_definition.h"

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

void checkPlanes(const RgbeStore& store) {
    for (std::int32_t y = 0; y < store.dimY(); ++y) {
        for (int c = 0; c < kRgbeComponents; ++c) {
            const std::vector<std::uint8_t> plane(store.row(c, y), store.row(c, y) + store.dimX());
            const std::vector<std::uint8_t> codes = test::definedCodes(plane);
            for (const auto encode : test::planeEncoders()) require(test::codesBy(encode, plane) == codes);
        }
    }
}

void checkFile(const RgbeStore& store) {
    MemorySink file;
    encodeRgbe(store, file);
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

using Kernel = void (*)(const ExposureRow&, const RowExposition&, std::uint8_t*);

std::vector<std::uint8_t> paintedBy(Kernel kernel, const ExposureRow& row, const RowExposition& exposition) {
    std::vector<std::uint8_t> bgr(3 * row.width);
    kernel(row, exposition, bgr.data());
    return bgr;
}

void checkPainting(const RgbeStore& store) {
    static const ToneTables tables = [] {
        ToneTables built;
        built.build(2.0F, 1.0F / 2.2F);
        return built;
    }();
    if (!hasAvx2() || store.dimX() == 0) return;
    RowLuminance a{1.0e9, -1.0e9};
    RowLuminance b = a;
    for (std::int32_t y = 0; y < store.dimY(); ++y) {
        const ExposureRow row{tables.singles(), store.row(0, y), store.row(1, y),
                              store.row(2, y),     store.row(3, y), static_cast<std::size_t>(store.dimX())};
        baseline::widenLuminance(row, a);
        avx2::widenLuminance(row, b);
        require(a.minimum == b.minimum && a.maximum == b.maximum);
        for (const RowExposition& exposition :
             {RowExposition{RowOperator::WhitePoint, 0.0, 1.0, 1.0 / (a.maximum * a.maximum)},
              RowExposition{RowOperator::Stretch, a.minimum, a.maximum - a.minimum + 1e-3, 0.0}}) {
            require(paintedBy(baseline::exposeRow, row, exposition) ==
                    paintedBy(avx2::exposeRow, row, exposition));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::size_t width = (data[0] | std::size_t{data[1]} << 8) % 1025;
    const RgbeStore store = storeOf({data + 2, size - 2}, width);
    checkPlanes(store);
    checkFile(store);
    checkPainting(store);
    return 0;
}
