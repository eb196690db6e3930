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

// Two radix-4 stages. The first leaves results 0 and 1 (and 2 and 3) of two columns side by side in
// memory: c, c', c, c'; the second reads halves of two vectors as one, so that results 0 and 1 lie
// below and 2 and 3 above, and parts the columns only when all is done.
template <class In>
class FirstTile {
public:
    // Rows to pairs, pairs to runs. Each is a function of its own: joined, they leave the compiler
    // short of registers, and it keeps a second copy of every pair.
    [[gnu::noinline]] void gather(In in, size rowStride) {
        for (int r = 0; r < 4; ++r) in.at(r * rowStride).radix4Pairs(4 * rowStride, pairs[r]);
    }
    template <class Data>
    [[gnu::noinline]] void scatter(Data out, size laneStride, const float *twiddles) const {
        times<4>([&](int c) KEPS_INLINE_LAMBDA { columns(out, laneStride, twiddles, c); });
    }
    // This tile's scatter and next's gather in turns: neither waits for the other's memory.
    template <class Data>
    [[gnu::noinline]] void scatterAndGather(Data out, size laneStride, const float *twiddles,
                                            FirstTile &next, In in, size rowStride) const {
        times<4>([&](int c) KEPS_INLINE_LAMBDA {
            in.at(c * rowStride).radix4Pairs(4 * rowStride, next.pairs[c]);
            columns(out, laneStride, twiddles, c);
        });
    }

private:
    using V = f32x8;
    // Two columns to their runs.
    template <class Data>
    KEPS_INLINE void columns(Data out, size laneStride, const float *twiddles, int c) const {
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
        const int column = In::firstColumn(c);
        times<2>([&](int group) KEPS_INLINE_LAMBDA {
            const planar<V> a = z[2 * group], b = z[2 * group + 1];
            out.store(runOf(column, laneStride) + 8 * group,
                      planar<V>{firstOfPairs(a.re, b.re), firstOfPairs(a.im, b.im)});
            out.store(runOf(column + 1, laneStride) + 8 * group,
                      planar<V>{secondOfPairs(a.re, b.re), secondOfPairs(a.im, b.im)});
        });
    }
    KEPS_INLINE static size runOf(int column, size laneStride) {
        return size{bitReversed(static_cast<std::uint32_t>(column), 3)} * laneStride;
    }
    alignas(64) float pairs[4][2][2][2][8]; // by r, columns, part, results
};

// The tile of 16 rows at once, or of one radix-4 or radix-8 stage of 64f.
template <int Run, class In, class Data>
KEPS_INLINE void firstTile(In in, size rowStride, Data out, size laneStride,
                           const typename In::T *twiddles) {
    if constexpr (Run == 16) {
        FirstTile<In> tile;
        tile.gather(in, rowStride);
        tile.scatter(out, laneStride, twiddles);
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
    for (size t = 0; t < tiles; ++t, to = to.at(Run))
        firstTile<Run>(columns(t), rowStride, to, laneStride, twiddles);
}

// The first pass of 32f for what outgrows the first cache: each tile's rows are fetched behind the
// work on the one before.
template <class In>
[[gnu::noinline]] void firstPassInTurns(In in, float *out, int order, const std::uint32_t *bitRev,
                                        const float *twiddles) {
    const size points = size{1} << order, rowStride = points / 16, laneStride = points / 8;
    const size tiles = points / 128;
    const auto columns = [&](size t) KEPS_INLINE_LAMBDA { return in.at(bitRev[4 * t] / 2); };
    Grouped<float> to{out};
    FirstTile<In> pair[2];
    pair[0].gather(columns(0), rowStride);
    for (size t = 1; t < tiles; ++t, to = to.at(16))
        pair[(t - 1) % 2].scatterAndGather(to, laneStride, twiddles, pair[t % 2], columns(t),
                                           rowStride);
    pair[(tiles - 1) % 2].scatter(to, laneStride, twiddles);
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

// One stage over all runs in points points of data, in place or to the caller's array.
template <int R, class Data, class Out>
[[gnu::noinline]] void joinAll(Data data, Out out, size points, size columns,
                               const typename Data::T *twiddles) {
    for (size at = 0; at < points; at += R * columns)
        joinRuns<R>(data.at(at), columns, out.at(at), columns, columns, twiddles);
}
template <class Data, class Out>
KEPS_INLINE void throughStage(Data data, Out out, size points, const Stage &stage,
                              const typename Data::T *core) {
    const size columns = size{1} << stage.columnBits;
    const typename Data::T *twiddles = core + stage.twiddles;
    stage.bits == 2 ? joinAll<4>(data, out, points, columns, twiddles)
                    : joinAll<8>(data, out, points, columns, twiddles);
}

// Brings points points of data, one run of stage last, through the stages from first to last. What
// fits the block is taken stage by stage; longer runs part by part, so that every part is joined
// while it is in the nearest cache that holds it.
template <class Data>
void throughStages(Data data, size points, const StagePlan &plan, int first, int last,
                   const typename Data::T *core) {
    if (points <= blockPoints<typename Data::T>) {
        for (int s = first; s <= last; ++s) throughStage(data, data, points, plan.stage[s], core);
    } else if (first <= last) {
        const Stage &stage = plan.stage[last];
        const size part = points >> stage.bits;
        for (size at = 0; at < points; at += part)
            throughStages(data.at(at), part, plan, first, last - 1, core);
        throughStage(data, data, points, stage, core);
    }
}

// A transform from natural order to natural order, times the plan's factor where scaled. buffer
// holds 2^order points and may be out's own memory; it is 32-byte aligned.
template <class In, class Out>
void owns_cRadix4Norm(In in, Out out, int order, const Plan<typename In::T> &fft, bool scaled,
                      typename In::T *buffer) {
    using T = typename In::T;
    const T *core = fft.twiddleCore;
    const StagePlan &plan = stagePlans<T>.plan[order];
    if constexpr (sizeof(T) == 4)
        order < 12 ? firstPass<16>(in, buffer, order, fft.bitRevTable, core)
                   : firstPassInTurns(in, buffer, order, fft.bitRevTable, core);
    else if (plan.stage[0].bits == 2)
        firstPass<4>(in, buffer, order, fft.bitRevTable, core);
    else
        firstPass<8>(in, buffer, order, fft.bitRevTable, core);
    constexpr int first = firstPassStages<T>();
    const Grouped<T> data{buffer};
    const size points = size{1} << order;
    const Stage &stage = plan.stage[plan.count - 1];
    const size part = points <= blockPoints<T> ? points : points >> stage.bits;
    for (size at = 0; at < points; at += part)
        throughStages(data.at(at), part, plan, first, plan.count - 2, core);
    if (scaled)
        throughStage(data, Scaled<Out>{out, fft.scaleFactor}, points, stage, core);
    else
        throughStage(data, out, points, stage, core);
}

} // namespace keps::fft
