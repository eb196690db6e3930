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
template <class V>
KEPS_INLINE planar<V> operator*(planar<V> a, V b) {
    return {a.re * b, a.im * b};
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
KEPS_INLINE f64x4 operator^(f64x4 a, f64x4 b) { return {_mm256_xor_pd(a.v, b.v)}; }

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
KEPS_INLINE f64x2 lower(f64x4 x) { return {_mm256_castpd256_pd128(x.v)}; }
KEPS_INLINE f64x2 upper(f64x4 x) { return {_mm256_extractf128_pd(x.v, 1)}; }
KEPS_INLINE f32x8 join(f32x4 a, f32x4 b) { return {_mm256_set_m128(b.v, a.v)}; }
KEPS_INLINE f64x4 join(f64x2 a, f64x2 b) { return {_mm256_set_m128d(b.v, a.v)}; }

// Interleaved: real and imaginary parts exchanged; a complex factor applied whose real parts stand
// doubled in re and whose imaginary parts stand as -im, im in im (5 uops).
KEPS_INLINE f32x8 swapParts(f32x8 x) { return {_mm256_permute_ps(x.v, 0xB1)}; }
KEPS_INLINE f64x4 swapParts(f64x4 x) { return {_mm256_permute_pd(x.v, 0x5)}; }
KEPS_INLINE f32x8 addSub(f32x8 a, f32x8 b) { return {_mm256_addsub_ps(a.v, b.v)}; }
KEPS_INLINE f64x4 addSub(f64x4 a, f64x4 b) { return {_mm256_addsub_pd(a.v, b.v)}; }
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
    const V a = load<V>(p), b = load<V>(p + V::lanes);
    return {firstOfPairs(a, b), secondOfPairs(a, b)};
}
// The same values from the last backward: lane i holds value V::lanes - 1 - columnOfLane(i).
template <class V>
KEPS_INLINE planar<V> loadInterleavedBack(const typename V::element *p) {
    constexpr int half = V::lanes / 2;
    const V a = loadHalves<V>(p + 3 * half, p + 2 * half), b = loadHalves<V>(p + half, p);
    return {firstOfPairsBack(a, b), secondOfPairsBack(a, b)};
}

// Lanes in order to interleaved memory: 2 shuffles, four 16-byte stores, which leave two a cycle.
template <class V>
KEPS_INLINE void storeInterleaved(typename V::element *p, planar<V> z) {
    constexpr int half = V::lanes / 2;
    const V a = unpackLower(z.re, z.im), b = unpackUpper(z.re, z.im);
    store(p, lower(a));
    store(p + half, lower(b));
    store(p + 2 * half, upper(a));
    store(p + 3 * half, upper(b));
}
// Lanes in the order of columnOfLane; back: what loadInterleavedBack reads.
KEPS_INLINE void storeInColumns(float *p, planar<f32x8> z) {
    store(p, unpackLower(z.re, z.im));
    store(p + 8, unpackUpper(z.re, z.im));
}
KEPS_INLINE void storeInColumns(double *p, planar<f64x4> z) {
    store(p, unpackLower(z.re, z.im));
    store(p + 4, unpackUpper(z.re, z.im));
}
KEPS_INLINE void storeInColumnsBack(float *p, planar<f32x8> z) {
    const f32x8 a = {_mm256_permute_ps(unpackLower(z.re, z.im).v, 0x4E)};
    const f32x8 b = {_mm256_permute_ps(unpackUpper(z.re, z.im).v, 0x4E)};
    store(p, upper(b));
    store(p + 4, lower(b));
    store(p + 8, upper(a));
    store(p + 12, lower(a));
}
KEPS_INLINE void storeInColumnsBack(double *p, planar<f64x4> z) {
    const f64x4 a = unpackLower(z.re, z.im), b = unpackUpper(z.re, z.im);
    store(p, upper(b));
    store(p + 2, lower(b));
    store(p + 4, upper(a));
    store(p + 6, lower(a));
}

// A square of V::lanes rows that lie stride elements apart, transposed: calls put(i, column i).
// 16 shuffles and 8 joins for eight lanes, 4 and 4 for four.
template <class Put>
KEPS_INLINE void transposed(const float *rows, size stride, const Put &put) {
    times<2>([&](int h) KEPS_INLINE_LAMBDA {
        const auto both = [&](int i) KEPS_INLINE_LAMBDA {
            const float *p = rows + i * stride + 4 * h;
            return loadHalves<f32x8>(p, p + 4 * stride).v;
        };
        const __m256 a = both(0), b = both(1), c = both(2), d = both(3);
        const __m256 ab = _mm256_unpacklo_ps(a, b), cd = _mm256_unpacklo_ps(c, d);
        const __m256 ef = _mm256_unpackhi_ps(a, b), gh = _mm256_unpackhi_ps(c, d);
        put(4 * h, f32x8{_mm256_shuffle_ps(ab, cd, 0x44)});
        put(4 * h + 1, f32x8{_mm256_shuffle_ps(ab, cd, 0xEE)});
        put(4 * h + 2, f32x8{_mm256_shuffle_ps(ef, gh, 0x44)});
        put(4 * h + 3, f32x8{_mm256_shuffle_ps(ef, gh, 0xEE)});
    });
}
template <class Put>
KEPS_INLINE void transposed(const double *rows, size stride, const Put &put) {
    times<2>([&](int h) KEPS_INLINE_LAMBDA {
        const double *p = rows + 2 * h, *q = rows + stride + 2 * h;
        const __m256d a = loadHalves<f64x4>(p, p + 2 * stride).v;
        const __m256d b = loadHalves<f64x4>(q, q + 2 * stride).v;
        put(2 * h, f64x4{_mm256_unpacklo_pd(a, b)});
        put(2 * h + 1, f64x4{_mm256_unpackhi_pd(a, b)});
    });
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
