// Butterflies over planar vectors, and the forms that data comes in. All arithmetic is that of the
// forward transform: with real and imaginary parts exchanged on the way in and out it gives the
// inverse, so the direction lives in the forms alone.
#pragma once

#include "transforms/fft/plan.hpp"

namespace keps::fft {

enum Direction { forward, inverse };

// A 4-point transform; a0 to a3 in, X0 to X3 out.
template <class V>
KEPS_INLINE void radix4(planar<V> &a0, planar<V> &a1, planar<V> &a2, planar<V> &a3) {
    const planar<V> s0 = a0 + a2, d0 = a0 - a2, s1 = a1 + a3, d1 = a1 - a3;
    a0 = s0 + s1;
    a1 = minusI(d0, d1);
    a2 = s0 - s1;
    a3 = plusI(d0, d1);
}

// An 8-point transform: two of 4 points, joined by eighth roots. 52 sums, 4 products.
template <class V>
KEPS_INLINE void radix8(planar<V> *a) {
    const V root = splat<V>(typename V::element(0.70710678118654752440));
    radix4(a[0], a[2], a[4], a[6]);
    radix4(a[1], a[3], a[5], a[7]);
    const planar<V> o0 = a[1], o2 = a[5];
    const planar<V> o1 = {(a[3].re + a[3].im) * root, (a[3].im - a[3].re) * root};
    const planar<V> o3 = {(a[7].im - a[7].re) * root, (a[7].re + a[7].im) * root};
    const planar<V> e0 = a[0], e1 = a[2], e2 = a[4], e3 = a[6];
    a[0] = e0 + o0;
    a[4] = e0 - o0;
    a[1] = e1 + o1;
    a[5] = e1 - o1;
    a[2] = minusI(e2, o2);
    a[6] = plusI(e2, o2);
    // o3 stands for -w^3 O3 with its imaginary part turned: X3 = E3 + w^3 O3.
    a[3] = {e3.re + o3.re, e3.im - o3.im};
    a[7] = {e3.re - o3.re, e3.im + o3.im};
}

template <int R, class V>
KEPS_INLINE void butterfly(planar<V> *a) {
    if constexpr (R == 4)
        radix4(a[0], a[1], a[2], a[3]);
    else
        radix8(a);
}

// The run that holds member j of a butterfly, in bit-reversed data.
template <int R>
constexpr int runOf(int j) {
    return R == 4 ? (j & 1) << 1 | j >> 1 : (j & 1) << 2 | (j & 2) | j >> 2;
}

template <class V>
KEPS_INLINE planar<V> loadPlanar(const typename V::element *p) {
    return {loadAligned<V>(p), loadAligned<V>(p + V::lanes)};
}

// Data in the caller's interleaved order, at any address. E is T or const T.
template <class E, Direction direction>
struct Interleaved {
    using T = std::remove_const_t<E>;
    using V = typename Traits<T>::V;
    E *p;

    // V::lanes points from point i on, lane by lane those of column().
    KEPS_INLINE planar<V> load(size i) const {
        const planar<V> z = loadInterleaved<V>(p + 2 * i);
        return direction == forward ? z : planar<V>{z.im, z.re};
    }
    static constexpr int column(int lane) { return columnOfLane<V>(lane); }
    KEPS_INLINE void store(size i, planar<V> z) const {
        storeInterleaved(p + 2 * i, direction == forward ? z : planar<V>{z.im, z.re});
    }
    KEPS_INLINE void prefetch(size i) const { _mm_prefetch(p + 2 * i, _MM_HINT_T0); }
    KEPS_INLINE Interleaved at(size i) const { return {p + 2 * i}; }
};

// Data in two arrays, at any address; the inverse transform takes them in exchange.
template <class E>
struct Split {
    using T = std::remove_const_t<E>;
    using V = typename Traits<T>::V;
    E *re, *im;

    KEPS_INLINE planar<V> load(size i) const {
        return {keps::load<V>(re + i), keps::load<V>(im + i)};
    }
    static constexpr int column(int lane) { return lane; }
    KEPS_INLINE void store(size i, planar<V> z) const {
        keps::store(re + i, z.re);
        keps::store(im + i, z.im);
    }
    KEPS_INLINE void prefetch(size i) const {
        _mm_prefetch(re + i, _MM_HINT_T0);
        _mm_prefetch(im + i, _MM_HINT_T0);
    }
    // The vector of real (0) or imaginary (1) parts of the points from i on.
    KEPS_INLINE E *part(int which, size i) const { return (which == 0 ? re : im) + i; }
    KEPS_INLINE Split at(size i) const { return {re + i, im + i}; }
};

// The order between the stages: vectors of real parts and of imaginary parts in turn.
template <class E>
struct Grouped {
    using T = std::remove_const_t<E>;
    using V = typename Traits<T>::V;
    E *p;

    KEPS_INLINE planar<V> load(size i) const {
        return {keps::load<V>(p + 2 * i), keps::load<V>(p + 2 * i + V::lanes)};
    }
    static constexpr int column(int lane) { return lane; }
    KEPS_INLINE void store(size i, planar<V> z) const {
        keps::store(p + 2 * i, z.re);
        keps::store(p + 2 * i + V::lanes, z.im);
    }
    KEPS_INLINE void prefetch(size i) const { _mm_prefetch(p + 2 * i, _MM_HINT_T0); }
    KEPS_INLINE E *part(int which, size i) const { return p + 2 * i + V::lanes * which; }
    KEPS_INLINE Grouped at(size i) const { return {p + 2 * i}; }
};

} // namespace keps::fft
