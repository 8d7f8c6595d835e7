// Vector instructions for kernels that are compiled twice, for SSE2 and for AVX2: VRX_LANES(add_epi16) is the
// instruction of that name on all lanes there are. VRX_ROWS names the namespace, so that the two never mix.
// Other processors have no VRX_LANES. Doubles are the compiler's own vectors, on every processor.
#pragma once

#if defined(__SSE2__)
#include <immintrin.h>
#endif

#include <cstddef>
#include <cstdint>

// Vectors of Doubles travel by reference only, so that no calling convention depends on the instructions.
#define VRX_INLINE [[gnu::always_inline]] inline

namespace vrx::VRX_ROWS {

#if defined(__AVX2__)
inline constexpr std::size_t kDoubleLanes = 4;
#else
inline constexpr std::size_t kDoubleLanes = 2;
#endif

using Doubles = double __attribute__((vector_size(kDoubleLanes * sizeof(double))));
using DoubleBits = std::uint64_t __attribute__((vector_size(kDoubleLanes * sizeof(std::uint64_t))));

// The three operations for which the compiler does not find the instruction by itself. Of two values that do
// not compare, the second is taken.
VRX_INLINE void load(Doubles& lanes, const float* values) {
#if defined(__AVX2__)
    lanes = _mm256_cvtps_pd(_mm_loadu_ps(values));
#elif defined(__SSE2__)
    lanes = _mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(values))));
#else
    for (std::size_t i = 0; i < kDoubleLanes; ++i) lanes[i] = values[i];
#endif
}

VRX_INLINE void smaller(Doubles& result, const Doubles& a, const Doubles& b) {
#if defined(__AVX2__)
    result = _mm256_min_pd(a, b);
#elif defined(__SSE2__)
    result = _mm_min_pd(a, b);
#else
    result = a < b ? a : b;
#endif
}

VRX_INLINE void larger(Doubles& result, const Doubles& a, const Doubles& b) {
#if defined(__AVX2__)
    result = _mm256_max_pd(a, b);
#elif defined(__SSE2__)
    result = _mm_max_pd(a, b);
#else
    result = a > b ? a : b;
#endif
}

#if defined(__SSE2__)
#if defined(__AVX2__)

#define VRX_LANES(name) _mm256_##name
using Integers = __m256i;
using Floats = __m256;

inline Integers loadIntegers(const void* place) {
    return _mm256_loadu_si256(static_cast<const Integers*>(place));
}
inline void storeIntegers(void* place, Integers lanes) {
    _mm256_storeu_si256(static_cast<Integers*>(place), lanes);
}
inline Integers zeros() { return _mm256_setzero_si256(); }
inline Integers both(Integers a, Integers b) { return _mm256_and_si256(a, b); }
inline Integers eitherOf(Integers a, Integers b) { return _mm256_or_si256(a, b); }
inline Floats greater(Floats a, Floats b) { return _mm256_cmp_ps(a, b, _CMP_GT_OQ); }
inline Floats notLess(Floats a, Floats b) { return _mm256_cmp_ps(a, b, _CMP_NLT_UQ); }
inline Integers bitsOf(Floats lanes) { return _mm256_castps_si256(lanes); }

#else

#define VRX_LANES(name) _mm_##name
using Integers = __m128i;
using Floats = __m128;

inline Integers loadIntegers(const void* place) {
    return _mm_loadu_si128(static_cast<const Integers*>(place));
}
inline void storeIntegers(void* place, Integers lanes) {
    _mm_storeu_si128(static_cast<Integers*>(place), lanes);
}
inline Integers zeros() { return _mm_setzero_si128(); }
inline Integers both(Integers a, Integers b) { return _mm_and_si128(a, b); }
inline Integers eitherOf(Integers a, Integers b) { return _mm_or_si128(a, b); }
inline Floats greater(Floats a, Floats b) { return _mm_cmpgt_ps(a, b); }
inline Floats notLess(Floats a, Floats b) { return _mm_cmpnlt_ps(a, b); }
inline Integers bitsOf(Floats lanes) { return _mm_castps_si128(lanes); }

#endif

inline constexpr std::size_t kFloatLanes = sizeof(Floats) / sizeof(float);
inline constexpr std::size_t kWordLanes = sizeof(Integers) / sizeof(std::uint16_t);

/// How far values are from the nearest integers, which are given.
inline Floats restOf(Floats values, Integers nearest) {
    const Floats rest = VRX_LANES(sub_ps)(values, VRX_LANES(cvtepi32_ps)(nearest));
    return VRX_LANES(andnot_ps)(VRX_LANES(set1_ps)(-0.0F), rest);
}

#endif

}  // namespace vrx::VRX_ROWS
