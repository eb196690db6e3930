// Butterflies over planar vectors, and the forms that data comes in. All arithmetic is that of the
// forward transform: with real and imaginary parts exchanged on the way in and out it gives the
// inverse, so the direction lives in the forms alone.
#pragma once

#include "transforms/fft/plan.hpp"

namespace keps::fft {

enum Direction { forward, inverse };

// Sign bits on the real or the imaginary parts, whichever a turn by -i (forward) or i flips.
template <class T, Direction direction>
struct TurnSigns {
    alignas(32) T sign[32 / sizeof(T)];
    constexpr TurnSigns() : sign{} {
        for (std::size_t i = 0; i < 32 / sizeof(T); ++i)
            sign[i] = (i % 2 == 1) == (direction == forward) ? T(-0.0) : T(0.0);
    }
};
template <class T, Direction direction>
inline constexpr TurnSigns<T, direction> turnSigns{};

KEPS_INLINE f32x8 flip(f32x8 x, const float *signs) {
    return {_mm256_xor_ps(x.v, _mm256_load_ps(signs))};
}
KEPS_INLINE f64x4 flip(f64x4 x, const double *signs) {
    return {_mm256_xor_pd(x.v, _mm256_load_pd(signs))};
}

// -i x forward, i x inverse: 2 uops.
template <Direction direction, class V>
KEPS_INLINE V turned(V x) {
    return flip(swapParts(x), turnSigns<typename V::element, direction>.sign);
}

template <Direction direction, class V>
KEPS_INLINE void interleavedRadix4(V &a0, V &a1, V &a2, V &a3) {
    const V s0 = a0 + a2, d0 = a0 - a2, s1 = a1 + a3, d1 = turned<direction>(a1 - a3);
    a0 = s0 + s1;
    a1 = d0 + d1;
    a2 = s0 - s1;
    a3 = d0 - d1;
}

// A 4-point transform; a0 to a3 in, X0 to X3 out.
template <class V>
KEPS_INLINE void radix4(planar<V> &a0, planar<V> &a1, planar<V> &a2, planar<V> &a3) {
    const planar<V> s0 = a0 + a2, d0 = a0 - a2, s1 = a1 + a3, d1 = a1 - a3;
    a0 = s0 + s1;
    a1 = minusI(d0, d1);
    a2 = s0 - s1;
    a3 = plusI(d0, d1);
}

// Joins the 4-point transforms of the even and of the odd members to one of 8 points by eighth
// roots; put(k, X) takes each result as soon as it is there, which keeps registers free.
template <class V, class Put>
KEPS_INLINE void joinEighths(const planar<V> *even, const planar<V> *odd, const Put &put) {
    const V root = splat<V>(typename V::element(0.70710678118654752440));
    put(0, even[0] + odd[0]);
    put(4, even[0] - odd[0]);
    put(2, minusI(even[2], odd[2]));
    put(6, plusI(even[2], odd[2]));
    const planar<V> o1 = {(odd[1].re + odd[1].im) * root, (odd[1].im - odd[1].re) * root};
    put(1, even[1] + o1);
    put(5, even[1] - o1);
    // Minus the imaginary part of the third root's product.
    const planar<V> o3 = {(odd[3].im - odd[3].re) * root, (odd[3].re + odd[3].im) * root};
    put(3, planar<V>{even[3].re + o3.re, even[3].im - o3.im});
    put(7, planar<V>{even[3].re - o3.re, even[3].im + o3.im});
}

// A transform of R points: get(j) gives the inputs, put(k, X) takes the results. 8 points: two
// transforms of 4, 52 sums and 4 products in all.
template <int R, class V, class Get, class Put>
KEPS_INLINE void butterfly(const Get &get, const Put &put) {
    if constexpr (R == 4) {
        planar<V> a0 = get(0), a1 = get(1), a2 = get(2), a3 = get(3);
        radix4(a0, a1, a2, a3);
        put(0, a0);
        put(1, a1);
        put(2, a2);
        put(3, a3);
    } else {
        planar<V> even[4] = {get(0), get(2), get(4), get(6)};
        radix4(even[0], even[1], even[2], even[3]);
        planar<V> odd[4] = {get(1), get(3), get(5), get(7)};
        radix4(odd[0], odd[1], odd[2], odd[3]);
        joinEighths(even, odd, put);
    }
}

// The run that holds member j of a butterfly, in bit-reversed data.
template <int R>
constexpr int runOf(int j) {
    return R == 4 ? (j & 1) << 1 | j >> 1 : (j & 1) << 2 | (j & 2) | j >> 2;
}

template <class V>
KEPS_INLINE planar<V> loadPlanar(const typename V::element *p) {
    return {inRegister(loadAligned<V>(p)), inRegister(loadAligned<V>(p + V::lanes))};
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
    KEPS_INLINE Interleaved at(size i) const { return {p + 2 * i}; }

    // Radix 4 on four rows of 8 columns, still interleaved; then, taking real and imaginary parts
    // apart, the results in pairs: [columns][part][pair] holds results 2 pair and 2 pair + 1 of two
    // columns in each half, those of firstColumn.
    KEPS_INLINE void radix4Pairs(size rowStride, float (&to)[2][2][2][8]) const {
        times<2>([&](int half) KEPS_INLINE_LAMBDA {
            const auto row = [&](int j) KEPS_INLINE_LAMBDA {
                return keps::load<V>(p + 2 * j * rowStride + 8 * half);
            };
            V a0 = row(0), a1 = row(1), a2 = row(2), a3 = row(3);
            interleavedRadix4<direction>(a0, a1, a2, a3);
            constexpr int re = direction == forward ? 0 : 1;
            storeAligned(to[half][re][0], firstOfPairs(a0, a1));
            storeAligned(to[half][re][1], firstOfPairs(a2, a3));
            storeAligned(to[half][1 - re][0], secondOfPairs(a0, a1));
            storeAligned(to[half][1 - re][1], secondOfPairs(a2, a3));
        });
    }
    static constexpr int firstColumn(int pair) { return 2 * pair; }
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
        storeInOrder(re + i, z.re);
        storeInOrder(im + i, z.im);
    }
    KEPS_INLINE Split at(size i) const { return {re + i, im + i}; }
    KEPS_INLINE void radix4Pairs(size rowStride, float (&to)[2][2][2][8]) const {
        planar<V> z[4];
        butterfly<4, V>([&](int j) KEPS_INLINE_LAMBDA { return load(j * rowStride); },
                        [&](int k, planar<V> x) KEPS_INLINE_LAMBDA { z[k] = x; });
        times<2>([&](int k) KEPS_INLINE_LAMBDA {
            const planar<V> a = z[2 * k], b = z[2 * k + 1];
            storeAligned(to[0][0][k], lowerPairs(a.re, b.re));
            storeAligned(to[0][1][k], lowerPairs(a.im, b.im));
            storeAligned(to[1][0][k], upperPairs(a.re, b.re));
            storeAligned(to[1][1][k], upperPairs(a.im, b.im));
        });
    }
    static constexpr int firstColumn(int pair) { return 2 * (pair / 2) + 4 * (pair % 2); }
};

// Results times a factor on their way out.
template <class Out>
struct Scaled {
    using V = typename Out::V;
    Out out;
    typename Out::T factor;

    KEPS_INLINE void store(size i, planar<V> z) const {
        const V all = splat<V>(factor);
        out.store(i, {z.re * all, z.im * all});
    }
    KEPS_INLINE Scaled at(size i) const { return {out.at(i), factor}; }
};

// The order between the stages: vectors of real parts and of imaginary parts in turn. Lane i holds
// point columnOfLane(i) of the vector's, so that the last stage interleaves within halves.
template <class T_>
struct Grouped {
    using T = T_;
    using V = typename Traits<T>::V;
    T *p;

    KEPS_INLINE planar<V> load(size i) const {
        return {keps::load<V>(p + 2 * i), keps::load<V>(p + 2 * i + V::lanes)};
    }
    KEPS_INLINE void store(size i, planar<V> z) const {
        keps::store(p + 2 * i, z.re);
        keps::store(p + 2 * i + V::lanes, z.im);
    }
    KEPS_INLINE Grouped at(size i) const { return {p + 2 * i}; }
};

// The same with the vectors of real and of imaginary parts in two arrays.
template <class T_>
struct GroupedSplit {
    using T = T_;
    using V = typename Traits<T>::V;
    T *re, *im;

    KEPS_INLINE planar<V> load(size i) const {
        return {keps::load<V>(re + i), keps::load<V>(im + i)};
    }
    KEPS_INLINE void store(size i, planar<V> z) const {
        keps::store(re + i, z.re);
        keps::store(im + i, z.im);
    }
    KEPS_INLINE GroupedSplit at(size i) const { return {re + i, im + i}; }
};

} // namespace keps::fft
