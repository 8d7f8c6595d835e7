// The header and the scanlines of any bytes as a Radiance file, without a host: both ways through a scanline,
// many bytes at a time and code by code, must come to the same bytes, ends and failures.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"

namespace {

using namespace vrx;

/// What libFuzzer's inputs can fill; what a larger picture's zero bytes cost is no test of the decoder.
constexpr std::uint64_t kMostPixels = 1U << 14;

void require(bool condition) {
    if (!condition) std::abort();
}

/// What a file's rows come to by one of the two ways.
struct Decoded {
    RgbeStore store;
    bool failed = false;
    std::size_t position = 0;

    Decoded(std::span<const std::uint8_t> bytes, std::uint32_t maxRuns) {
        RgbeCursor cursor(bytes, 1);
        try {
            const Resolution size = readResolution(cursor);
            require(size.dimX >= 0 && size.dimY >= 0);
            const auto columns = static_cast<std::uint64_t>(size.dimX) + 1;
            if (columns * (static_cast<std::uint64_t>(size.dimY) + 1) > kMostPixels) return;
            store.reset(size.dimX, size.dimY);
            for (std::int32_t y = 0; y < size.dimY; ++y) {
                if (readScanline(cursor, store, y, maxRuns) != ScanlineResult::Decoded) throw wrongFileType();
            }
            position = cursor.position();
        } catch (const Error& error) {
            require(error.number == wrongFileType().number);
            failed = true;
        }
    }
};

/// A column and a row stand behind the picture for hosts; no scanline reaches them.
void checkThatNothingIsBehindThePicture(const RgbeStore& store) {
    if (store.empty()) return;
    for (int c = 0; c < kRgbeComponents; ++c) {
        for (std::int32_t y = 0; y < store.dimY(); ++y) require(store.row(c, y)[store.dimX()] == 0);
        const std::uint8_t* const last = store.row(c, store.dimY());
        require(std::all_of(last, last + store.stride(), [](std::uint8_t byte) { return byte == 0; }));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Of exactly this size, so that the sanitizer sees every step beyond the zero byte.
    Bytes bytes(size + 1);
    std::copy(data, data + size, bytes.data());
    bytes.data()[size] = 0;
    const Decoded fast(bytes.span(), kAllRuns);
    const Decoded exact(bytes.span(), kAllRuns - 1);
    require(fast.failed == exact.failed && fast.position == exact.position);
    require(fast.store.size() == exact.store.size());
    require(std::equal(fast.store.data(), fast.store.data() + fast.store.size(), exact.store.data()));
    checkThatNothingIsBehindThePicture(fast.store);
    return 0;
}
