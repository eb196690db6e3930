// Direct sums over vertical tap tables: a record per tap, in natural tap order, whose vector is
// multiplied with vectors of neighbouring samples. Every output is the sum of its products from the
// oldest sample to the newest, each added in turn, so all ways through this file agree bit for bit.
#pragma once

#include "frame/simd/float256.hpp"

namespace keps::fir {

// A real tap: its value in all lanes.
template <class Vector>
struct RealTap {
    using V = Vector;
    using E = typename V::element;
    static constexpr int record = V::lanes; // elements of the table per tap
    static constexpr int sample = 1;        // elements per sample
    static constexpr int perPass = 8;       // taps that fit the registers beside the samples
    V tap;

    KEPS_INLINE static RealTap at(const E *p) { return {loadAligned<V>(p)}; }
    KEPS_INLINE V operator*(V x) const { return tap * x; }
};

// A complex tap over pairs (real, imaginary): the record's signs make the product's.
struct ComplexTap32 {
    using V = f32x8;
    using E = float;
    static constexpr int record = 8, sample = 2, perPass = 4;
    V re, im; // re, re ... and -im, im ...

    KEPS_INLINE static ComplexTap32 at(const E *p) { return {loadTwice(p), loadTwice(p + 4)}; }
    KEPS_INLINE V operator*(V x) const { return re * x + im * swapPairs(x); }
};
struct ComplexTap64 {
    using V = f64x4;
    using E = double;
    static constexpr int record = 8, sample = 2, perPass = 4;
    V re, im; // re, re ... and im, -im ...

    KEPS_INLINE static ComplexTap64 at(const E *p) {
        return {loadAligned<V>(p), loadAligned<V>(p + 4)};
    }
    KEPS_INLINE V operator*(V x) const { return re * x - im * swapPairs(x); }
};

// The samples that Taps taps need for one vector of outputs: vector k begins k samples on.
template <class Tap, int Taps>
struct Window {
    using V = typename Tap::V;
    V at[Taps];

    KEPS_INLINE void begin(const typename Tap::E *) {}
    KEPS_INLINE void move(const typename Tap::E *x) {
        times<Taps>([&](int k) KEPS_INLINE_LAMBDA { at[k] = load<V>(x + k * Tap::sample); });
    }
};

// Loads off a cache line's raster take two turns of a load unit every other time, and the load
// units are the bottleneck: the vectors 2 and 6 samples on come from their neighbours by one
// shuffle each. Reads one sample beyond the last that it needs.
template <>
struct Window<RealTap<f32x8>, 8> {
    f32x8 at[9];

    KEPS_INLINE void begin(const float *x) { at[8] = load<f32x8>(x); }
    KEPS_INLINE void move(const float *x) {
        at[0] = at[8];
        at[8] = load<f32x8>(x + 8);
        at[4] = load<f32x8>(x + 4);
        at[1] = load<f32x8>(x + 1);
        at[2] = middle(at[0], at[4]);
        at[3] = load<f32x8>(x + 3);
        at[5] = load<f32x8>(x + 5);
        at[6] = middle(at[4], at[8]);
        at[7] = load<f32x8>(x + 7);
    }
};

// Four outputs on, the upper half of the window becomes the lower.
template <int Taps>
requires(Taps > 4) struct Window<RealTap<f64x4>, Taps> {
    f64x4 at[Taps];

    KEPS_INLINE void begin(const double *x) {
        times<Taps - 4>([&](int k) KEPS_INLINE_LAMBDA { at[k + 4] = load<f64x4>(x + k); });
    }
    KEPS_INLINE void move(const double *x) {
        times<Taps - 4>([&](int k) KEPS_INLINE_LAMBDA { at[k] = at[k + 4]; });
        times<4>([&](int k)
                     KEPS_INLINE_LAMBDA { at[Taps - 4 + k] = load<f64x4>(x + Taps - 4 + k); });
    }
};

// Adds the products of Taps taps, the oldest at record, to n elements of y, a multiple of the
// lanes; the first pass stores them.
template <class Tap, int Taps, bool isFirst>
KEPS_INLINE void pass(const typename Tap::E *record, const typename Tap::E *x, typename Tap::E *y,
                      size n) {
    using V = typename Tap::V;
    Tap tap[Taps];
    times<Taps>([&](int k) KEPS_INLINE_LAMBDA { tap[k] = Tap::at(record - k * Tap::record); });
    Window<Tap, Taps> window;
    window.begin(x);
    for (size i = 0; i < n; i += V::lanes) {
        window.move(x + i);
        V sum = tap[0] * window.at[0];
        if constexpr (!isFirst) sum = load<V>(y + i) + sum;
        times<Taps - 1>([&](int k)
                            KEPS_INLINE_LAMBDA { sum = sum + tap[k + 1] * window.at[k + 1]; });
        store(y + i, sum);
    }
}

// The first pass, of taps taps, 1 to Taps.
template <class Tap, int Taps>
KEPS_INLINE void passOf(size taps, const typename Tap::E *record, const typename Tap::E *x,
                        typename Tap::E *y, size n) {
    if (taps == Taps) return pass<Tap, Taps, true>(record, x, y, n);
    if constexpr (Taps > 1) passOf<Tap, Taps - 1>(taps, record, x, y, n);
}

// One vector of outputs from all taps; loadFrom loads a vector of samples, or what exists of it.
template <class Tap, class Load>
KEPS_INLINE typename Tap::V wholeSum(const typename Tap::E *table, const typename Tap::E *x,
                                     size tapsLen, const Load &loadFrom) {
    const auto *record = table + (tapsLen - 1) * Tap::record;
    auto sum = Tap::at(record) * loadFrom(x);
    while (record != table) {
        record -= Tap::record;
        x += Tap::sample;
        sum = sum + Tap::at(record) * loadFrom(x);
    }
    return sum;
}

// count outputs at y from the samples at x on. Passes of a few taps over pieces of y that stay in
// the first cache; the last vector, which may overlap the one before, takes all taps at once.
template <class Tap>
KEPS_INLINE void vertical(const typename Tap::E *table, const typename Tap::E *x,
                          typename Tap::E *y, size count, size tapsLen) {
    using V = typename Tap::V;
    constexpr size tile = 4096 / sizeof(typename Tap::E);
    const size n = count * Tap::sample;
    if (n < V::lanes) {
        const auto partly = [n](const auto *p) KEPS_INLINE_LAMBDA { return loadPart<V>(p, n); };
        storePart(y, wholeSum<Tap>(table, x, tapsLen, partly), n);
        return;
    }
    const size last = n - V::lanes, body = (n - 1) / V::lanes * V::lanes;
    const size firstTaps = (tapsLen - 1) % Tap::perPass + 1;
    for (size i = 0; i < body; i += tile) {
        const size piece = body - i < tile ? body - i : tile;
        const auto *record = table + (tapsLen - 1) * Tap::record, *from = x + i;
        passOf<Tap, Tap::perPass>(firstTaps, record, from, y + i, piece);
        for (size done = firstTaps; done < tapsLen; done += Tap::perPass)
            pass<Tap, Tap::perPass, false>(record - done * Tap::record, from + done * Tap::sample,
                                           y + i, piece);
    }
    const auto whole = [](const auto *p) KEPS_INLINE_LAMBDA { return load<V>(p); };
    store(y + last, wholeSum<Tap>(table, x + last, tapsLen, whole));
}

} // namespace keps::fir
