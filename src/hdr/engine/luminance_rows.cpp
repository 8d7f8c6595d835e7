// The range of luminances of a row, block by block; most blocks are seen to lie within the range so far
// without a look at their pixels.
#include <algorithm>
#include <cstring>

#include "ground/lanes.h"
#include "hdr/engine/auto_exposition_rows.h"
#include "hdr/engine/exposure_colours.h"

namespace vrx::VRX_ROWS {
namespace {

/// Widens the range by the luminances of a block.
void widenByBlock(RowLuminance& luminance, const ExposureRow& row, std::size_t x, std::size_t count) {
    Colours colours;
    Doubles minimum = Doubles{} + luminance.minimum;
    Doubles maximum = Doubles{} + luminance.maximum;
    fetch(colours, row, x, count);
    for (std::size_t i = 0; i < kBlock; i += kDoubleLanes) {
        Pixels pixels;
        Doubles value;
        load(pixels, colours, i);
        // The table's values are never negative, so a pixel without luminance is black, and 0 here as well.
        dot(value, kRgbToY, pixels.r, pixels.g, pixels.b);
        smaller(minimum, value, minimum);
        larger(maximum, value, maximum);
    }
    for (std::size_t i = 0; i < kDoubleLanes; ++i) {
        luminance.minimum = std::min(luminance.minimum, static_cast<double>(minimum[i]));
        luminance.maximum = std::max(luminance.maximum, static_cast<double>(maximum[i]));
    }
}

#if defined(__SSE2__)

/// The least and the most bytes of a block of four planes.
struct Corners {
    std::uint8_t least[4];
    std::uint8_t most[4];
};

/// Two planes' bytes side by side, reduced to half by `reduce`, down to one of each plane.
template <class Reduce>
VRX_INLINE void reducePlanes(const __m128i (&planes)[4], std::uint8_t (&bytes)[4], Reduce reduce) {
    const __m128i rg =
        reduce(_mm_unpacklo_epi8(planes[0], planes[1]), _mm_unpackhi_epi8(planes[0], planes[1]));
    const __m128i be =
        reduce(_mm_unpacklo_epi8(planes[2], planes[3]), _mm_unpackhi_epi8(planes[2], planes[3]));
    __m128i all = reduce(_mm_unpacklo_epi16(rg, be), _mm_unpackhi_epi16(rg, be));
    all = reduce(all, _mm_srli_si128(all, 8));
    all = reduce(all, _mm_srli_si128(all, 4));
    const int four = _mm_cvtsi128_si32(all);
    std::memcpy(bytes, &four, sizeof four);
}

VRX_INLINE void findCorners(Corners& corners, const ExposureRow& row, std::size_t x) {
    const std::uint8_t* const planes[] = {row.r + x, row.g + x, row.b + x, row.e + x};
    __m128i least[4], most[4];
    for (std::size_t c = 0; c < 4; ++c) {
        const auto* bytes = reinterpret_cast<const __m128i*>(planes[c]);
        least[c] = most[c] = _mm_loadu_si128(bytes);
        for (std::size_t i = 1; i < kBlock / sizeof(__m128i); ++i) {
            const __m128i more = _mm_loadu_si128(bytes + i);
            least[c] = _mm_min_epu8(least[c], more);
            most[c] = _mm_max_epu8(most[c], more);
        }
    }
    reducePlanes(least, corners.least, [](__m128i a, __m128i b) { return _mm_min_epu8(a, b); });
    reducePlanes(most, corners.most, [](__m128i a, __m128i b) { return _mm_max_epu8(a, b); });
}

VRX_INLINE double luminanceOf(const ExposureRow& row, const std::uint8_t (&rgbe)[4]) {
    const float* singles = row.singles + (std::size_t{rgbe[3]} << 8);
    return kRgbToY[0] * singles[rgbe[0]] + kRgbToY[1] * singles[rgbe[1]] + kRgbToY[2] * singles[rgbe[2]];
}

/// Whether no pixel of a whole block can widen the range. The table rises with mantissas and exponents alike,
/// or falls with both, and products by positive factors, sums and roundings keep order: so no luminance is
/// outside those of the two colours made of the least and of the most bytes.
bool liesWithin(const RowLuminance& luminance, const ExposureRow& row, std::size_t x) {
    Corners corners;
    findCorners(corners, row, x);
    const double one = luminanceOf(row, corners.least);
    const double other = luminanceOf(row, corners.most);
    return std::min(one, other) >= luminance.minimum && std::max(one, other) <= luminance.maximum;
}

#else

bool liesWithin(const RowLuminance&, const ExposureRow&, std::size_t) { return false; }

#endif

}  // namespace

void widenLuminance(const ExposureRow& row, RowLuminance& luminance) {
    for (std::size_t x = 0; x < row.width; x += kBlock) {
        const std::size_t count = std::min(kBlock, row.width - x);
        if (count < kBlock || !liesWithin(luminance, row, x)) widenByBlock(luminance, row, x, count);
    }
}

}  // namespace vrx::VRX_ROWS
