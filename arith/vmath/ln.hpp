// The logarithm by a table of ln c: what the double kernels, the wide single ones and the scalar
// helpers share.
#pragma once

#include "arith/vmath/driver.hpp"
#include "arith/vmath/ln_data.hpp"

namespace keps::vmath {

// ln x of a positive finite x by itself.
double lnSlow(double x);

// x = 2^k m with m from 0.7070 on, and m times the table's c, less 1, in two parts: upper, the
// product of c with the upper half of m, is exact, and so is lower.
template <class V>
struct Mantissa {
    V k, upper, lower;
};

// ln x = (k ln2High - ln c's high part, exact) + r + (what the sums lost + low parts + r^2 P(r)).
// Next to 1 the first term is 0, elsewhere no smaller than r. Error below 0.52 units.
template <class V>
struct LnParts {
    V r, sum, tail;
};
template <class V>
KEPS_INLINE LnParts<V> lnParts(const Mantissa<V> &m, V high, V low) {
    const V r = m.upper + m.lower;
    const V rest = (m.upper - r) + m.lower;
    const V whole = m.k * constant<V>(ln2High) + high;
    const V sum = whole + r;
    const V lost = ((whole - sum) + r) + rest;
    return {r, sum, lost + (m.k * constant<V>(ln2Low) + low)};
}
template <class V>
KEPS_INLINE V lnHigh(const LnParts<V> &x) {
    return x.sum + (x.tail + x.r * x.r * polynomial(x.r, vdln_high));
}

struct LnPlace {
    Mantissa<f64x4> m;
    Columns<4> at;
};

// For normal positive lanes; others give a number without meaning.
KEPS_INLINE LnPlace lnPlace(f64x4 x) {
    const __m128i high = highWords(x);
    const __m128i t = _mm_sub_epi32(high, _mm_set1_epi32(0x3FE6A000));
    const __m128i cell = _mm_and_si128(_mm_srli_epi32(t, 13), _mm_set1_epi32(127));
    const f64x4 k = {_mm256_cvtepi32_pd(_mm_srai_epi32(t, 20))};
    // The exponent of m is the sign of x's distance from the range of m, so it is 1022 or 1023.
    const __m128i exponent = _mm_sub_epi32(high, _mm_slli_epi32(_mm_srai_epi32(t, 20), 20));
    const f64x4 m = (x & splatBits<f64x4>(0x000FFFFFFFFFFFFF)) |
                    fromHighWords(_mm_and_si128(exponent, _mm_set1_epi32(0x7FF00000)));
    const auto at =
        columns4(vdln_data[_mm_cvtsi128_si32(cell)], vdln_data[_mm_extract_epi32(cell, 1)],
                 vdln_data[_mm_extract_epi32(cell, 2)], vdln_data[_mm_extract_epi32(cell, 3)]);
    const f64x4 upper = m & splatBits<f64x4>(0xFFFFFFFFF0000000);
    return {{k, upper * at.c[0] - splat<f64x4>(1), (m - upper) * at.c[0]}, at};
}

// The same of one positive finite x, subnormal or not: the mantissa, and ln c's parts.
struct LnPlaceOfOne {
    Mantissa<double> m;
    double high, low;
};
inline LnPlaceOfOne lnPlaceOfOne(double x) {
    int below = 0;
    if (x < 0x1p-1022) {
        x *= 0x1p54;
        below = 54;
    }
    const auto bits = __builtin_bit_cast(std::uint64_t, x);
    const auto t = static_cast<std::int64_t>(bits) - (std::int64_t{0x3FE6A000} << 32);
    const auto k = t >> 52;
    const double *row = vdln_data[(t >> 45) & 127];
    const auto m = __builtin_bit_cast(double, bits - (static_cast<std::uint64_t>(k) << 52));
    const auto upper =
        __builtin_bit_cast(double, __builtin_bit_cast(std::uint64_t, m) & 0xFFFFFFFFF0000000);
    return {
        {static_cast<double>(k - below), upper * row[0] - 1, (m - upper) * row[0]}, row[1], row[2]};
}

template <class Series>
KEPS_INLINE f64x4 lnShort(f64x4 x, const Series &series) {
    const LnPlace place = lnPlace(x);
    const f64x4 r = place.m.upper + place.m.lower;
    const f64x4 whole = place.m.k * splat<f64x4>(ln2Double) + place.at.c[3];
    return whole + (r + r * r * polynomial(r, series));
}

// Not a normal positive number.
KEPS_INLINE f64x4 lnBeyond(f64x4 x) {
    return notLessEqual(splat<f64x4>(0x1p-1022), x) | notLessEqual(x, splat<f64x4>(__DBL_MAX__));
}

} // namespace keps::vmath
