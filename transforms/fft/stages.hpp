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

// A tile of the first pass: Run rows of V::lanes columns, rowStride points apart, are transformed
// down the columns; each column becomes a run, the one with number c at point rev(c) * laneStride
// of out. The transposition is spread over load and store so that no step needs a shuffle across
// the halves of a vector, which would take the adders' time. Place of a lane's run.
template <class In>
KEPS_INLINE size runOfLane(int lane, size laneStride) {
    constexpr int bits = In::V::lanes == 8 ? 3 : 2;
    return size{bitReversed(static_cast<std::uint32_t>(In::column(lane)), bits)} * laneStride;
}

// Two radix-4 stages. The first leaves pairs of results side by side in memory; the second reads
// halves of two vectors as one: results 0, 1 of two columns below, results 2, 3 above.
template <class In>
class FirstTile {
public:
    // Rows r, r + 4, r + 8, r + 12.
    KEPS_INLINE void gather(In in, size rowStride, int r) {
        planar<V> z[4];
        butterfly<4, V>([&](int j) KEPS_INLINE_LAMBDA { return in.load((r + 4 * j) * rowStride); },
                        [&](int k, planar<V> x) KEPS_INLINE_LAMBDA { z[k] = x; });
        times<2>([&](int k) KEPS_INLINE_LAMBDA {
            const planar<V> a = z[2 * k], b = z[2 * k + 1];
            storeAligned(pairs[r][0][0][k], unpackLower(a.re, b.re));
            storeAligned(pairs[r][0][1][k], unpackLower(a.im, b.im));
            storeAligned(pairs[r][1][0][k], unpackUpper(a.re, b.re));
            storeAligned(pairs[r][1][1][k], unpackUpper(a.im, b.im));
        });
    }
    // Two columns to their runs: 0, 1; 4, 5; 2, 3; 6, 7.
    template <class Data>
    KEPS_INLINE void scatter(Data out, size laneStride, const float *twiddles, int c) const {
        const auto both = [&](int j, int part) KEPS_INLINE_LAMBDA {
            const float(&from)[2][8] = pairs[j][c / 2][part];
            return c % 2 == 0 ? lowerHalves<V>(from[0], from[1]) : upperHalves<V>(from[0], from[1]);
        };
        planar<V> z[4];
        butterfly<4, V>(
            [&](int j) KEPS_INLINE_LAMBDA {
                const planar<V> x = {both(j, 0), both(j, 1)};
                return j == 0 ? x : x * loadPlanar<V>(twiddles + 16 * (j - 1));
            },
            [&](int q, planar<V> x) KEPS_INLINE_LAMBDA { z[q] = x; });
        const int lane = 2 * (c / 2) + 4 * (c % 2);
        times<2>([&](int group) KEPS_INLINE_LAMBDA {
            const planar<V> a = z[2 * group], b = z[2 * group + 1];
            out.store(runOfLane<In>(lane, laneStride) + 8 * group,
                      planar<V>{lowerPairs(a.re, b.re), lowerPairs(a.im, b.im)});
            out.store(runOfLane<In>(lane + 1, laneStride) + 8 * group,
                      planar<V>{upperPairs(a.re, b.re), upperPairs(a.im, b.im)});
        });
    }

private:
    using V = f32x8;
    alignas(64) float pairs[4][2][2][2][8]; // by r, columns, part, results
};

// The tile of 16 rows at once, or of one radix-4 or radix-8 stage of 64f.
template <int Run, class In, class Data>
KEPS_INLINE void firstTile(In in, size rowStride, Data out, size laneStride,
                           const typename In::T *twiddles) {
    if constexpr (Run == 16) {
        FirstTile<In> tile;
        times<4>([&](int r) KEPS_INLINE_LAMBDA { tile.gather(in, rowStride, r); });
        times<4>([&](int c) KEPS_INLINE_LAMBDA { tile.scatter(out, laneStride, twiddles, c); });
    } else {
        using V = typename In::V;
        planar<V> z[Run];
        butterfly<Run, V>([&](int j) KEPS_INLINE_LAMBDA { return in.load(j * rowStride); },
                          [&](int k, planar<V> x) KEPS_INLINE_LAMBDA { z[k] = x; });
        times<Run / 4>([&](int group) KEPS_INLINE_LAMBDA {
            planar<V> *rows = z + 4 * group;
            transposeSquare(rows[0].re, rows[2].re, rows[1].re, rows[3].re);
            transposeSquare(rows[0].im, rows[2].im, rows[1].im, rows[3].im);
            const int order[4] = {0, 2, 1, 3};
            times<4>([&](int lane) KEPS_INLINE_LAMBDA {
                out.store(runOfLane<In>(lane, laneStride) + 4 * group, rows[order[lane]]);
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
    const auto columns = [&](size t) KEPS_INLINE_LAMBDA { return in.at(bitRev[t * step] / 2); };
    Grouped<typename In::T> to{out};
    if constexpr (Run == 16) {
        // The rows of the next tile are read while this one's runs are written: neither waits for
        // the other.
        FirstTile<In> tile[2];
        times<4>([&](int r) KEPS_INLINE_LAMBDA { tile[0].gather(columns(0), rowStride, r); });
        size t = 0;
        for (; t + 1 < tiles; ++t, to = to.at(Run)) {
            const In next = columns(t + 1);
            times<4>([&](int i) KEPS_INLINE_LAMBDA {
                tile[(t + 1) % 2].gather(next, rowStride, i);
                tile[t % 2].scatter(to, laneStride, twiddles, i);
            });
        }
        times<4>([&](int c)
                     KEPS_INLINE_LAMBDA { tile[t % 2].scatter(to, laneStride, twiddles, c); });
    } else {
        for (size t = 0; t < tiles; ++t, to = to.at(Run))
            firstTile<Run>(columns(t), rowStride, to, laneStride, twiddles);
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
