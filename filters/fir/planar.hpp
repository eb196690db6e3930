// Direct sums over complex tap records for many outputs: the samples are split into real and
// imaginary parts once for all taps, which spares a shuffle with every product and leaves the
// multipliers and adders as the limit. The same products in the same order as in vertical.hpp.
#pragma once

#include "filters/fir/shares.hpp"
#include "filters/fir/vertical.hpp"
#include "frame/simd/complex.hpp"

namespace keps::fir {

// Outputs and taps at once: all that a split holds stays in the first cache.
inline constexpr size outputsPerSplit = 256, tapsPerSplit = 256;

template <class Tap>
struct Split {
    using E = typename Tap::E;
    using V = typename Tap::V;
    // The last split of a call takes up to a vector of outputs more.
    static constexpr size outputs = outputsPerSplit + V::lanes;
    alignas(32) E re[outputs + tapsPerSplit], im[outputs + tapsPerSplit];
    planar<V> sums[outputs / V::lanes]; // a vector of outputs each

    // n samples, at least V::lanes.
    KEPS_INLINE void take(const E *x, size n) {
        const auto vectorAt = [&](size i) KEPS_INLINE_LAMBDA {
            const auto z = loadSplit<V>(x + 2 * i);
            store(re + i, z.re);
            store(im + i, z.im);
        };
        for (size i = 0; i < n - V::lanes; i += V::lanes) vectorAt(i);
        vectorAt(n - V::lanes);
    }
};

// Vectors vectors of sums, over taps records from the oldest down; the last vector's samples begin
// at re + last and im + last.
template <class Tap, int Vectors, bool isFirst>
KEPS_INLINE void planarSums(const typename Tap::E *oldest, size taps, const typename Tap::E *re,
                            const typename Tap::E *im, planar<typename Tap::V> *sums, size last) {
    using V = typename Tap::V;
    const auto product = [&](int v, size j, planar<V> tap) KEPS_INLINE_LAMBDA {
        const size at = j + (v < Vectors - 1 ? size{V::lanes} * v : last);
        return planar<V>{inRegister(load<V>(re + at)), inRegister(load<V>(im + at))} * tap;
    };
    planar<V> sum[Vectors];
    const auto tapAt = [&](size j)
                           KEPS_INLINE_LAMBDA { return Tap::planarAt(oldest - j * Tap::record); };
    if constexpr (isFirst) {
        const planar<V> tap = tapAt(0);
        times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { sum[v] = product(v, 0, tap); });
    } else {
        times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { sum[v] = sums[v]; });
    }
    for (size j = isFirst; j < taps; ++j) {
        const planar<V> tap = tapAt(j);
        times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { sum[v] = sum[v] + product(v, j, tap); });
    }
    times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { sums[v] = sum[v]; });
}

template <class Tap, int Vectors, bool isFirst>
KEPS_INLINE void planarSumsOf(size vectors, const typename Tap::E *oldest, size taps,
                              const typename Tap::E *re, const typename Tap::E *im,
                              planar<typename Tap::V> *sums, size last) {
    if (vectors == Vectors)
        return planarSums<Tap, Vectors, isFirst>(oldest, taps, re, im, sums, last);
    if constexpr (Vectors > 1)
        planarSumsOf<Tap, Vectors - 1, isFirst>(vectors, oldest, taps, re, im, sums, last);
}

// The sums of n outputs, in shares of at most four vectors: eight registers of sums.
template <class Tap, bool isFirst>
KEPS_INLINE void addTaps(Split<Tap> &split, const typename Tap::E *oldest, size taps, size n) {
    using V = typename Tap::V;
    const auto *re = split.re, *im = split.im;
    auto *sums = split.sums;
    inEvenShares<4>(n, V::lanes, [&](size vectors, size last, size step) KEPS_INLINE_LAMBDA {
        planarSumsOf<Tap, 4, isFirst>(vectors, oldest, taps, re, im, sums, last);
        re += step;
        im += step;
        sums += vectors;
    });
}

// count outputs, at least a vector, at y from the samples at x on.
template <class Tap>
KEPS_INLINE void splitVertical(const typename Tap::E *table, const typename Tap::E *x,
                               typename Tap::E *y, size count, size tapsLen) {
    using V = typename Tap::V;
    Split<Tap> split;
    while (count > 0) {
        const size n = count <= Split<Tap>::outputs ? count : outputsPerSplit;
        for (size done = 0; done < tapsLen;) {
            const size left = tapsLen - done, taps = left < tapsPerSplit ? left : tapsPerSplit;
            const auto *oldest = table + (left - 1) * Tap::record;
            split.take(x + 2 * done, n + taps - 1);
            if (done == 0)
                addTaps<Tap, true>(split, oldest, taps, n);
            else
                addTaps<Tap, false>(split, oldest, taps, n);
            done += taps;
        }
        // The last vector lies over the one before it where outputs don't fill it.
        const auto *sums = split.sums;
        for (size i = 0; i < n - V::lanes; i += V::lanes) storeJoined(y + 2 * i, *sums++);
        storeJoined(y + 2 * (n - V::lanes), *sums);
        x += 2 * n;
        y += 2 * n;
        count -= n;
    }
}

// A split pays from a few taps on.
template <class Tap>
KEPS_INLINE void complexVertical(const typename Tap::E *table, const typename Tap::E *x,
                                 typename Tap::E *y, size count, size tapsLen) {
    if (tapsLen < 4 || count < Tap::V::lanes) return vertical<Tap>(table, x, y, count, tapsLen);
    splitVertical<Tap>(table, x, y, count, tapsLen);
}

} // namespace keps::fir
