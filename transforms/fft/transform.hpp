// Transforms by a plan: entry tests, choice of path by order, scaling, packed layouts.
#pragma once

#include "frame/blocks.hpp"
#include "frame/entry.hpp"
#include "transforms/fft/recombine.hpp"
#include "transforms/fft/small_real.hpp"
#include "transforms/fft/stages.hpp"
#include "transforms/fft/stand_in.hpp"

namespace keps::fft {

template <class T>
KEPS_INLINE const Plan<T> &planOf(const KepsFftPlan *plan) {
    return *reinterpret_cast<const Plan<T> *>(plan);
}

// Plan, its tag, data, work: in this order.
template <class T, class... Data>
KEPS_INLINE KepStatus refusePlan(int tag, const KepsFftPlan *plan, const Kep8u *work,
                                 const Data *...data) {
    if (anyNull(plan)) return kepStatusNullPointer;
    if (planOf<T>(plan).idTag != tag) return kepStatusContextMismatch;
    if (anyNull(data...)) return kepStatusNullPointer;
    if (anyNull(work) && planOf<T>(plan).workSize > 0) return kepStatusNullPointer;
    return kepStatusOk;
}

template <class T>
KEPS_INLINE T *alignedWork(const Plan<T> &plan, Kep8u *work) {
    return plan.workSize > 0 ? reinterpret_cast<T *>(alignUp(work, 64)) : nullptr;
}

template <class T>
KEPS_INLINE void scaleBy(T factor, T *data, size len) {
    if constexpr (sizeof(T) == 4)
        kepsMulC_32f_I(factor, data, static_cast<int32_t>(len));
    else
        kepsMulC_64f_I(factor, data, static_cast<int32_t>(len));
}

template <class T>
KEPS_INLINE void moveDown(T *data, size len) {
    if constexpr (sizeof(T) == 4)
        kepsMove_32f(data + 1, data, static_cast<int32_t>(len));
    else
        kepsMove_64f(data + 1, data, static_cast<int32_t>(len));
}

template <class T>
KEPS_INLINE void moveUp(const T *src, T *dst, size len) {
    if constexpr (sizeof(T) == 4)
        kepsMove_32f(src, dst, static_cast<int32_t>(len));
    else
        kepsMove_64f(src, dst, static_cast<int32_t>(len));
}

// Interleaved points of 2^order, which is the plan's order or, for a real plan, one less.
template <Direction direction, class T>
KEPS_INLINE void runComplex(const T *src, T *dst, const Plan<T> &plan, int order, T *work) {
    const bool scaled = direction == forward ? plan.scaleForward : plan.scaleInverse;
    if (order <= 6) {
        (scaled ? small::tbl_cFFT_small<T, direction, true>
                : small::tbl_cFFT_small<T, direction, false>)[order](src, dst, plan.scaleFactor);
        return;
    }
    const bool onDst = src != dst && reinterpret_cast<std::uintptr_t>(dst) % 32 == 0;
    owns_cRadix4Norm(Interleaved<const T, direction>{src}, Interleaved<T, direction>{dst}, order,
                     plan.twiddleCore, plan.bitRevTable, onDst ? dst : work);
    if (scaled) scaleBy(plan.scaleFactor, dst, size{2} << order);
}

template <Direction direction, class T>
KEPS_INLINE KepStatus complexTransform(int tag, const T *src, T *dst, const KepsFftPlan *handle,
                                       Kep8u *work) {
    if (const KepStatus refused = refusePlan<T>(tag, handle, work, src, dst)) return refused;
    const Plan<T> &plan = planOf<T>(handle);
    runComplex<direction>(src, dst, plan, plan.order, alignedWork(plan, work));
    return kepStatusOk;
}

// A real signal to its spectrum.
template <Layout layout, class T>
KEPS_INLINE KepStatus realToSpectrum(int tag, const T *src, T *dst, const KepsFftPlan *handle,
                                     Kep8u *work) {
    if (const KepStatus refused = refusePlan<T>(tag, handle, work, src, dst)) return refused;
    const Plan<T> &plan = planOf<T>(handle);
    if (plan.order <= 4) {
        (plan.scaleForward ? small::tbl_rFFT_small<T, forward, layout, true>
                           : small::tbl_rFFT_small<T, forward, layout, false>)[plan.order](
            src, dst, plan.scaleFactor);
        return kepStatusOk;
    }
    const size points = size{1} << (plan.order - 1), reals = 2 * points;
    runComplex<forward>(src, dst, plan, plan.order - 1, alignedWork(plan, work));
    const T re = loadOne(dst), im = loadOne(dst + 1), middle = re - im;
    owns_cRealRecombine(dst, points, plan.realRecombineTable);
    storeOne(dst, re + im);
    if constexpr (layout == layoutPerm) {
        storeOne(dst + 1, middle);
    } else if constexpr (layout == layoutCcs) {
        storeOne(dst + 1, T(0));
        storeOne(dst + reals, middle);
        storeOne(dst + reals + 1, T(0));
    } else {
        moveDown(dst + 1, reals - 2);
        storeOne(dst + reals - 1, middle);
    }
    return kepStatusOk;
}

template <Layout layout, class T>
KEPS_INLINE KepStatus spectrumToReal(int tag, const T *src, T *dst, const KepsFftPlan *handle,
                                     Kep8u *work) {
    if (const KepStatus refused = refusePlan<T>(tag, handle, work, src, dst)) return refused;
    const Plan<T> &plan = planOf<T>(handle);
    if (plan.order <= 4) {
        (plan.scaleInverse ? small::tbl_rFFT_small<T, inverse, layout, true>
                           : small::tbl_rFFT_small<T, inverse, layout, false>)[plan.order](
            src, dst, plan.scaleFactor);
        return kepStatusOk;
    }
    const size points = size{1} << (plan.order - 1), reals = 2 * points;
    const T zeroth = loadOne(src);
    const T middle = loadOne(src + (layout == layoutCcs    ? reals
                                    : layout == layoutPerm ? 1
                                                           : reals - 1));
    if constexpr (layout == layoutPack) {
        moveUp(src + 1, dst + 2, reals - 2);
        src = dst;
    }
    owns_cCcsRecombine(src, dst, points, plan.ccsRecombineTable);
    storeOne(dst, zeroth + middle);
    storeOne(dst + 1, zeroth - middle);
    runComplex<inverse>(dst, dst, plan, plan.order - 1, alignedWork(plan, work));
    return kepStatusOk;
}

} // namespace keps::fft
