// Sine and cosine by polynomials alone: over half a turn for one of them, over a quarter for both.
#pragma once

#include "arith/vmath/trig.hpp"

namespace keps::vmath {

inline constexpr int quarterOfTable = 16; // a quarter turn in steps of the table of sines

// Adding magic rounds to an integer, whose low bit then moves to the sign by top places. pi comes
// in parts; a multiplier of some bits leaves all products but the last exact. half is half the
// least number of half turns past these bits.
template <class V>
struct Turn;
template <>
struct Turn<f32x8> {
    static constexpr double magic = 0x1.8p23;
    static constexpr int top = 31;
    static constexpr double part[] = {piFloat1, piFloat2, piFloat3};
    static constexpr double half = 64,
                            limit = 400; // 7 bits of half turns and a half, or 8 of quarters
};
template <>
struct Turn<f64x4> {
    static constexpr double magic = 0x1.8p52;
    static constexpr int top = 63;
    static constexpr double part[] = {piDouble1, piDouble2, piDouble3};
    static constexpr double half = 16384, limit = 102900;
};

// All lanes that are not within the limit in size, NaN too.
template <class V>
KEPS_INLINE V beyond(V x, double limit) {
    return notLessEqual(without(x, constant<V>(-0.0)), constant<V>(limit));
}

// x - n pi unit. Exact but for the last places of the last two steps: near a multiple of pi, where
// the result is small, the first differences are exact.
template <class V>
KEPS_INLINE V lessTurns(V x, V n, double unit) {
    using T = Turn<V>;
    return ((x - n * constant<V>(T::part[0] * unit)) - n * constant<V>(T::part[1] * unit)) -
           n * constant<V>(T::part[2] * unit);
}

// The sign bit where q, which is magic plus an integer, is odd. Its exponent and lowest bit alone
// are a number and a comparison finds the odd ones, which takes less than shifting halves.
KEPS_INLINE f32x8 signIfOdd(f32x8 q) {
    using V = f32x8;
    return less(splat<V>(0x1p23F / 64), q & splatBits<V>(0xFF800001)) & splat<V>(-0.0F);
}
KEPS_INLINE f64x4 signIfOdd(f64x4 q) {
    using V = f64x4;
    return less(splat<V>(0x1p52 / 16384), q & splatBits<V>(0xFFF0000000000001)) & splat<V>(-0.0);
}

// An angle of half a turn around zero, whose sine is that of x, or that of x plus a quarter turn:
// sin(x) = (-1)^n sin(x - n pi), n the nearest integer. Half turns are counted in a unit that makes
// those past the limit 2 or more: the only numbers whose uppermost exponent bit is set, so that the
// extent can join all by their bits.
template <class V>
KEPS_INLINE V foldedSine(V x, V &extent) {
    using T = Turn<V>;
    const V magic = constant<V>(T::magic / T::half);
    const V turns = x * constant<V>(invPi / T::half);
    const V q = turns + magic;
    extent = extent | turns;
    return lessTurns(x, q - magic, T::half) ^ signIfOdd(q);
}
// cos(x) = -(-1)^k sin(x - (k + 1/2) pi); the magic number's odd end gives the minus.
template <class V>
KEPS_INLINE V foldedCosine(V x, V &extent) {
    using T = Turn<V>;
    const V magic = constant<V>((T::magic + 1) / T::half), half = constant<V>(0.5 / T::half);
    const V turns = x * constant<V>(invPi / T::half);
    const V q = (turns - half) + magic;
    extent = extent | turns;
    return lessTurns(x, (q - magic) + half, T::half) ^ signIfOdd(q);
}
template <class V>
KEPS_INLINE V beyondTurns(V extent) {
    return notLess(sizeOf(extent), constant<V>(2));
}

// The sine of a folded angle, as a product, which keeps the sign of zero.
template <class V, class T, std::size_t n>
KEPS_INLINE V sineOfFolded(V r, const T (&series)[n]) {
    const V s = r * r;
    if constexpr (n == 5) {
        const V lower = constant<V>(series[1]) + s * constant<V>(series[2]);
        const V upper = constant<V>(series[3]) + s * constant<V>(series[4]);
        return r * (constant<V>(series[0]) + s * (lower + s * s * upper));
    }
    return r * flatPolynomial(s, series);
}

// Both, with the quarter turn's parity deciding which series is which.
template <class V, class T, std::size_t n, std::size_t m>
KEPS_INLINE void bothByQuarters(V x, const T (&sineSeries)[n], const T (&cosineSeries)[m], V &sine,
                                V &cosine) {
    constexpr int top = Turn<V>::top;
    const V magic = constant<V>(Turn<V>::magic);
    const V q = x * constant<V>(2 * invPi) + magic;
    const V r = lessTurns(x, q - magic, 0.5);
    const V s = r * polynomial(r * r, sineSeries), c = polynomial(r * r, cosineSeries);
    const V odd = shiftLeft<top>(q), second = shiftLeft<top - 1>(q), sign = constant<V>(-0.0);
    sine = select(odd, s, c) ^ (second & sign);
    cosine = select(odd, c, s) ^ ((second ^ odd) & sign);
}

} // namespace keps::vmath
