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
    using T = typename In::T;
    using V = typename In::V;
    constexpr int lanes = V::lanes;
    alignas(64) T rows[Run][2][lanes];
    const auto put = [&](int row, planar<V> z) KEPS_INLINE_LAMBDA {
        storeAligned(rows[row][0], z.re);
        storeAligned(rows[row][1], z.im);
    };
    if constexpr (Run == 16) {
        planar<V> z[16];
        times<4>([&](int r) KEPS_INLINE_LAMBDA {
            planar<V> *a = z + 4 * r;
            times<4>([&](int j) KEPS_INLINE_LAMBDA { a[j] = in.load((r + 4 * j) * rowStride); });
            butterfly<4>(a);
        });
        times<4>([&](int k) KEPS_INLINE_LAMBDA {
            planar<V> a[4] = {z[k], z[4 + k], z[8 + k], z[12 + k]};
            if (k > 0) {
                times<3>([&](int j) KEPS_INLINE_LAMBDA {
                    const T *w = twiddles + 2 * lanes * j + k;
                    a[j + 1] = a[j + 1] * planar<V>{splat<V>(w[0]), splat<V>(w[lanes])};
                });
            }
            butterfly<4>(a);
            times<4>([&](int q) KEPS_INLINE_LAMBDA { put(k + 4 * q, a[q]); });
        });
    } else {
        planar<V> a[Run];
        times<Run>([&](int j) KEPS_INLINE_LAMBDA { a[j] = in.load(j * rowStride); });
        butterfly<Run>(a);
        times<Run>([&](int q) KEPS_INLINE_LAMBDA { put(q, a[q]); });
    }
    times<Run / lanes>([&](int group) KEPS_INLINE_LAMBDA {
        times<2>([&](int part) KEPS_INLINE_LAMBDA {
            transposed(rows[lanes * group][part], 2 * lanes, [&](int lane, V x) KEPS_INLINE_LAMBDA {
                constexpr int bits = lanes == 8 ? 3 : 2;
                const auto c = static_cast<std::uint32_t>(In::column(lane));
                const size run = size{bitReversed(c, bits)} * laneStride;
                store(out.part(part, run + lanes * group), x);
            });
        });
    });
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
        const size next = bitRev[(t + 1) * step] / 2;
        times<Run>([&](int r) KEPS_INLINE_LAMBDA { in.prefetch(next + r * rowStride); });
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
        planar<V> a[R];
        a[0] = data.load(k);
        times<R - 1>([&](int j) KEPS_INLINE_LAMBDA {
            a[j + 1] = data.load(k + runOf<R>(j + 1) * fromStride) *
                       loadPlanar<V>(twiddles + 2 * V::lanes * j);
        });
        butterfly<R>(a);
        times<R>([&](int q) KEPS_INLINE_LAMBDA { out.store(k + q * toStride, a[q]); });
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
