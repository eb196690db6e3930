// Real spectra from and to the half-length complex transform: one sweep in from both ends, a vector
// of bins k and one of bins M - k at a time. Vectors stay in the lane order of interleaved loads,
// and so do the tables.
#pragma once

#include "transforms/fft/plan.hpp"

namespace keps::fft {

// Factors of one table entry group, as stored.
template <class V>
KEPS_INLINE planar<V> loadFactors(const typename V::element *table) {
    return {loadAligned<V>(table), loadAligned<V>(table + V::lanes)};
}

// Walks over k = 1..points / 2 of a plan of 2 * points reals; op(A, B, factors) turns bins k and
// points - k of src into those of dst. The last group meets itself at points / 2, where both sides
// give the same value. At two levels, op gets factors turned by their block's rotation.
template <class T, bool twoLevels, class Op>
KEPS_INLINE void sweep(const T *src, T *dst, size points, const T *table, const Op &op) {
    using V = typename Traits<T>::V;
    constexpr size block = Traits<T>::twoLevelBlock;
    const T *rotations = table + 2 * block;
    size k = 1;
    do {
        planar<V> rotation{};
        if constexpr (twoLevels) {
            rotation = {splat<V>(rotations[0]), splat<V>(rotations[1])};
            rotations += 2;
        }
        const T *factors = table;
        const size end = twoLevels ? k + block : points / 2 + 1;
        for (; k < end; k += V::lanes, factors += 2 * V::lanes) {
            const size back = points - k - V::lanes + 1;
            planar<V> a = loadInterleaved<V>(src + 2 * k);
            planar<V> b = loadInterleavedBack<V>(src + 2 * back);
            planar<V> f = loadFactors<V>(factors);
            if constexpr (twoLevels) f = f * rotation;
            op(a, b, f);
            storeInterleaved(dst + 2 * k, a);
            storeInterleavedBack(dst + 2 * back, b);
        }
    } while (twoLevels && k <= points / 2);
}

// The factors are half cosines and half the complement of sines.
struct ForwardFolded {
    template <class V>
    KEPS_INLINE void operator()(planar<V> &a, planar<V> &b, planar<V> f) const {
        const V dr = a.re - b.re, si = a.im + b.im;
        const V p = si * f.re + dr * f.im, q = si * f.im - dr * f.re;
        const planar<V> low = {b.re + p, q - b.im};
        b = {a.re - p, q - a.im};
        a = low;
    }
};

struct Forward {
    template <class V>
    KEPS_INLINE void operator()(planar<V> &a, planar<V> &b, planar<V> f) const {
        const V half = splat<V>(typename V::element(0.5));
        const V hr = half * (a.re + b.re), dr = half * (a.re - b.re);
        const V si = half * (a.im + b.im), di = half * (a.im - b.im);
        // f.im is the negative sine.
        const V p = si * f.re + dr * f.im, q = si * f.im - dr * f.re;
        a = {hr + p, di + q};
        b = {hr - p, q - di};
    }
};

struct Inverse {
    template <class V>
    KEPS_INLINE void operator()(planar<V> &a, planar<V> &b, planar<V> f) const {
        const V sr = a.re + b.re, dr = a.re - b.re, si = a.im + b.im, di = a.im - b.im;
        const V u = dr * f.im - si * f.re, v = dr * f.re + si * f.im;
        a = {sr + u, di + v};
        b = {sr - u, v - di};
    }
};

template <class T>
KEPS_INLINE bool isTwoLevel(size points) {
    return 2 * points >= Traits<T>::twoLevelPoints;
}

// In place, all bins but 0 and points.
template <class T>
void owns_cRealRecombine(T *data, size points, const T *table) {
    isTwoLevel<T>(points) ? sweep<T, true>(data, data, points, table, Forward{})
                          : sweep<T, false>(data, data, points, table, ForwardFolded{});
}

// src may be dst.
template <class T>
void owns_cCcsRecombine(const T *src, T *dst, size points, const T *table) {
    isTwoLevel<T>(points) ? sweep<T, true>(src, dst, points, table, Inverse{})
                          : sweep<T, false>(src, dst, points, table, Inverse{});
}

} // namespace keps::fft
