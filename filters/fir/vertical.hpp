// Direct sums over vertical tap tables: a record per tap, in natural tap order, whose vector is
// multiplied with vectors of neighbouring samples. Every output is the sum of its products from the
// oldest sample to the newest, each added in turn, so all ways through this file agree bit for bit.
#pragma once

#include "filters/fir/shares.hpp"
#include "frame/simd/complex.hpp"

namespace keps::fir {

// A real tap: its value in all lanes.
template <class Vector>
struct RealTap {
    using V = Vector;
    using E = typename V::element;
    static constexpr int record = V::lanes; // elements of the table per tap
    static constexpr int sample = 1;        // elements per sample
    static constexpr int most = 8;          // vectors of outputs at once
    V tap;

    KEPS_INLINE static RealTap at(const E *p) { return {loadAligned<V>(p)}; }
    KEPS_INLINE V operator*(V x) const { return tap * x; }
};

// A complex tap over pairs (real, imaginary): the record's signs make the product's.
struct ComplexTap32 {
    using V = f32x8;
    using E = float;
    static constexpr int record = 8, sample = 2, most = 6;
    V re, im; // re, re ... and -im, im ...

    KEPS_INLINE static ComplexTap32 at(const E *p) { return {loadTwice(p), loadTwice(p + 4)}; }
    KEPS_INLINE static planar<V> planarAt(const E *p) {
        return {splat<V>(loadOne(p)), splat<V>(loadOne(p + 5))};
    }
    KEPS_INLINE V operator*(V x) const { return re * x + im * swapParts(x); }
};
struct ComplexTap64 {
    using V = f64x4;
    using E = double;
    static constexpr int record = 8, sample = 2, most = 6;
    V re, im; // re, re ... and im, -im ...

    KEPS_INLINE static ComplexTap64 at(const E *p) {
        return {loadAligned<V>(p), loadAligned<V>(p + 4)};
    }
    KEPS_INLINE static planar<V> planarAt(const E *p) {
        return {loadAligned<V>(p), splat<V>(loadOne(p + 4))};
    }
    KEPS_INLINE V operator*(V x) const { return re * x - im * swapParts(x); }
};

// Vectors vectors of outputs at once, all taps one after another; the last vector begins at y +
// last. Vectors of samples mostly straddle cache lines, which takes a load unit twice, and so the
// load units set the pace; what shuffles could spare them costs the adders and multipliers as much.
template <class Tap, int Vectors>
KEPS_INLINE void sums(const typename Tap::E *table, const typename Tap::E *x, typename Tap::E *y,
                      size last, size tapsLen) {
    using V = typename Tap::V;
    const auto at = [last](int v)
                        KEPS_INLINE_LAMBDA { return v < Vectors - 1 ? size{V::lanes} * v : last; };
    const auto *record = table + (tapsLen - 1) * Tap::record;
    V sum[Vectors];
    const Tap oldest = Tap::at(record);
    times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { sum[v] = oldest * load<V>(x + at(v)); });
    while (record != table) {
        record -= Tap::record;
        x += Tap::sample;
        const Tap tap = Tap::at(record);
        times<Vectors>([&](int v)
                           KEPS_INLINE_LAMBDA { sum[v] = sum[v] + tap * load<V>(x + at(v)); });
    }
    times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { store(y + at(v), sum[v]); });
}

template <class Tap, int Vectors>
KEPS_INLINE void sumsOf(size vectors, const typename Tap::E *table, const typename Tap::E *x,
                        typename Tap::E *y, size last, size tapsLen) {
    if (vectors == Vectors) return sums<Tap, Vectors>(table, x, y, last, tapsLen);
    if constexpr (Vectors > 1) sumsOf<Tap, Vectors - 1>(vectors, table, x, y, last, tapsLen);
}

// count outputs at y from the samples at x on. The last vector overlaps the one before it where
// outputs don't fill it.
template <class Tap>
KEPS_INLINE void vertical(const typename Tap::E *table, const typename Tap::E *x,
                          typename Tap::E *y, size count, size tapsLen) {
    using V = typename Tap::V;
    size n = count * Tap::sample;
    if (n < V::lanes) {
        const auto *record = table + (tapsLen - 1) * Tap::record;
        V sum = Tap::at(record) * loadPart<V>(x, n);
        while (record != table) {
            record -= Tap::record;
            x += Tap::sample;
            sum = sum + Tap::at(record) * loadPart<V>(x, n);
        }
        return storePart(y, sum, n);
    }
    inEvenShares<Tap::most>(n, V::lanes,
                            [&](size vectors, size last, size step) KEPS_INLINE_LAMBDA {
                                sumsOf<Tap, Tap::most>(vectors, table, x, y, last, tapsLen);
                                x += step;
                                y += step;
                            });
}

} // namespace keps::fir
