// Comparisons, selections, roots, quotients and conversions of float vectors, for formulas that are
// written once for all widths: every operation here also exists for a single double, lanes 1.
#pragma once

#include "frame/simd/float256.hpp"

namespace keps {

// clang-format off
KEPS_INLINE f64x4 operator&(f64x4 a, f64x4 b) { return {_mm256_and_pd(a.v, b.v)}; }
KEPS_INLINE f64x4 operator|(f64x4 a, f64x4 b) { return {_mm256_or_pd(a.v, b.v)}; }
KEPS_INLINE f64x4 operator^(f64x4 a, f64x4 b) { return {_mm256_xor_pd(a.v, b.v)}; }
// a without b's bits.
KEPS_INLINE f64x4 without(f64x4 a, f64x4 b) { return {_mm256_andnot_pd(b.v, a.v)}; }
KEPS_INLINE f32x8 without(f32x8 a, f32x8 b) { return {_mm256_andnot_ps(b.v, a.v)}; }

KEPS_INLINE f32x8 operator/(f32x8 a, f32x8 b) { return {_mm256_div_ps(a.v, b.v)}; }
KEPS_INLINE f64x4 operator/(f64x4 a, f64x4 b) { return {_mm256_div_pd(a.v, b.v)}; }
KEPS_INLINE f32x8 root(f32x8 a) { return {_mm256_sqrt_ps(a.v)}; }
KEPS_INLINE f64x4 root(f64x4 a) { return {_mm256_sqrt_pd(a.v)}; }
KEPS_INLINE f64x4 min(f64x4 a, f64x4 b) { return {_mm256_min_pd(a.v, b.v)}; }
KEPS_INLINE f64x4 max(f64x4 a, f64x4 b) { return {_mm256_max_pd(a.v, b.v)}; }

// Masks of all ones or zeros. Comparisons are quiet; notLess and the like are true for NaN.
KEPS_INLINE f32x8 less(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LT_OQ)}; }
KEPS_INLINE f64x4 less(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ)}; }
KEPS_INLINE f32x8 notLess(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_NLT_UQ)}; }
KEPS_INLINE f64x4 notLess(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_NLT_UQ)}; }
KEPS_INLINE f32x8 notLessEqual(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_NLE_UQ)}; }
KEPS_INLINE f64x4 notLessEqual(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_NLE_UQ)}; }
KEPS_INLINE f32x8 equal(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_EQ_OQ)}; }
KEPS_INLINE f64x4 equal(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ)}; }

// The lanes' sign bits, lane 0 lowest.
KEPS_INLINE unsigned signs(f32x8 x) { return static_cast<unsigned>(_mm256_movemask_ps(x.v)); }
KEPS_INLINE unsigned signs(f64x4 x) { return static_cast<unsigned>(_mm256_movemask_pd(x.v)); }

// The sign bits, and all others, of the first n lanes, n from 1 to V::lanes.
template <class V>
V firstLanes(size n);
template <> KEPS_INLINE f32x8 firstLanes<f32x8>(size n) { return {_mm256_castsi256_ps(detail::firstWords(n))}; }
template <> KEPS_INLINE f64x4 firstLanes<f64x4>(size n) { return {_mm256_castsi256_pd(detail::firstWords(2 * n))}; }

// Integers of the lanes' width as floats of the same value, and floats as integers to nearest.
KEPS_INLINE f32x8 fromIntegerBits(f32x8 bits) { return {_mm256_cvtepi32_ps(_mm256_castps_si256(bits.v))}; }
KEPS_INLINE f32x8 toIntegerBits(f32x8 x) { return {_mm256_castsi256_ps(_mm256_cvtps_epi32(x.v))}; }

// To double exactly, and back rounded; 2 and 3 instructions.
KEPS_INLINE f64x4 lowerToDouble(f32x8 x) { return {_mm256_cvtps_pd(_mm256_castps256_ps128(x.v))}; }
KEPS_INLINE f64x4 upperToDouble(f32x8 x) { return {_mm256_cvtps_pd(_mm256_extractf128_ps(x.v, 1))}; }
KEPS_INLINE f32x8 toFloat(f64x4 lower, f64x4 upper) {
    return {_mm256_set_m128(_mm256_cvtpd_ps(upper.v), _mm256_cvtpd_ps(lower.v))};
}
// clang-format on

// A vector of the same bits in all lanes.
template <class V>
V splatBits(std::uint64_t bits);
template <>
KEPS_INLINE f64x4 splatBits<f64x4>(std::uint64_t bits) {
    return {_mm256_castsi256_pd(_mm256_set1_epi64x(static_cast<long long>(bits)))};
}
template <>
KEPS_INLINE f32x8 splatBits<f32x8>(std::uint64_t bits) {
    return {_mm256_castsi256_ps(_mm256_set1_epi32(static_cast<int>(bits)))};
}

// Each lane's bits shifted left: two shifts, a half taken out and put back.
template <int n>
KEPS_INLINE f64x4 shiftLeft(f64x4 x) {
    const __m256i bits = _mm256_castpd_si256(x.v);
    const __m128i low = _mm_slli_epi64(_mm256_castsi256_si128(bits), n);
    const __m128i high = _mm_slli_epi64(_mm256_extractf128_si256(bits, 1), n);
    return {_mm256_castsi256_pd(_mm256_set_m128i(high, low))};
}
template <int n>
KEPS_INLINE f32x8 shiftLeft(f32x8 x) {
    const __m256i bits = _mm256_castps_si256(x.v);
    const __m128i low = _mm_slli_epi32(_mm256_castsi256_si128(bits), n);
    const __m128i high = _mm_slli_epi32(_mm256_extractf128_si256(bits, 1), n);
    return {_mm256_castsi256_ps(_mm256_set_m128i(high, low))};
}

} // namespace keps
