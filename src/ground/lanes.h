// Vector instructions for kernels that are compiled twice, for SSE2 and for AVX2: VRX_LANES(add_epi16) is the
// instruction of that name on all lanes there are. VRX_ROWS names the namespace, so that the two never mix.
// Other processors have no VRX_LANES.
#pragma once

#if defined(__SSE2__)

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace vrx::VRX_ROWS {

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

}  // namespace vrx::VRX_ROWS

#endif
