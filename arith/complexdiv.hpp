// Quotients of 16-bit complex samples: (a + bi) / (c + di) is (ac + bd, bc - ad) times the
// reciprocal of cc + dd, which is formed once, in double.
#pragma once

#include "arith/division.hpp"

namespace keps {

// A sum of two products, as the multiply-add instruction leaves it: only -32768 in all four places
// gives 2^31, which wraps to -2^31. ExactSums take it as 2^31, WrappingSums leave it.
struct ExactSums {
    // Below 2^31 after the subtraction, which wraps back; no other sum is -2^31.
    KEPS_INLINE static f64x4 toDouble(__m128i sum) {
        const __m128i minusOne = _mm_set1_epi32(-1);
        return keps::toDouble(i32x4{_mm_add_epi32(sum, minusOne)}) + splat<f64x4>(1);
    }
};
struct WrappingSums {
    KEPS_INLINE static f64x4 toDouble(__m128i sum) { return keps::toDouble(i32x4{sum}); }
};

// cc + dd, exact.
KEPS_INLINE f64x4 squaredMagnitude(i16x8 x) {
    return ExactSums::toDouble(_mm_madd_epi16(x.v, x.v));
}

// Both parts of dividend times the conjugate of divisor, times r; rounded, saturated, interleaved.
template <class Sums>
KEPS_INLINE i16x8 timesConjugate(i16x8 dividend, i16x8 divisor, f64x4 r) {
    const __m128i re = _mm_madd_epi16(dividend.v, divisor.v);
    // (d, c) with -1 - d, which always fits, for -d; a is added back.
    const __m128i flipReal = _mm_set1_epi32(0xFFFF);
    const __m128i swapped =
        _mm_or_si128(_mm_slli_epi32(divisor.v, 16), _mm_srli_epi32(divisor.v, 16));
    const __m128i a = _mm_srai_epi32(_mm_slli_epi32(dividend.v, 16), 16);
    const __m128i im =
        _mm_add_epi32(_mm_madd_epi16(dividend.v, _mm_xor_si128(swapped, flipReal)), a);
    const f64x4 top = splat<f64x4>(32767);
    const i32x4 u = ToNearest::round(min(top, Sums::toDouble(re) * r));
    const i32x4 v = ToNearest::round(min(top, toDouble(i32x4{im}) * r));
    return narrowSaturated({_mm_unpacklo_epi32(u.v, v.v)}, {_mm_unpackhi_epi32(u.v, v.v)});
}

// A zero divisor gives (0, 0).
template <class Sums>
struct ComplexQuotient {
    f64x4 scale;
    ZeroWatch<f64x4> zeros;
    KEPS_INLINE i16x8 operator()(i16x8 divisor, i16x8 dividend) const {
        const f64x4 m = squaredMagnitude(divisor);
        zeros.look(m);
        const f64x4 r = without(scale / m, equal(m, zero<f64x4>()));
        return timesConjugate<Sums>(dividend, divisor, r);
    }
};

} // namespace keps
