// Blur is plain arithmetic of 16-bit integers, which the compiler turns into vectors. Smoothing takes blocks
// of bytes in integers and Floats that come close enough to decide nearly every rounding; the few bytes that
// they cannot decide are computed step by step.
#include "effects/engine/smoothing_rows.h"

#include <cmath>

#include "ground/lanes.h"

namespace vrx::VRX_ROWS {
namespace {

// A pixel's neighbours in its row are this many bytes away.
constexpr std::size_t kPixel = 3;

/// Sums of a row's bytes with their neighbours, weighted 1, 2, 1.
struct BlurSums {
    std::uint16_t* row;    // of the row to blur
    std::uint16_t* below;  // of the row before it, and twice those of the row to blur
};

std::uint16_t sumOf(const std::uint8_t* byte) {
    return static_cast<std::uint16_t>(byte[0] * 2 + *(byte - kPixel) + byte[kPixel]);
}

void startBlur(const std::uint8_t* first, const std::uint8_t* second, std::size_t size, BlurSums sums) {
    for (std::size_t i = kPixel; i < size - kPixel; ++i) {
        sums.row[i] = sumOf(second + i);
        sums.below[i] = static_cast<std::uint16_t>(sumOf(first + i) + 2 * sums.row[i]);
    }
}

/// Blurs a row whose own bytes are needed no more, and goes on to the next one.
void blurRow(const std::uint8_t* __restrict next, std::size_t size, std::uint16_t* __restrict row,
             std::uint16_t* __restrict below, std::uint8_t* __restrict out) {
    for (std::size_t i = kPixel; i < size - kPixel; ++i) {
        const std::uint16_t above = sumOf(next + i);
        const auto sum = static_cast<std::uint16_t>(below[i] + above);
        below[i] = static_cast<std::uint16_t>(row[i] + 2 * above);
        row[i] = above;
        // A 16th, halves to even.
        out[i] = static_cast<std::uint8_t>(static_cast<std::uint16_t>(sum + 7 + ((sum >> 4) & 1)) >> 4);
    }
}

/// The row to smooth between its neighbours, all as they were; each byte is shifted by kShift.
struct Window {
    std::uint16_t* rows[3];
};

// Small enough for 16-bit integers, and averages of two in place of sums never round.
constexpr int kShift = 7;

void fetch(const std::uint8_t* row, std::size_t size, std::uint16_t* __restrict words) {
    for (std::size_t i = 0; i < size; ++i) words[i] = static_cast<std::uint16_t>(row[i] << kShift);
}

/// The steps themselves: Singles that come from arithmetic of Doubles.
std::uint8_t smoothed(const Window& window, std::size_t i) {
    constexpr int kWeights[] = {1, 2, 1};
    int near[3][3];
    int sum = 0;
    for (std::size_t y = 0; y < 3; ++y) {
        for (std::size_t x = 0; x < 3; ++x) {
            near[y][x] = window.rows[y][i + x * kPixel - kPixel] >> kShift;
            sum += near[y][x] * kWeights[y] * kWeights[x];
        }
    }
    const auto mean = static_cast<float>(sum / 16.0);
    double squares = 0.0;
    for (const auto& row : near) {
        for (const double value : row) squares += std::nearbyint((value - mean) * (value - mean));
    }
    const auto spread = static_cast<float>(std::fmin(squares / 36.0, 255.0));
    const auto alpha = static_cast<float>(std::fmin(spread / 255.0 * 3.0, 1.0));
    const auto value = static_cast<float>(double{alpha} * near[1][1] + (1.0 - alpha) * mean);
    return static_cast<std::uint8_t>(std::nearbyint(value));
}

#if defined(VRX_LANES)

// With the weighted sum S, the centre p and the sum of rounded squares Q, the result before rounding is
// (3060 S + Q (16 p - S)) / 48960, where Q counts as 3060 at most. All integers here are exact.
constexpr short kMostSquares = 3060;
constexpr float kToResult = 1.0F / (8 * 16 * kMostSquares);

// The steps come within 2^-16 of that: two roundings of alpha, times a distance of 56 at most where Q does
// not count as 3060, and one of the result. The Floats come within 2^-15, and kToResult is off by so little
// (less than 2^-25 of itself) that exact halves come out as halves. Unless both lie on the same side of a
// half for certain, the steps decide.
constexpr float kDoubtful = 0.5F - 0x1p-14F;

Integers average(Integers a, Integers b) { return VRX_LANES(avg_epu16)(a, b); }

Integers averageOf(const std::uint16_t* word) {
    return average(average(loadIntegers(word - kPixel), loadIntegers(word + kPixel)), loadIntegers(word));
}

/// Adds the squares of differences that are given 8 times too large, each square rounded. There are no
/// halves: 128 is no square modulo 256. Sums beyond kMostSquares may come out too small, but not below it.
Integers addSquare(Integers squares, Integers differences) {
    const Integers twice = VRX_LANES(adds_epi16)(differences, differences);
#if defined(__AVX2__)
    const Integers square = _mm256_mulhrs_epi16(differences, twice);
#else
    const Integers half = _mm_srli_epi16(_mm_mullo_epi16(twice, twice), 15);
    const Integers square = _mm_add_epi16(_mm_mulhi_epi16(twice, twice), half);
#endif
    return VRX_LANES(adds_epi16)(squares, square);
}

Integers squaresOf(const Window& window, std::size_t i, Integers mean) {
    Integers squares = zeros();
    for (const std::uint16_t* row : window.rows) {
        const std::uint16_t* const word = row + i;
        squares = addSquare(squares, VRX_LANES(sub_epi16)(mean, loadIntegers(word - kPixel)));
        squares = addSquare(squares, VRX_LANES(sub_epi16)(mean, loadIntegers(word)));
        squares = addSquare(squares, VRX_LANES(sub_epi16)(mean, loadIntegers(word + kPixel)));
    }
    return VRX_LANES(min_epi16)(squares, VRX_LANES(set1_epi16)(kMostSquares));
}

Floats blend(Integers meansAndDifferences, Integers weights) {
    const Integers scaled = VRX_LANES(madd_epi16)(meansAndDifferences, weights);
    return VRX_LANES(mul_ps)(VRX_LANES(cvtepi32_ps)(scaled), VRX_LANES(set1_ps)(kToResult));
}

void storeBytes(std::uint8_t* bytes, Integers words) {
    const Integers packed = VRX_LANES(packus_epi16)(words, words);
#if defined(__AVX2__)
    const Integers ordered = _mm256_permute4x64_epi64(packed, 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm256_castsi256_si128(ordered));
#else
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), packed);
#endif
}

/// Smooths kWordLanes bytes. Two bits of the result are set for each byte that the steps must decide.
unsigned smoothBlock(const Window& window, std::size_t i, std::uint8_t* out) {
    const Integers outer = average(averageOf(window.rows[0] + i), averageOf(window.rows[2] + i));
    const Integers mean = average(outer, averageOf(window.rows[1] + i));
    const Integers squares = squaresOf(window, i, mean);
    const Integers difference = VRX_LANES(sub_epi16)(loadIntegers(window.rows[1] + i), mean);

    const Integers full = VRX_LANES(set1_epi16)(kMostSquares);
    const Floats low =
        blend(VRX_LANES(unpacklo_epi16)(mean, difference), VRX_LANES(unpacklo_epi16)(full, squares));
    const Floats high =
        blend(VRX_LANES(unpackhi_epi16)(mean, difference), VRX_LANES(unpackhi_epi16)(full, squares));
    const Integers lowResult = VRX_LANES(cvtps_epi32)(low);
    const Integers highResult = VRX_LANES(cvtps_epi32)(high);
    storeBytes(out + i, VRX_LANES(packs_epi32)(lowResult, highResult));

    const Floats doubtful = VRX_LANES(set1_ps)(kDoubtful);
    const Integers lowDoubt = bitsOf(greater(restOf(low, lowResult), doubtful));
    const Integers highDoubt = bitsOf(greater(restOf(high, highResult), doubtful));
    // Without squares the steps are exact, and so are the Floats.
    const Integers doubt =
        both(VRX_LANES(packs_epi32)(lowDoubt, highDoubt), VRX_LANES(cmpgt_epi16)(squares, zeros()));
    return static_cast<unsigned>(VRX_LANES(movemask_epi8)(doubt));
}

[[gnu::noinline]] void decide(const Window& window, std::size_t i, unsigned doubt, std::uint8_t* out) {
    for (; doubt != 0; doubt >>= 2, ++i) {
        if ((doubt & 1) != 0) out[i] = smoothed(window, i);
    }
}

/// As many blocks as cover the bytes from `begin` to `end`; the last one overlaps the one before it. Returns
/// where the blocks end: at `begin` where the bytes do not fill one.
std::size_t smoothBlocks(const Window& window, std::size_t begin, std::size_t end, std::uint8_t* out) {
    if (end - begin < kWordLanes) return begin;
    const std::size_t last = end - kWordLanes;
    for (std::size_t i = begin;; i = i + kWordLanes < last ? i + kWordLanes : last) {
        const unsigned doubt = smoothBlock(window, i, out);
        if (doubt != 0) decide(window, i, doubt, out);
        if (i == last) return end;
    }
}

#else

std::size_t smoothBlocks(const Window&, std::size_t begin, std::size_t, std::uint8_t*) { return begin; }

#endif

void smoothRow(const Window& window, std::size_t size, std::uint8_t* out) {
    const std::size_t end = size - kPixel;
    for (std::size_t i = smoothBlocks(window, kPixel, end, out); i < end; ++i) out[i] = smoothed(window, i);
}

}  // namespace

void blurRows(const SmoothingRows& rows) {
    const BlurSums sums{rows.work, rows.work + rows.size};
    std::uint8_t* row = rows.pixels + rows.stride;
    startBlur(row, row + rows.stride, rows.size, sums);
    for (std::size_t y = 2; y + 1 < rows.count; ++y) {
        row += rows.stride;
        blurRow(row + rows.stride, rows.size, sums.row, sums.below, row);
    }
}

void medianCutRows(const SmoothingRows& rows) {
    Window window{{rows.work, rows.work + rows.size, rows.work + 2 * rows.size}};
    std::uint8_t* row = rows.pixels + rows.stride;
    fetch(row, rows.size, window.rows[0]);
    fetch(row + rows.stride, rows.size, window.rows[1]);
    for (std::size_t y = 2; y + 1 < rows.count; ++y) {
        row += rows.stride;
        fetch(row + rows.stride, rows.size, window.rows[2]);
        smoothRow(window, rows.size, row);
        window = {{window.rows[1], window.rows[2], window.rows[0]}};
    }
}

}  // namespace vrx::VRX_ROWS
