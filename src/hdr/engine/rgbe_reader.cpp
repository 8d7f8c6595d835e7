#include "hdr/engine/rgbe_reader.h"

#include <algorithm>
#include <cstring>

namespace vrx {
namespace {

constexpr std::uint8_t kRunLengthMark = 2;
constexpr std::size_t kMaxLiteral = 128;

/// One run into the plane from column x on; the columns that it covers, cut off or not.
std::size_t readRun(RgbeCursor& file, std::uint8_t* plane, std::size_t x, std::size_t width) {
    const std::size_t code = file.next();
    if (code <= kMaxLiteral) {
        const std::size_t count = std::min(code, width - x);
        std::memcpy(plane + x, file.peek(count), count);
        file.skip(code);
        return code;
    }
    const std::size_t length = code - kMaxLiteral;
    std::memset(plane + x, file.next(), std::min(length, width - x));
    return length;
}

}  // namespace

ScanlineResult readScanline(RgbeCursor& file, RgbeStore& store, std::int32_t row, std::uint32_t maxRuns) {
    const bool runLength = file.next() == kRunLengthMark;
    // The second 2 and the width repeated in the file are not looked at.
    for (int i = 0; i < 3; ++i) file.next();
    if (!runLength) return ScanlineResult::NotRunLength;

    const auto width = static_cast<std::size_t>(store.dimX());
    std::uint32_t runs = 0;
    for (int c = 0; c < kRgbeComponents; ++c) {
        std::uint8_t* plane = store.row(c, row);
        for (std::size_t x = 0; x < width;) {
            x += readRun(file, plane, x, width);
            if (++runs == maxRuns) return ScanlineResult::OutOfRuns;
        }
    }
    return ScanlineResult::Decoded;
}

}  // namespace vrx
