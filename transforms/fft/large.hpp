// The blocked path for transforms that outgrow the caches: bit reversal tile by tile, with the
// first pass done on each tile; contiguous sub-transforms; then stages across them in tiles of
// columns.
#pragma once

#include "transforms/fft/stages.hpp"

namespace keps::fft {

template <class T>
inline constexpr size tileSide = size{1} << Traits<T>::tileOrder;

template <class T>
KEPS_INLINE void copyRow(const T *from, T *to) {
    using V = typename Traits<T>::V;
    for (size i = 0; i < tileSide<T>; i += V::lanes) store(to + i, load<V>(from + i));
}

// The tile of rows rowStride points apart that begins at in, copied to memory; as a form again.
template <class T, Direction direction>
KEPS_INLINE Interleaved<const T, direction> gather(Interleaved<const T, direction> in,
                                                   size rowStride, T *memory) {
    for (size row = 0; row < tileSide<T>; ++row) {
        const T *from = in.p + 2 * row * rowStride;
        T *to = memory + 2 * row * tileSide<T>;
        copyRow(from, to);
        copyRow(from + tileSide<T>, to + tileSide<T>);
    }
    return {memory};
}
template <class T>
KEPS_INLINE Split<const T> gather(Split<const T> in, size rowStride, T *memory) {
    T *imags = memory + tileSide<T> * tileSide<T>;
    for (size row = 0; row < tileSide<T>; ++row) {
        copyRow(in.re + row * rowStride, memory + row * tileSide<T>);
        copyRow(in.im + row * rowStride, imags + row * tileSide<T>);
    }
    return {memory, imags};
}

// Brings row of a tile near the caches while another tile is worked on: rows lie on pages of their
// own, and nothing else foresees the next one.
template <class T>
KEPS_INLINE void prefetchRow(const T *from) {
    constexpr size line = 64 / sizeof(T);
    for (size i = 0; i < tileSide<T>; i += line) __builtin_prefetch(from + i);
}
template <class T, Direction direction>
KEPS_INLINE void prefetchRow(Interleaved<const T, direction> in, size at) {
    prefetchRow(in.p + 2 * at);
    prefetchRow(in.p + 2 * at + tileSide<T>);
}
template <class T>
KEPS_INLINE void prefetchRow(Split<const T> in, size at) {
    prefetchRow(in.re + at);
    prefetchRow(in.im + at);
}

// The first pass on a gathered tile: its columns become runs, bit-reversed both ways, from place
// base of data's points on. The tile to be gathered next is prefetched from next, unless null.
template <class In, class Data>
void tileToRuns(In tile, Data data, size base, size points, const typename In::T *core,
                const In *next) {
    using T = typename In::T;
    constexpr int lanes = In::V::lanes, laneBits = lanes == 8 ? 3 : 2;
    constexpr int bits = Traits<T>::tileOrder, runBits = sizeof(T) == 4 ? 4 : 2;
    constexpr std::uint32_t run = 1 << runBits, side = 1 << bits, blocks = side / run;
    constexpr std::uint32_t calls = side / lanes * blocks;
    [[maybe_unused]] FirstTile<In> pair[2]; // one gathered while the other is scattered
    size pending = 0;
    for (std::uint32_t c = 0; c < side / lanes; ++c) {
        for (std::uint32_t r = 0; r < blocks; ++r) {
            const std::uint32_t call = c * blocks + r;
            const std::uint32_t end = next ? (call + 1) * side / calls : 0;
            for (std::uint32_t row = call * side / calls; row < end; ++row)
                prefetchRow(*next, row * (points / side));
            const size to = base + size{run} * bitReversed(r, bits - runBits) +
                            size{bitReversed(c, bits - laneBits)} * (points / side);
            const In from = tile.at(r * side + c * lanes);
            if constexpr (run == 16) {
                if (call == 0)
                    pair[0].gather(from, size{blocks} * side);
                else
                    pair[(call - 1) % 2].scatterAndGather(data.at(pending), points / lanes, core,
                                                          pair[call % 2], from,
                                                          size{blocks} * side);
                pending = to;
            } else {
                firstTile<run>(from, size{blocks} * side, data.at(to), points / lanes, core);
            }
        }
    }
    if constexpr (run == 16) pair[(calls - 1) % 2].scatter(data.at(pending), points / lanes, core);
}

// Bit reversal and first pass of 2^order points; work holds two tiles. data may be in's own
// memory.
template <class In, class Data>
void owns_cFft_BitRev(In in, Data data, int order, bool inPlace, const std::uint32_t *partner,
                      const typename In::T *core, typename In::T *work) {
    using T = typename In::T;
    constexpr size side = tileSide<T>;
    const size points = size{1} << order, rowStride = points / side;
    const size tiles = rowStride / side;
    T *second = work + 2 * side * side;
    for (size q = 0; q < tiles; ++q) {
        const size column = side * q, other = partner[q];
        if (!inPlace) {
            const In next = in.at(partner[q + 1 < tiles ? q + 1 : q]);
            tileToRuns(gather(in.at(other), rowStride, work), data, column, points, core, &next);
        } else if (column <= other) {
            const In a = gather(in.at(column), rowStride, work);
            const In b = column < other ? gather(in.at(other), rowStride, second) : a;
            tileToRuns<In>(a, data, other, points, core, nullptr);
            if (column < other) tileToRuns<In>(b, data, column, points, core, nullptr);
        }
    }
}

// The radix-4 stage that ends a level, as two layers of radix 2: of each factor w stored, the first
// layer takes the square, the second w and -i w.
template <class Data, class Out>
KEPS_INLINE void joinLast(Data data, size fromStride, Out out, size toStride, size columns,
                          const typename Data::T *twiddles) {
    using V = typename Data::V;
    for (size k = 0; k < columns; k += V::lanes, twiddles += 2 * V::lanes) {
        const planar<V> w = loadPlanar<V>(twiddles), w2 = w * w;
        const planar<V> a = data.load(k), b = data.load(k + fromStride) * w2;
        const planar<V> c = data.load(k + 2 * fromStride);
        const planar<V> d = data.load(k + 3 * fromStride) * w2;
        const planar<V> p = a + b, q = a - b, r = (c + d) * w, s = (c - d) * w;
        out.store(k, p + r);
        out.store(k + toStride, minusI(q, s));
        out.store(k + 2 * toStride, p - r);
        out.store(k + 3 * toStride, plusI(q, s));
    }
}

// A transform of a level: runs of 2^runBits points in data, 2^blockBits of them.
struct Level {
    int blockBits, runBits;
    size runPoints() const { return size{1} << runBits; }
};

// The stages of a level over one tile of columns from column on: the first reads the runs, the last
// writes them, or the caller's array; between them the tile stays in work. Returns where the next
// tile's twiddles begin.
template <class Data, class Out>
const typename Data::T *owns_cFft_Fact(Data data, Out out, Level level, size column,
                                       const typename Data::T *twiddles, typename Data::T *work) {
    using T = typename Data::T;
    constexpr size columns = size{1} << Traits<T>::columnOrder;
    const Grouped<T> tile{work};
    const size run = level.runPoints();
    const auto group = [&](int done, int bits, size q) KEPS_INLINE_LAMBDA {
        const size first = q << bits, wide = columns << done;
        if (done == 0) {
            const Data rows = data.at(first * run + column);
            bits == 2 ? joinRuns<4>(rows, run, tile.at(first * wide), wide, wide, twiddles)
                      : joinRuns<8>(rows, run, tile.at(first * wide), wide, wide, twiddles);
        } else {
            joinRuns<8>(tile.at(first * wide), wide, tile.at(first * wide), wide, wide, twiddles);
        }
    };
    int done = 0;
    while (done + 2 < level.blockBits) {
        const int bits = levelStageBits(level.blockBits, done);
        for (size q = 0; q < size{1} << (level.blockBits - done - bits); ++q) group(done, bits, q);
        twiddles += size{2} * ((1 << bits) - 1) * (columns << done);
        done += bits;
    }
    for (size row = 0; row < size{1} << done; ++row, twiddles += 2 * columns)
        joinLast(tile.at(row * columns), columns << done, out.at(row * run + column), run << done,
                 columns, twiddles);
    return twiddles;
}

KEPS_INLINE void scaleBy(float factor, float *data, size len) {
    kepsMulC_32f_I(factor, data, static_cast<int32_t>(len));
}
KEPS_INLINE void scaleBy(double factor, double *data, size len) {
    kepsMulC_64f_I(factor, data, static_cast<int32_t>(len));
}

template <class T>
KEPS_INLINE void scaleRun(Grouped<T> run, size points, T factor) {
    scaleBy(factor, run.p, 2 * points);
}
template <class T>
KEPS_INLINE void scaleRun(GroupedSplit<T> run, size points, T factor) {
    scaleBy(factor, run.re, points);
    scaleBy(factor, run.im, points);
}

// Sub-transforms behind the first pass, scaled on the lowest level, then the level's own stages.
template <class Data, class Out>
void owns_cFft_BlkStep(Data data, Out out, int order, int levelNumber,
                       const Plan<typename Data::T> &plan, bool scaled, typename Data::T *work) {
    using T = typename Data::T;
    const int bits = blockOrder<T>(order);
    const Level level{bits, order - bits};
    const size run = level.runPoints();
    for (size q = 0; q < size{1} << bits; ++q) {
        const Data part = data.at(q * run);
        if (level.runBits >= Traits<T>::largeOrder) {
            owns_cFft_BlkStep(part, part, level.runBits, levelNumber + 1, plan, scaled, work);
        } else {
            const StagePlan &stages = stagePlans<T>.plan[level.runBits];
            throughStages(part, run, stages, firstPassStages<T>(), stages.count - 1,
                          plan.twiddleCore);
            if (scaled) scaleRun(part, run, plan.scaleFactor);
        }
    }
    const T *twiddles = plan.levelTwiddle[levelNumber];
    for (size column = 0; column < run; column += size{1} << Traits<T>::columnOrder)
        twiddles = owns_cFft_Fact(data, out, level, column, twiddles, work);
}

// data is out's memory in the form that the stages work on.
template <class In, class Data, class Out>
void owns_cFft_Large(In in, Data data, Out out, int order, bool inPlace,
                     const Plan<typename In::T> &plan, bool scaled, typename In::T *work) {
    owns_cFft_BitRev(in, data, order, inPlace, plan.bitRevTable, plan.twiddleCore, work);
    owns_cFft_BlkStep(data, out, order, 0, plan, scaled, work);
}

} // namespace keps::fft
