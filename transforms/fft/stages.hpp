// The stages of a transform in cache: a first pass that reads the source in bit-reversed order and
// leaves grouped data, stages in place, and a last one that writes the caller's order.
#pragma once

#include "transforms/fft/butterfly.hpp"

namespace keps::fft {

// The first pass makes runs of firstRun points out of rows of columns. 32f takes two radix-4
// stages in one go: after one, a run would be half a vector.
template <class T>
constexpr int firstPassStages() {
    return sizeof(T) == 4 ? 2 : 1;
}
template <class T>
constexpr int firstRunBits(const StagePlan &plan) {
    return sizeof(T) == 4 ? 4 : plan.stage[0].bits;
}

// Transforms Run rows of V::lanes columns, rowStride points apart, down the columns, and writes
// each column as a run: the one with number c to point rev(c) * laneStride of out, which the
// transposition does on the way. twiddles are those of the second radix-4 stage.
template <int Run, class In, class Data>
KEPS_INLINE void firstTile(In in, size rowStride, Data out, size laneStride,
                           const typename In::T *twiddles) {
    using V = typename In::V;
    const auto place = [&](int lane) KEPS_INLINE_LAMBDA {
        constexpr int bits = V::lanes == 8 ? 3 : 2;
        return size{bitReversed(static_cast<std::uint32_t>(In::column(lane)), bits)} * laneStride;
    };
    if constexpr (V::lanes == 8) {
        // Each radix-4 result is transposed within its half vectors: turned[r][c] holds the run of
        // column c in the lower, of column c + 4 in the upper half.
        static_assert(Run == 16);
        alignas(64) typename V::element turned[4][4][2][8];
        times<4>([&](int r) KEPS_INLINE_LAMBDA {
            planar<V> z[4];
            butterfly<4, V>(
                [&](int j) KEPS_INLINE_LAMBDA { return in.load((r + 4 * j) * rowStride); },
                [&](int k, planar<V> x) KEPS_INLINE_LAMBDA { z[k] = x; });
            transposeHalves(z[0].re, z[1].re, z[2].re, z[3].re);
            times<4>([&](int c) KEPS_INLINE_LAMBDA { storeAligned(turned[r][c][0], z[c].re); });
            transposeHalves(z[0].im, z[1].im, z[2].im, z[3].im);
            times<4>([&](int c) KEPS_INLINE_LAMBDA { storeAligned(turned[r][c][1], z[c].im); });
        });
        times<4>([&](int c) KEPS_INLINE_LAMBDA {
            planar<V> z[4];
            butterfly<4, V>(
                [&](int j) KEPS_INLINE_LAMBDA {
                    const planar<V> x = loadPlanar<V>(turned[j][c][0]);
                    return j == 0 ? x : x * loadPlanar<V>(twiddles + 16 * (j - 1));
                },
                [&](int q, planar<V> x) KEPS_INLINE_LAMBDA { z[q] = x; });
            times<2>([&](int group) KEPS_INLINE_LAMBDA {
                const planar<V> a = z[2 * group], b = z[2 * group + 1];
                out.store(place(c) + 8 * group,
                          planar<V>{lowerHalves(a.re, b.re), lowerHalves(a.im, b.im)});
                out.store(place(c + 4) + 8 * group,
                          planar<V>{upperHalves(a.re, b.re), upperHalves(a.im, b.im)});
            });
        });
    } else {
        planar<V> z[Run];
        butterfly<Run, V>([&](int j) KEPS_INLINE_LAMBDA { return in.load(j * rowStride); },
                          [&](int k, planar<V> x) KEPS_INLINE_LAMBDA { z[k] = x; });
        times<Run / 4>([&](int group) KEPS_INLINE_LAMBDA {
            planar<V> *rows = z + 4 * group;
            transposeSquare(rows[0].re, rows[1].re, rows[2].re, rows[3].re);
            transposeSquare(rows[0].im, rows[1].im, rows[2].im, rows[3].im);
            times<4>([&](int lane) KEPS_INLINE_LAMBDA {
                out.store(place(lane) + 4 * group, rows[lane]);
            });
        });
    }
}

// The first pass over 2^order points of in; bitRev tells where each tile of columns begins.
template <int Run, class In>
void firstPass(In in, typename In::T *out, int order, const std::uint32_t *bitRev,
               const typename In::T *twiddles) {
    constexpr int lanes = In::V::lanes;
    const size points = size{1} << order, rowStride = points / Run, laneStride = points / lanes;
    constexpr size step = Run / 4;
    const size tiles = points / (Run * lanes);
    for (size t = 0; t < tiles; ++t) {
        if (order > 11) {
            const size next = bitRev[(t + 1) * step] / 2;
            times<Run>([&](int r) KEPS_INLINE_LAMBDA { in.prefetch(next + r * rowStride); });
        }
        firstTile<Run>(in.at(bitRev[t * step] / 2), rowStride,
                       Grouped<typename In::T>{out + 2 * Run * t}, laneStride, twiddles);
    }
}

// R runs of columns points, fromStride apart in data, joined to one, whose R parts go toStride
// apart to out.
template <int R, class Data, class Out>
KEPS_INLINE void joinRuns(Data data, size fromStride, Out out, size toStride, size columns,
                          const typename Data::T *twiddles) {
    using V = typename Data::V;
    for (size k = 0; k < columns; k += V::lanes, twiddles += 2 * V::lanes * (R - 1)) {
        butterfly<R, V>(
            [&](int j) KEPS_INLINE_LAMBDA {
                const planar<V> x = data.load(k + runOf<R>(j) * fromStride);
                return j == 0 ? x : x * loadPlanar<V>(twiddles + 2 * V::lanes * (j - 1));
            },
            [&](int q, planar<V> x) KEPS_INLINE_LAMBDA { out.store(k + q * toStride, x); });
    }
}

// One stage over one run of data, in place or to the caller's array.
template <class Data, class Out>
void joinRuns(Data data, Out out, const Stage &stage, const typename Data::T *core) {
    const size columns = size{1} << stage.columnBits;
    const typename Data::T *twiddles = core + stage.twiddles;
    stage.bits == 2 ? joinRuns<4>(data, columns, out, columns, columns, twiddles)
                    : joinRuns<8>(data, columns, out, columns, columns, twiddles);
}

// Brings the run at data through stages first to last of the plan. A run that fits the block is
// taken stage by stage; a longer one part by part, so that every part is joined while it is in the
// nearest cache that holds it.
template <class Data>
void throughStages(Data data, const StagePlan &plan, int first, int last,
                   const typename Data::T *core) {
    const Stage &stage = plan.stage[last];
    const size columns = size{1} << stage.columnBits;
    if (columns << stage.bits > blockPoints<typename Data::T> && last > first) {
        for (size r = 0; r < size{1} << stage.bits; ++r)
            throughStages(data.at(r * columns), plan, first, last - 1, core);
        joinRuns(data, data, stage, core);
        return;
    }
    const size end = columns << stage.bits;
    for (int s = first; s <= last; ++s) {
        const Stage &inner = plan.stage[s];
        for (size at = 0; at < end; at += size{1} << (inner.columnBits + inner.bits))
            joinRuns(data.at(at), data.at(at), inner, core);
    }
}

// A transform from natural order to natural order. buffer holds 2^order points and may be out's
// own memory; it is 32-byte aligned.
template <class In, class Out>
void owns_cRadix4Norm(In in, Out out, int order, const typename In::T *core,
                      const std::uint32_t *bitRev, typename In::T *buffer) {
    using T = typename In::T;
    const StagePlan &plan = stagePlans<T>.plan[order];
    if constexpr (sizeof(T) == 4)
        firstPass<16>(in, buffer, order, bitRev, core);
    else if (plan.stage[0].bits == 2)
        firstPass<4>(in, buffer, order, bitRev, core);
    else
        firstPass<8>(in, buffer, order, bitRev, core);
    const Grouped<T> data{buffer};
    constexpr int first = firstPassStages<T>();
    const int last = plan.count - 1;
    const size columns = size{1} << plan.stage[last].columnBits;
    if (last > first && columns << plan.stage[last].bits <= blockPoints<T>) {
        // In one block: stage by stage over all of it.
        for (int s = first; s < last; ++s) {
            const Stage &stage = plan.stage[s];
            for (size at = 0; at < size{1} << order;
                 at += size{1} << (stage.columnBits + stage.bits))
                joinRuns(data.at(at), data.at(at), stage, core);
        }
    } else if (last > first) {
        for (size r = 0; r < size{1} << plan.stage[last].bits; ++r)
            throughStages(data.at(r * columns), plan, first, last - 1, core);
    }
    joinRuns(data, out, plan.stage[last], core);
}

} // namespace keps::fft
