// GetSize and Init: tests in their order, the plan's layout, its fields.
#pragma once

#include "frame/entry.hpp"
#include "transforms/fft/sizes.hpp"
#include "transforms/fft/tables.hpp"

namespace keps::fft {

// Pointers to all the tables of a plan; those that it does not have are null.
template <class T>
struct Tables {
    std::uint32_t *bitRev;
    T *core, *level[3], *real, *ccs;
};

// Level tables, the deepest first, behind the core table of the runs that are below the threshold.
template <class T>
inline void placeLevels(Carver &block, Tables<T> &tables, int order, int level) {
    const int bits = blockOrder<T>(order), run = order - bits;
    if (run >= Traits<T>::largeOrder)
        placeLevels(block, tables, run, level + 1);
    else
        tables.core = block.take<T>(stagePlans<T>.plan[run].twiddles);
    tables.level[level] = block.take<T>(levelTwiddles<T>(bits, run));
}

// order is that of the complex transform, realOrder that of the real one or -1.
template <class T>
inline Tables<T> placeTables(Carver &block, int order, int realOrder) {
    Tables<T> tables{};
    block.take<std::uint8_t>(headerBytes);
    if (order >= 7) {
        constexpr int tileBits = 2 * Traits<T>::tileOrder;
        if (order < Traits<T>::largeOrder) {
            tables.bitRev = block.take<std::uint32_t>((size{1} << (order - 2)) + 1, 4);
            tables.core = block.take<T>(stagePlans<T>.plan[order].twiddles);
        } else {
            tables.bitRev = block.take<std::uint32_t>(size{1} << (order - tileBits), 4);
            placeLevels(block, tables, order, 0);
        }
    }
    if (realOrder >= 0) {
        tables.real = block.take<T>(recombineElements<T>(realOrder));
        tables.ccs = block.take<T>(recombineElements<T>(realOrder));
    }
    return tables;
}

template <class T>
inline void fillLevels(const Tables<T> &tables, int order, int level, QuarterWave<T> wave) {
    const int bits = blockOrder<T>(order), run = order - bits;
    if (run >= Traits<T>::largeOrder)
        fillLevels(tables, run, level + 1, wave);
    else
        fillCore(tables.core, run, wave);
    fillLevel(tables.level[level], bits, run, wave);
}

struct Kind {
    int tag;
    bool real;
};

template <class T>
constexpr int orderLimit(Kind kind) {
    return Traits<T>::maxOrder + kind.real;
}

template <class T>
inline KepStatus getSize(Kind kind, int order, int flag, [[maybe_unused]] int hint,
                         int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) {
    // An order that no kind knows is refused before anything else, one beyond the kind's own
    // limit after everything else.
    if (static_cast<unsigned>(order) > 30) return kepStatusBadFftOrder;
    if (anyNull(specSize, specBufferSize, workSize)) return kepStatusNullPointer;
    if (!isScaleFlag(flag)) return kepStatusBadFftFlag;
    if (order > orderLimit<T>(kind)) return kepStatusBadFftOrder;
    const Sizes sizes = kind.real ? realSizes<T>(order) : complexSizes<T>(order);
    storeOne(specSize, static_cast<int32_t>(sizes.spec));
    storeOne(specBufferSize, static_cast<int32_t>(sizes.specBuffer));
    storeOne(workSize, static_cast<int32_t>(sizes.work));
    return kepStatusOk;
}

// Sets tag, directions and factor; false, and tag 0, for a flag that is none of the four.
template <class T>
inline bool setScale(Plan<T> &plan, int tag, int order, int flag) {
    plan.idTag = isScaleFlag(flag) ? tag : 0;
    if (plan.idTag == 0) return false;
    plan.scaleForward = flag == kepFftScaleForwardByN || flag == kepFftScaleBySqrtN;
    plan.scaleInverse = flag == kepFftScaleInverseByN || flag == kepFftScaleBySqrtN;
    const auto points = static_cast<T>(std::int64_t{1} << order);
    if (flag == kepFftScaleBySqrtN) {
        const double root = _mm_cvtsd_f64(_mm_sqrt_pd(_mm_set1_pd(static_cast<double>(points))));
        plan.scaleFactor = static_cast<T>(1.0 / root);
    } else if (flag != kepFftScaleNone) {
        plan.scaleFactor = T(1) / points;
    }
    return true;
}

template <class T>
inline KepStatus init(Kind kind, KepsFftPlan **handle, int order, int flag, int hint,
                      Kep8u *specMem, Kep8u *specBuffer) {
    if (anyNull(handle)) return kepStatusNullPointer;
    if (order < 0 || order > orderLimit<T>(kind)) return kepStatusBadFftOrder;
    if (anyNull(specMem)) return kepStatusNullPointer;
    Kep8u *memory = alignUp(specMem, 64);
    kepsZero_8u(memory, headerBytes);
    auto &plan = *reinterpret_cast<Plan<T> *>(memory);
    plan.hint = hint;
    plan.order = order;
    if (!setScale(plan, kind.tag, order, flag)) return kepStatusBadFftFlag;

    // Small transforms hold their constants in their code.
    if (order >= (kind.real ? 5 : 7)) {
        QuarterWave<T> wave = constantWave<T>();
        if (order > wave.order) {
            if (anyNull(specBuffer)) return kepStatusNullPointer;
            wave = generatedWave(order, reinterpret_cast<T *>(alignUp(specBuffer, 64)));
        }
        const int inner = order - kind.real;
        Carver block(memory);
        const Tables<T> tables = placeTables<T>(block, inner, kind.real ? order : -1);
        if (inner >= Traits<T>::largeOrder) {
            fillTileReversal<T>(tables.bitRev, inner);
            fillLevels(tables, inner, 0, wave);
        } else if (inner >= 7) {
            fillBitReversal<T>(tables.bitRev, inner);
            fillCore(tables.core, inner, wave);
        }
        if (inner >= 7) plan.workSize = static_cast<int32_t>(complexSizes<T>(inner).work - 64);
        if (kind.real) fillRecombine(tables.real, tables.ccs, order, wave);
        plan.bitRevTable = tables.bitRev;
        plan.twiddleCore = tables.core;
        plan.realRecombineTable = tables.real;
        plan.ccsRecombineTable = tables.ccs;
        for (int level = 0; level < 3; ++level) plan.levelTwiddle[level] = tables.level[level];
    }
    storeOne(handle, reinterpret_cast<KepsFftPlan *>(memory));
    return kepStatusOk;
}

} // namespace keps::fft
