// Direct sums over horizontal tap tables: outputs in vectors, one after another over all taps.
#pragma once

#include "filters/fir/shares.hpp"
#include "frame/simd/float256.hpp"

namespace keps::fir {

// 32f. Row p of the table holds in lane r the tap of sample p for output r, 0 where there is none;
// a broadcast sample times its row serves 8 outputs, and the rows go from the oldest sample on.
// Broadcasts never straddle two cache lines, which vectors of samples mostly do.
//
// Groups vectors of outputs, rows rows of the table; the last vector begins at y + last.
template <int Groups>
KEPS_INLINE void rowSums(const float *table, const float *x, float *y, size last, size rows) {
    const auto at = [last](int g)
                        KEPS_INLINE_LAMBDA { return g < Groups - 1 ? size{8} * g : last; };
    f32x8 sum[Groups];
    const f32x8 oldest = loadAligned<f32x8>(table);
    times<Groups>([&](int g)
                      KEPS_INLINE_LAMBDA { sum[g] = oldest * splat<f32x8>(loadOne(x + at(g))); });
    for (size p = 1; p < rows; ++p) {
        const f32x8 row = loadAligned<f32x8>(table + 8 * p);
        f32x8 product{};
        times<Groups + 1>([&](int g) KEPS_INLINE_LAMBDA {
            const f32x8 before = product;
            if (g < Groups) product = inRegister(row * splat<f32x8>(loadOne(x + at(g) + p)));
            if (g > 0) sum[g - 1] = inRegister(sum[g - 1] + before);
        });
    }
    times<Groups>([&](int g) KEPS_INLINE_LAMBDA { store(y + at(g), sum[g]); });
}

template <int Groups>
KEPS_INLINE void rowSumsOf(size groups, const float *table, const float *x, float *y, size last,
                           size rows) {
    if (groups == Groups) return rowSums<Groups>(table, x, y, last, rows);
    if constexpr (Groups > 1) rowSumsOf<Groups - 1>(groups, table, x, y, last, rows);
}

// count outputs. The last vector overlaps the one before it where count is no multiple of 8: its
// sums are the same ones.
KEPS_INLINE void horizontal(const float *table, const float *x, float *y, size count,
                            size tapsLen) {
    if (count < 8) {
        // Rows beyond the last sample serve no output that exists.
        f32x8 sum = loadAligned<f32x8>(table) * splat<f32x8>(loadOne(x));
        for (size p = 1; p < tapsLen + count - 1; ++p)
            sum = sum + loadAligned<f32x8>(table + 8 * p) * splat<f32x8>(loadOne(x + p));
        return storePart(y, sum, count);
    }
    inEvenShares<8>(count, 8, [&](size groups, size last, size step) KEPS_INLINE_LAMBDA {
        rowSumsOf<8>(groups, table, x, y, last, tapsLen + 7);
        x += step;
        y += step;
    });
}

// 64f. Two rows: the taps from the oldest sample on, and the same one place later. A pair of
// samples times the pair of row 0 serves an even output, of row 1 the next odd one; each half of
// a vector is one output's pair. Even and odd sums over a block of taps are joined at its end.
inline constexpr size pairsPerBlock = 32;

// 4 * Quads outputs over pairs of the rows; row 1 lies apart elements behind row 0.
template <int Quads, bool isFirst>
KEPS_INLINE void pairSums(const double *row, size apart, const double *x, double *y, size pairs) {
    f64x4 even[Quads], odd[Quads];
    const f64x4 first = loadTwice(row), second = loadTwice(row + apart);
    times<Quads>([&](int q) KEPS_INLINE_LAMBDA {
        const f64x4 samples = load<f64x4>(x + 4 * q);
        even[q] = first * samples;
        odd[q] = second * samples;
    });
    for (const double *const end = row + 2 * pairs; (row += 2) < end;) {
        x += 2;
        const f64x4 firstPair = loadTwice(row), secondPair = loadTwice(row + apart);
        times<Quads>([&](int q) KEPS_INLINE_LAMBDA {
            const f64x4 samples = inRegister(load<f64x4>(x + 4 * q));
            even[q] = inRegister(even[q] + inRegister(firstPair * samples));
            odd[q] = inRegister(odd[q] + inRegister(secondPair * samples));
        });
    }
    times<Quads>([&](int q) KEPS_INLINE_LAMBDA {
        const f64x4 joined = addNeighbours(even[q], odd[q]);
        store(y + 4 * q, isFirst ? joined : load<f64x4>(y + 4 * q) + joined);
    });
}

template <int Quads>
KEPS_INLINE void pairBlocks(const double *table, const double *x, double *y, size tapsLen) {
    const size apart = (tapsLen + 2) & ~size{1};
    size pairs = tapsLen / 2 + 1;
    pairSums<Quads, true>(table, apart, x, y, pairs < pairsPerBlock ? pairs : pairsPerBlock);
    while ((pairs -= pairsPerBlock) > 0) {
        table += 2 * pairsPerBlock;
        x += 2 * pairsPerBlock;
        pairSums<Quads, false>(table, apart, x, y, pairs < pairsPerBlock ? pairs : pairsPerBlock);
    }
}

// Vectors vectors of outputs by plain sums from the oldest sample on; the last begins at y + last.
template <int Vectors>
KEPS_INLINE void plainSums(const double *taps, const double *x, double *y, size last,
                           size tapsLen) {
    const auto at = [last](int v)
                        KEPS_INLINE_LAMBDA { return v < Vectors - 1 ? size{4} * v : last; };
    f64x4 sum[Vectors];
    const f64x4 oldest = splat<f64x4>(loadOne(taps));
    times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { sum[v] = oldest * load<f64x4>(x + at(v)); });
    for (size j = 1; j < tapsLen; ++j) {
        const f64x4 tap = splat<f64x4>(loadOne(taps + j));
        times<Vectors>(
            [&](int v) KEPS_INLINE_LAMBDA { sum[v] = sum[v] + tap * load<f64x4>(x + at(v) + j); });
    }
    times<Vectors>([&](int v) KEPS_INLINE_LAMBDA { store(y + at(v), sum[v]); });
}

// count outputs. The pairs read one sample more than their outputs need, so the last 8 to 15
// outputs are plain sums.
KEPS_INLINE void horizontal(const double *table, const double *x, double *y, size count,
                            size tapsLen) {
    if (count < 4) {
        f64x4 sum = splat<f64x4>(loadOne(table)) * loadPart<f64x4>(x, count);
        for (size j = 1; j < tapsLen; ++j)
            sum = sum + splat<f64x4>(loadOne(table + j)) * loadPart<f64x4>(x + j, count);
        return storePart(y, sum, count);
    }
    while (count >= 16 + 8) {
        pairBlocks<4>(table, x, y, tapsLen);
        x += 16;
        y += 16;
        count -= 16;
    }
    if (count >= 8 + 8) {
        pairBlocks<2>(table, x, y, tapsLen);
        x += 8;
        y += 8;
        count -= 8;
    }
    if (count > 12) return plainSums<4>(table, x, y, count - 4, tapsLen);
    if (count > 8) return plainSums<3>(table, x, y, count - 4, tapsLen);
    if (count > 4) return plainSums<2>(table, x, y, count - 4, tapsLen);
    plainSums<1>(table, x, y, 0, tapsLen);
}

} // namespace keps::fir
