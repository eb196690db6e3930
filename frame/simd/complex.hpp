// Complex values in vectors, in two shapes. Interleaved: re, im, re, im in one vector, as callers
// store them. Planar: a vector of real parts and one of imaginary parts. One instruction a vector
// unless a comment says more.
#pragma once

#include "frame/simd/float256.hpp"

namespace keps {

template <class V>
struct planar {
    V re, im;
};

template <class V>
KEPS_INLINE planar<V> operator+(planar<V> a, planar<V> b) {
    return {a.re + b.re, a.im + b.im};
}
template <class V>
KEPS_INLINE planar<V> operator-(planar<V> a, planar<V> b) {
    return {a.re - b.re, a.im - b.im};
}
template <class V>
KEPS_INLINE planar<V> operator*(planar<V> a, planar<V> b) {
    return {a.re * b.re - a.im * b.im, a.im * b.re + a.re * b.im};
}
// a - i b and a + i b: no more than a sum.
template <class V>
KEPS_INLINE planar<V> minusI(planar<V> a, planar<V> b) {
    return {a.re + b.im, a.im - b.re};
}
template <class V>
KEPS_INLINE planar<V> plusI(planar<V> a, planar<V> b) {
    return {a.re - b.im, a.im + b.re};
}

// clang-format off
// The first and the second elements of a's and b's pairs, per 128-bit lane: for 32f a0 a1 b0 b1.
KEPS_INLINE f32x8 firstOfPairs(f32x8 a, f32x8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0x88)}; }
KEPS_INLINE f64x4 firstOfPairs(f64x4 a, f64x4 b) { return {_mm256_unpacklo_pd(a.v, b.v)}; }
KEPS_INLINE f32x8 secondOfPairs(f32x8 a, f32x8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0xDD)}; }
KEPS_INLINE f64x4 secondOfPairs(f64x4 a, f64x4 b) { return {_mm256_unpackhi_pd(a.v, b.v)}; }
// The same with the pairs of each lane in reverse.
KEPS_INLINE f32x8 firstOfPairsBack(f32x8 a, f32x8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0x22)}; }
KEPS_INLINE f64x4 firstOfPairsBack(f64x4 a, f64x4 b) { return {_mm256_unpacklo_pd(a.v, b.v)}; }
KEPS_INLINE f32x8 secondOfPairsBack(f32x8 a, f32x8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0x77)}; }
KEPS_INLINE f64x4 secondOfPairsBack(f64x4 a, f64x4 b) { return {_mm256_unpackhi_pd(a.v, b.v)}; }

// Elements of a and b in turn, from the lower and from the upper half of each lane.
KEPS_INLINE f32x8 unpackLower(f32x8 a, f32x8 b) { return {_mm256_unpacklo_ps(a.v, b.v)}; }
KEPS_INLINE f64x4 unpackLower(f64x4 a, f64x4 b) { return {_mm256_unpacklo_pd(a.v, b.v)}; }
KEPS_INLINE f32x4 unpackLower(f32x4 a, f32x4 b) { return {_mm_unpacklo_ps(a.v, b.v)}; }
KEPS_INLINE f64x2 unpackLower(f64x2 a, f64x2 b) { return {_mm_unpacklo_pd(a.v, b.v)}; }
KEPS_INLINE f32x8 unpackUpper(f32x8 a, f32x8 b) { return {_mm256_unpackhi_ps(a.v, b.v)}; }
KEPS_INLINE f64x4 unpackUpper(f64x4 a, f64x4 b) { return {_mm256_unpackhi_pd(a.v, b.v)}; }
KEPS_INLINE f32x4 unpackUpper(f32x4 a, f32x4 b) { return {_mm_unpackhi_ps(a.v, b.v)}; }
KEPS_INLINE f64x2 unpackUpper(f64x2 a, f64x2 b) { return {_mm_unpackhi_pd(a.v, b.v)}; }

// Lower halves of a and b, upper halves of a and b.
KEPS_INLINE f32x8 lowerHalves(f32x8 a, f32x8 b) { return {_mm256_permute2f128_ps(a.v, b.v, 0x20)}; }
KEPS_INLINE f64x4 lowerHalves(f64x4 a, f64x4 b) { return {_mm256_permute2f128_pd(a.v, b.v, 0x20)}; }
KEPS_INLINE f32x8 upperHalves(f32x8 a, f32x8 b) { return {_mm256_permute2f128_ps(a.v, b.v, 0x31)}; }
KEPS_INLINE f64x4 upperHalves(f64x4 a, f64x4 b) { return {_mm256_permute2f128_pd(a.v, b.v, 0x31)}; }
KEPS_INLINE f32x8 swapHalves(f32x8 x) { return {_mm256_permute2f128_ps(x.v, x.v, 1)}; }
KEPS_INLINE f64x4 swapHalves(f64x4 x) { return {_mm256_permute2f128_pd(x.v, x.v, 1)}; }
KEPS_INLINE f64x2 lower(f64x4 x) { return {_mm256_castpd256_pd128(x.v)}; }
KEPS_INLINE f64x2 upper(f64x4 x) { return {_mm256_extractf128_pd(x.v, 1)}; }
KEPS_INLINE f32x8 join(f32x4 a, f32x4 b) { return {_mm256_set_m128(b.v, a.v)}; }
KEPS_INLINE f64x4 join(f64x2 a, f64x2 b) { return {_mm256_set_m128d(b.v, a.v)}; }

// Interleaved: real and imaginary parts exchanged; a complex factor applied whose real parts stand
// doubled in re and whose imaginary parts stand as -im, im in im (5 uops).
KEPS_INLINE f32x8 swapParts(f32x8 x) { return {_mm256_permute_ps(x.v, 0xB1)}; }
KEPS_INLINE f64x4 swapParts(f64x4 x) { return {_mm256_permute_pd(x.v, 0x5)}; }
template <class V>
KEPS_INLINE V complexMul(V x, V re, V im) { return x * re + swapParts(x) * im; }
// clang-format on

template <class V>
struct HalfOf;
template <>
struct HalfOf<f32x8> {
    using type = f32x4;
};
template <>
struct HalfOf<f64x4> {
    using type = f64x2;
};
template <class V>
using Half = typename HalfOf<V>::type;

// Two 128-bit loads side by side: a load and an insertion from memory.
template <class V>
KEPS_INLINE V loadHalves(const typename V::element *a, const typename V::element *b) {
    return join(load<Half<V>>(a), load<Half<V>>(b));
}

// The lower, the upper halves of two vectors in memory: a load, a load that doubles a half, a
// blend, which every arithmetic pipe takes.
template <class V>
KEPS_INLINE V lowerHalves(const float *a, const float *b) {
    const __m128 *half = reinterpret_cast<const __m128 *>(b);
    return {_mm256_blend_ps(_mm256_load_ps(a), inRegister(V{_mm256_broadcast_ps(half)}).v, 0xF0)};
}
template <class V>
KEPS_INLINE V upperHalves(const float *a, const float *b) {
    const __m128 *half = reinterpret_cast<const __m128 *>(a + 4);
    return {_mm256_blend_ps(inRegister(V{_mm256_broadcast_ps(half)}).v, _mm256_load_ps(b), 0xF0)};
}

// Pairs of a and b in turn, from the lower and from the upper half of each lane.
KEPS_INLINE f32x8 lowerPairs(f32x8 a, f32x8 b) {
    return {_mm256_shuffle_ps(a.v, b.v, 0x44)};
}
KEPS_INLINE f32x8 upperPairs(f32x8 a, f32x8 b) {
    return {_mm256_shuffle_ps(a.v, b.v, 0xEE)};
}

// The column that lane i of a vector holds after an interleaved load.
template <class V>
constexpr int columnOfLane(int i) {
    if constexpr (V::lanes == 8) return (i & 1) | (i & 2) << 1 | (i & 4) >> 1;
    return (i & 1) << 1 | i >> 1;
}

// V::lanes complex values from interleaved memory, lane i holding value columnOfLane(i): 2
// shuffles.
template <class V>
KEPS_INLINE planar<V> loadInterleaved(const typename V::element *p) {
    const V a = inRegister(load<V>(p)), b = inRegister(load<V>(p + V::lanes));
    return {firstOfPairs(a, b), secondOfPairs(a, b)};
}
// The same values from the last backward: lane i holds value V::lanes - 1 - columnOfLane(i).
template <class V>
KEPS_INLINE planar<V> loadInterleavedBack(const typename V::element *p) {
    constexpr int half = V::lanes / 2;
    const V a = loadHalves<V>(p + 3 * half, p + 2 * half), b = loadHalves<V>(p + half, p);
    return {firstOfPairsBack(a, b), secondOfPairsBack(a, b)};
}

// Back to interleaved memory from the same order of lanes: 2 shuffles. Back: what
// loadInterleavedBack reads.
KEPS_INLINE void storeInterleaved(float *p, planar<f32x8> z) {
    store(p, unpackLower(z.re, z.im));
    store(p + 8, unpackUpper(z.re, z.im));
}
KEPS_INLINE void storeInterleaved(double *p, planar<f64x4> z) {
    store(p, unpackLower(z.re, z.im));
    store(p + 4, unpackUpper(z.re, z.im));
}
KEPS_INLINE void storeInterleavedBack(float *p, planar<f32x8> z) {
    const f32x8 a = {_mm256_permute_ps(unpackLower(z.re, z.im).v, 0x4E)};
    const f32x8 b = {_mm256_permute_ps(unpackUpper(z.re, z.im).v, 0x4E)};
    store(p, swapHalves(b));
    store(p + 8, swapHalves(a));
}
KEPS_INLINE void storeInterleavedBack(double *p, planar<f64x4> z) {
    store(p, swapHalves(unpackUpper(z.re, z.im)));
    store(p + 4, swapHalves(unpackLower(z.re, z.im)));
}

// V::lanes complex values from interleaved memory and back, lanes in the order of memory: 4
// shuffles, of which the load takes two from memory.
template <class V>
KEPS_INLINE planar<V> loadSplit(const typename V::element *p) {
    constexpr int half = V::lanes / 2;
    const V a = loadHalves<V>(p, p + 2 * half), b = loadHalves<V>(p + half, p + 3 * half);
    return {firstOfPairs(a, b), secondOfPairs(a, b)};
}
template <class V>
KEPS_INLINE void storeJoined(typename V::element *p, planar<V> z) {
    const V a = unpackLower(z.re, z.im), b = unpackUpper(z.re, z.im);
    store(p, lowerHalves(a, b));
    store(p + V::lanes, upperHalves(a, b));
}

// Four vectors as a 4 by 4 square, transposed: 8 shuffles.
KEPS_INLINE void transposeSquare(f64x4 &a, f64x4 &b, f64x4 &c, f64x4 &d) {
    const f64x4 ab = unpackLower(a, b), cd = unpackLower(c, d);
    const f64x4 ef = unpackUpper(a, b), gh = unpackUpper(c, d);
    a = lowerHalves(ab, cd);
    b = lowerHalves(ef, gh);
    c = upperHalves(ab, cd);
    d = upperHalves(ef, gh);
}

// Lanes in the order of columnOfLane to plain memory: 2 shuffles and an extraction.
KEPS_INLINE void storeInOrder(float *p, f32x8 x) {
    const __m128 a = lower(x).v, b = upper(x).v;
    store(p, f32x4{_mm_movelh_ps(a, b)});
    store(p + 4, f32x4{_mm_movehl_ps(b, a)});
}
KEPS_INLINE void storeInOrder(double *p, f64x4 x) {
    store(p, unpackLower(lower(x), upper(x)));
    store(p + 2, unpackUpper(lower(x), upper(x)));
}

// Squares of interleaved complex values, in place: 4 by 4 (8 shuffles), 2 by 2 (2 shuffles).
KEPS_INLINE void transposeComplex(f32x8 *r) {
    const auto pairs = [](f32x8 a, f32x8 b, bool upperOnes) KEPS_INLINE_LAMBDA {
        const __m256d x = _mm256_castps_pd(a.v), y = _mm256_castps_pd(b.v);
        return f32x8{
            _mm256_castpd_ps(upperOnes ? _mm256_unpackhi_pd(x, y) : _mm256_unpacklo_pd(x, y))};
    };
    const f32x8 a = pairs(r[0], r[1], false), b = pairs(r[0], r[1], true);
    const f32x8 c = pairs(r[2], r[3], false), d = pairs(r[2], r[3], true);
    r[0] = lowerHalves(a, c);
    r[1] = lowerHalves(b, d);
    r[2] = upperHalves(a, c);
    r[3] = upperHalves(b, d);
}
KEPS_INLINE void transposeComplex(f64x4 *r) {
    const f64x4 a = r[0], b = r[1];
    r[0] = lowerHalves(a, b);
    r[1] = upperHalves(a, b);
}

} // namespace keps
