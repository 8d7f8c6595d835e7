#include "hdr/engine/rgbe_reader.h"

#include <algorithm>
#include <array>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

#if defined(__SSE2__)

// Real pictures have short codes whose kinds no processor can predict. So each code is decoded without a
// branch: 128 bytes, the most that a code covers, are written whatever it covers, and the next code writes
// over the rest.

constexpr std::size_t kMostOut = 128;
constexpr std::size_t kMostIn = 1 + kMostOut;
constexpr std::size_t kPiece = 2048;

/// Decodes the code at `in`, which has kMostIn bytes, to `out`, which has room for kMostOut; the columns
/// covered.
[[gnu::always_inline]] inline std::size_t decodeCode(const std::uint8_t*& in, std::uint8_t* out) {
    const std::size_t code = *in;
    const bool repeat = code > kMaxLiteral;
    // By a product: without it 32-bit code stores the byte and loads four, which waits for the store.
    const __m128i value = _mm_set1_epi32(static_cast<int>(in[1] * 0x01010101U));
    const __m128i repeated = _mm_set1_epi32(-static_cast<int>(repeat));
    for (std::size_t i = 0; i < kMostOut; i += sizeof value) {
        const __m128i literals = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 1 + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i),
                         _mm_or_si128(_mm_and_si128(repeated, value), _mm_andnot_si128(repeated, literals)));
    }
    const std::uint8_t* const behindLiterals = in + code + 1;
    const std::uint8_t* const behindRun = in + 2;
    in = __builtin_expect_with_probability(repeat, 1, 0.5) ? behindRun : behindLiterals;
    return code - (static_cast<std::size_t>(repeat) << 7);
}

/// As many codes into the plane as can be decoded so; the columns that they cover, beyond the row's end where
/// the last one passes it. A piece of the row is made beside it, where there is room behind its end.
std::size_t readCodes(RgbeCursor& file, std::uint8_t* plane, std::size_t width) {
    const std::span<const std::uint8_t> rest = file.rest();
    if (rest.size() < kMostIn) return 0;
    const std::uint8_t* in = rest.data();
    const std::uint8_t* const last = in + (rest.size() - kMostIn);
    std::array<std::uint8_t, kPiece + kMostOut> piece;
    std::size_t begin = 0;
    std::size_t x = 0;
    while (x < width && in <= last) {
        const std::size_t end = std::min(width, begin + kPiece);
        while (x < end && in <= last) x += decodeCode(in, piece.data() + (x - begin));
        const std::size_t done = std::min(x, width);
        std::memcpy(plane + begin, piece.data(), done - begin);
        begin = done;
    }
    file.skip(static_cast<std::size_t>(in - rest.data()));
    return x;
}

#else

std::size_t readCodes(RgbeCursor&, std::uint8_t*, std::size_t) { return 0; }

#endif

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
        for (std::size_t x = maxRuns == kAllRuns ? readCodes(file, plane, width) : 0; x < width;) {
            x += readRun(file, plane, x, width);
            if (++runs == maxRuns) return ScanlineResult::OutOfRuns;
        }
    }
    return ScanlineResult::Decoded;
}

}  // namespace vrx
