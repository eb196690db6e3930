// Direct sums over vertical tap tables: a record per tap, in natural tap order, whose vector is
// multiplied with vectors of neighbouring samples. Every output is the sum of its products from the
// oldest sample to the newest, each added in turn, so all ways through this file agree bit for bit.
#pragma once

#include "frame/simd/complex.hpp"

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
    KEPS_INLINE V operator*(V x) const { return re * x + im * swapParts(x); }
};
struct ComplexTap64 {
    using V = f64x4;
    using E = double;
    static constexpr int record = 8, sample = 2, perPass = 4;
    V re, im; // re, re ... and im, -im ...

    KEPS_INLINE static ComplexTap64 at(const E *p) {
        return {loadAligned<V>(p), loadAligned<V>(p + 4)};
    }
    KEPS_INLINE V operator*(V x) const { return re * x - im * swapParts(x); }
};

// Vectors of samples mostly straddle cache lines, which costs a load unit twice, and so the load
// units set the pace; vectors shuffled from their neighbours cost the adders and multipliers as
// much.
//
// Adds the products of Taps taps, the oldest at record, to n elements of y, a multiple of the
// lanes; the first pass stores them.
template <class Tap, int Taps, bool isFirst>
KEPS_INLINE void pass(const typename Tap::E *record, const typename Tap::E *x, typename Tap::E *y,
                      size n) {
    using V = typename Tap::V;
    Tap tap[Taps];
    times<Taps>([&](int k) KEPS_INLINE_LAMBDA { tap[k] = Tap::at(record - k * Tap::record); });
    for (size i = 0; i < n; i += V::lanes) {
        V sum = tap[0] * load<V>(x + i);
        if constexpr (!isFirst) sum = load<V>(y + i) + sum;
        times<Taps - 1>([&](int k) KEPS_INLINE_LAMBDA {
            sum = sum + tap[k + 1] * load<V>(x + i + (k + 1) * Tap::sample);
        });
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
// the first cache; a last vector that overlaps the one before takes all taps at once.
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
    const size last = n - V::lanes, body = n / V::lanes * V::lanes;
    const size firstTaps = (tapsLen - 1) % Tap::perPass + 1;
    for (size i = 0; i < body; i += tile) {
        const size piece = body - i < tile ? body - i : tile;
        const auto *record = table + (tapsLen - 1) * Tap::record, *from = x + i;
        passOf<Tap, Tap::perPass>(firstTaps, record, from, y + i, piece);
        for (size done = firstTaps; done < tapsLen; done += Tap::perPass)
            pass<Tap, Tap::perPass, false>(record - done * Tap::record, from + done * Tap::sample,
                                           y + i, piece);
    }
    if (body == n) return;
    const auto whole = [](const auto *p) KEPS_INLINE_LAMBDA { return load<V>(p); };
    store(y + last, wholeSum<Tap>(table, x + last, tapsLen, whole));
}

} // namespace keps::fir
