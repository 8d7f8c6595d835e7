#include "hdr/engine/rgbe_writer.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "common/engine/bytes.h"
#include "hdr/engine/hdr_error.h"

namespace vrx {
namespace {

constexpr std::size_t kMinRun = 4;
constexpr std::size_t kMaxRun = 127;
constexpr std::size_t kMaxLiteral = 128;
constexpr std::int32_t kMaxWidth = 65535;
constexpr std::uint64_t kScanlineHeaderSize = 4;
constexpr std::size_t kBlockSize = 1 << 18;

std::uint8_t* writeRun(std::size_t length, std::uint8_t value, std::uint8_t* out) {
    *out++ = static_cast<std::uint8_t>(128 + length);
    *out++ = value;
    return out;
}

std::uint8_t* writeLiterals(std::span<const std::uint8_t> bytes, std::uint8_t* out) {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), kMaxLiteral);
        *out++ = static_cast<std::uint8_t>(count);
        std::memcpy(out, bytes.data(), count);
        out += count;
        bytes = bytes.subspan(count);
    }
    return out;
}

/// What stands before a long run, or before the end of the row: one short run, or literals.
std::uint8_t* writeBeforeRun(std::span<const std::uint8_t> bytes, std::uint8_t* out) {
    const bool shortRun = (bytes.size() == 2 || bytes.size() == 3) && bytes.front() == bytes.back() &&
                          bytes[1] == bytes.front();
    return shortRun ? writeRun(bytes.size(), bytes.front(), out) : writeLiterals(bytes, out);
}

/// Where four equal bytes begin, from `from` on; the plane's size where none do.
std::size_t findLongRun(std::span<const std::uint8_t> plane, std::size_t from) {
    const std::uint8_t* p = plane.data();
    std::size_t i = from;
#if defined(__SSE2__)
    for (; i + 16 + kMinRun - 1 <= plane.size(); i += 16) {
        const auto load = [p, i](std::size_t ahead) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i + ahead));
        };
        const __m128i first = load(0);
        const __m128i equal =
            _mm_and_si128(_mm_cmpeq_epi8(first, load(1)),
                          _mm_and_si128(_mm_cmpeq_epi8(first, load(2)), _mm_cmpeq_epi8(first, load(3))));
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(equal));
        if (mask != 0) return i + static_cast<std::size_t>(std::countr_zero(mask));
    }
#endif
    for (; i + kMinRun <= plane.size(); ++i) {
        if (p[i] == p[i + 1] && p[i] == p[i + 2] && p[i] == p[i + 3]) return i;
    }
    return plane.size();
}

/// How many bytes from `from` on equal the first of them, 127 at most.
std::size_t runLength(std::span<const std::uint8_t> plane, std::size_t from) {
    const std::uint8_t* p = plane.data() + from;
    const std::size_t limit = std::min(kMaxRun, plane.size() - from);
    std::size_t length = 1;
#if defined(__SSE2__)
    const __m128i value = _mm_set1_epi8(static_cast<char>(*p));
    for (; length + 16 <= limit; length += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + length));
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, value)));
        if (mask != 0xFFFF) return length + static_cast<std::size_t>(std::countr_one(mask));
    }
#endif
    while (length < limit && p[length] == *p) ++length;
    return length;
}

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
    const auto width = static_cast<std::size_t>(store.dimX());
    *out++ = 2;
    *out++ = 2;
    *out++ = static_cast<std::uint8_t>(width >> 8);
    *out++ = static_cast<std::uint8_t>(width & 0xFF);
    for (int c = 0; c < kRgbeComponents; ++c) out = encodePlane({store.row(c, y), width}, out);
    return out;
}

}  // namespace

std::uint8_t* encodePlane(std::span<const std::uint8_t> plane, std::uint8_t* out) {
    for (std::size_t current = 0; current < plane.size();) {
        const std::size_t run = findLongRun(plane, current);
        out = writeBeforeRun(plane.subspan(current, run - current), out);
        if (run == plane.size()) break;
        const std::size_t length = runLength(plane, run);
        out = writeRun(length, plane[run], out);
        current = run + length;
    }
    return out;
}

std::uint8_t* encodePlaneByBytes(std::span<const std::uint8_t> plane, std::uint8_t* out) {
    const std::size_t size = plane.size();
    std::size_t current = 0;
    while (current < size) {
        std::size_t begin = current;
        std::size_t run = 0;
        std::size_t previousRun = 0;
        while (run < kMinRun && begin < size) {
            begin += run;
            previousRun = run;
            run = 1;
            while (begin + run < size && run < kMaxRun && plane[begin] == plane[begin + run]) ++run;
        }
        if (previousRun > 1 && previousRun == begin - current) {
            out = writeRun(previousRun, plane[current], out);
            current = begin;
        }
        out = writeLiterals(plane.subspan(current, begin - current), out);
        current = begin;
        if (run >= kMinRun) {
            out = writeRun(run, plane[begin], out);
            current += run;
        }
    }
    return out;
}

void encodeRgbe(const RgbeStore& store, std::int32_t dimX, std::int32_t dimY, ByteSink& sink) {
    if (dimY > 0 && (dimX > kMaxWidth || store.empty() || store.dimX() != dimX || store.dimY() != dimY))
        throw fileError();
    const std::string header = headerOf(dimX, dimY);
    sink.write({reinterpret_cast<const std::uint8_t*>(header.data()), header.size()});
    if (dimY == 0) return;

    const auto scanlineBound = static_cast<std::size_t>(
        kScanlineHeaderSize + kRgbeComponents * runLengthBound(static_cast<std::uint64_t>(dimX)));
    Bytes block(std::max(kBlockSize, scanlineBound));
    std::uint8_t* end = block.data();
    for (std::int32_t y = 0; y < dimY; ++y) {
        if (block.size() - static_cast<std::size_t>(end - block.data()) < scanlineBound) {
            sink.write({block.data(), end});
            end = block.data();
        }
        end = writeScanline(store, y, end);
    }
    sink.write({block.data(), end});
}

}  // namespace vrx
