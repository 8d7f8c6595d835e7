// A row is computed in tiles: first the columns of the source that the tile needs, blended between the two
// rows, then the pixels of the target between two of these. Singles come close enough to decide nearly every
// rounding; the few bytes that they cannot decide are computed step by step.
#include "raster/engine/resample_rows.h"

#include <cmath>
#include <cstring>

#include "ground/lanes.h"

namespace vrx::VRX_ROWS {
namespace {

constexpr std::size_t kPixel = 3;

/// The steps themselves: a byte of the target.
std::uint8_t resampled(const ResampleRow& row, const ResampleColumns& columns, std::size_t x,
                       std::size_t channel) {
    const std::size_t first = columns.lefts[x];
    const std::size_t second = first < columns.last ? first + kPixel : columns.last;
    const auto blendAt = [&](std::size_t i) {
        return (1.0 - row.fraction) * row.lower[i] + row.fraction * row.upper[i];
    };
    const double left = blendAt(first + channel);
    const double right = blendAt(second + channel);
    const double value = (1.0 - columns.fractions[x]) * left + columns.fractions[x] * right;
    return static_cast<std::uint8_t>(std::nearbyint(value));
}

void resampleSteps(const ResampleRow& row, const ResampleColumns& columns, std::size_t x, std::size_t end,
                   std::uint8_t* out) {
    for (; x < end; ++x) {
        for (std::size_t c = 0; c < kPixel; ++c) out[x * kPixel + c] = resampled(row, columns, x, c);
    }
}

#if defined(VRX_LANES)

// Each of some eight roundings of a Single on the way to a byte moves it by 2^-17 at most; the steps differ
// from exact arithmetic by next to nothing.
constexpr float kGuard = 0x1p-13F;

/// Bytes of the source blended between two rows, from an offset on.
struct Tile {
    // Behind the last pixel there is one more, and a value that is loaded along with it.
    float values[kResampleTileSize + kPixel + 1];
    std::size_t begin;
};

constexpr std::size_t kVectors = 4;
constexpr std::size_t kBlock = kVectors * kFloatLanes / 4;

/// Four values for each pixel, of which the last is another pixel's.
__m128 blendPixel(const Tile& tile, const ResampleColumns& columns, std::size_t x) {
    const float* const place = tile.values + (columns.lefts[x] - tile.begin);
    const __m128 left = _mm_loadu_ps(place);
    const __m128 distance = _mm_sub_ps(_mm_loadu_ps(place + kPixel), left);
    return _mm_add_ps(left, _mm_mul_ps(distance, _mm_set1_ps(columns.singles[x])));
}

void storeFour(std::uint8_t* out, __m128i ordered) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), ordered);
    const int rest = _mm_cvtsi128_si32(_mm_unpackhi_epi64(ordered, ordered));
    std::memcpy(out + 8, &rest, sizeof rest);
}

#if defined(__AVX2__)

Floats widen(const std::uint8_t* bytes) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))));
}

/// The pixels i and i + 4 of a block.
Floats blendPixels(const Tile& tile, const ResampleColumns& columns, std::size_t x) {
    return _mm256_set_m128(blendPixel(tile, columns, x + 4), blendPixel(tile, columns, x));
}

void storePixels(std::uint8_t* out, Integers packed) {
    const __m128i order = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    const Integers ordered = _mm256_shuffle_epi8(packed, _mm256_broadcastsi128_si256(order));
    storeFour(out, _mm256_castsi256_si128(ordered));
    storeFour(out + 4 * kPixel, _mm256_extracti128_si256(ordered, 1));
}

#else

Floats widen(const std::uint8_t* bytes) {
    int four;
    std::memcpy(&four, bytes, sizeof four);
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(four), zeros()), zeros()));
}

Floats blendPixels(const Tile& tile, const ResampleColumns& columns, std::size_t x) {
    return blendPixel(tile, columns, x);
}

void storePixels(std::uint8_t* out, Integers packed) {
    const __m128i even = _mm_and_si128(packed, _mm_set1_epi64x(0x0000000000FFFFFF));
    const __m128i odd = _mm_and_si128(packed, _mm_set1_epi64x(0x00FFFFFF00000000));
    const __m128i pairs = _mm_or_si128(even, _mm_srli_epi64(odd, 8));
    const __m128i second = _mm_slli_si128(_mm_srli_si128(pairs, 8), 6);
    storeFour(out, _mm_or_si128(_mm_move_epi64(pairs), second));
}

#endif

void blendBytes(const std::uint8_t* lower, const std::uint8_t* upper, std::size_t size, double fraction,
                float* values) {
    const auto lowerWeight = static_cast<float>(1.0 - fraction);
    const auto upperWeight = static_cast<float>(fraction);
    std::size_t i = 0;
    for (; i + kFloatLanes <= size; i += kFloatLanes) {
        const Floats below = VRX_LANES(mul_ps)(widen(lower + i), VRX_LANES(set1_ps)(lowerWeight));
        const Floats above = VRX_LANES(mul_ps)(widen(upper + i), VRX_LANES(set1_ps)(upperWeight));
        VRX_LANES(storeu_ps)(values + i, VRX_LANES(add_ps)(below, above));
    }
    for (; i < size; ++i) {
        values[i] = static_cast<float>(lower[i]) * lowerWeight + static_cast<float>(upper[i]) * upperWeight;
    }
}

/// The arithmetic of one row of the target.
class RowResampler {
  public:
    RowResampler(const ResampleRow& row, const ResampleColumns& columns)
        : row_(row), columns_(columns), doubtful_(VRX_LANES(set1_ps)(row.exact ? 1.0F : 0.5F - kGuard)) {}

    void resample(std::uint8_t* out) const {
        Tile tile;
        std::size_t x = 0;
        for (std::size_t i = 0; i < columns_.tileCount; ++i) {
            const std::size_t end = columns_.tileEnds[i];
            if (end - x < kBlock) {
                resampleSteps(row_, columns_, x, end, out);
            } else {
                fill(tile, columns_.lefts[x], columns_.lefts[end - 1] + 2 * kPixel);
                for (; x + kBlock < end; x += kBlock) resampleBlock(tile, x, out);
                // Overlaps the one before it.
                resampleBlock(tile, end - kBlock, out);
            }
            x = end;
        }
    }

  private:
    void fill(Tile& tile, std::size_t begin, std::size_t end) const {
        const std::size_t rowEnd = columns_.last + kPixel;
        const std::size_t size = (end < rowEnd ? end : rowEnd) - begin;
        blendBytes(row_.lower + begin, row_.upper + begin, size, row_.fraction, tile.values);
        std::memcpy(tile.values + size, tile.values + size - kPixel, kPixel * sizeof(float));
        tile.values[size + kPixel] = 0.0F;
        tile.begin = begin;
    }

    void resampleBlock(const Tile& tile, std::size_t x, std::uint8_t* out) const {
        Integers nearest[kVectors];
        Floats rest[kVectors];
        Floats farthest = VRX_LANES(set1_ps)(0.0F);
        for (std::size_t i = 0; i < kVectors; ++i) {
            const Floats values = blendPixels(tile, columns_, x + i);
            nearest[i] = VRX_LANES(cvtps_epi32)(values);
            rest[i] = restOf(values, nearest[i]);
            farthest = VRX_LANES(max_ps)(farthest, rest[i]);
        }
        const Integers first = VRX_LANES(packs_epi32)(nearest[0], nearest[1]);
        const Integers second = VRX_LANES(packs_epi32)(nearest[2], nearest[3]);
        storePixels(out + x * kPixel, VRX_LANES(packus_epi16)(first, second));
        if (doubtsIn(farthest) == 0) return;
        for (std::size_t i = 0; i < kVectors; ++i) {
            const unsigned doubts = doubtsIn(rest[i]);
            decide(x + i, doubts, out);
            decide(x + i + 4, doubts >> 4, out);
        }
    }

    [[nodiscard]] unsigned doubtsIn(Floats rest) const {
        return static_cast<unsigned>(VRX_LANES(movemask_ps)(greater(rest, doubtful_)));
    }

    void decide(std::size_t x, unsigned doubts, std::uint8_t* out) const {
        for (std::size_t c = 0; c < kPixel; ++c) {
            if ((doubts >> c & 1) != 0) out[x * kPixel + c] = resampled(row_, columns_, x, c);
        }
    }

    const ResampleRow& row_;
    const ResampleColumns& columns_;
    Floats doubtful_;
};

#endif

}  // namespace

void resampleRow(const ResampleRow& row, const ResampleColumns& columns, std::uint8_t* out) {
#if defined(VRX_LANES)
    RowResampler(row, columns).resample(out);
#else
    resampleSteps(row, columns, 0, columns.count, out);
#endif
}

}  // namespace vrx::VRX_ROWS
