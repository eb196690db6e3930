// Transforms by a plan: entry tests, choice of path by order, scaling, packed layouts.
#pragma once

#include "frame/blocks.hpp"
#include "frame/entry.hpp"
#include "transforms/fft/large.hpp"
#include "transforms/fft/recombine.hpp"
#include "transforms/fft/small_real.hpp"

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

// Moves between arrays that may overlap.
KEPS_INLINE void moveReals(const float *src, float *dst, size len) {
    kepsMove_32f(src, dst, static_cast<int32_t>(len));
}
KEPS_INLINE void moveReals(const double *src, double *dst, size len) {
    kepsMove_64f(src, dst, static_cast<int32_t>(len));
}

template <Direction direction, class T>
KEPS_INLINE KepStatus runSmall(const T *src, T *dst, const Plan<T> &plan, int order) {
    const bool scaled = direction == forward ? plan.scaleForward : plan.scaleInverse;
    return (scaled ? small::tbl_cFFT_small<T, direction, true>
                   : small::tbl_cFFT_small<T, direction, false>)[order](src, dst, plan.scaleFactor);
}

// Interleaved points of 2^order, which is the plan's order or, for a real plan, one less.
template <Direction direction, class T>
KEPS_INLINE void runComplex(const T *src, T *dst, const Plan<T> &plan, int order, T *work) {
    if (order <= 6) {
        runSmall<direction>(src, dst, plan, order);
        return;
    }
    const bool scaled = direction == forward ? plan.scaleForward : plan.scaleInverse;
    const Interleaved<const T, direction> in{src};
    const Interleaved<T, direction> out{dst};
    if (order >= Traits<T>::largeOrder)
        return owns_cFft_Large(in, Grouped<T>{dst}, out, order, src == dst, plan, scaled, work);
    const bool onDst = src != dst && reinterpret_cast<std::uintptr_t>(dst) % 32 == 0;
    owns_cRadix4Norm(in, out, order, plan, scaled, onDst ? dst : work);
}

template <Direction direction, class T>
KEPS_INLINE KepStatus complexTransform(int tag, const T *src, T *dst, const KepsFftPlan *handle,
                                       Kep8u *work) {
    if (const KepStatus refused = refusePlan<T>(tag, handle, work, src, dst)) return refused;
    const Plan<T> &plan = planOf<T>(handle);
    if (plan.order <= 6) return runSmall<direction>(src, dst, plan, plan.order);
    runComplex<direction>(src, dst, plan, plan.order, alignedWork(plan, work));
    return kepStatusOk;
}

// Two arrays each; the stages run in work, whose one area they cross faster than two. The inverse
// is the forward transform with real and imaginary parts exchanged.
template <Direction direction, class T>
KEPS_INLINE KepStatus splitTransform(int tag, const T *srcRe, const T *srcIm, T *dstRe, T *dstIm,
                                     const KepsFftPlan *handle, Kep8u *workMem) {
    if (const KepStatus refused = refusePlan<T>(tag, handle, workMem, srcRe, srcIm, dstRe, dstIm))
        return refused;
    if constexpr (direction == inverse) {
        std::swap(srcRe, srcIm);
        std::swap(dstRe, dstIm);
    }
    const Plan<T> &plan = planOf<T>(handle);
    const int order = plan.order;
    const bool scaled = direction == forward ? plan.scaleForward : plan.scaleInverse;
    if (order <= 6) {
        return (scaled ? small::tbl_crFFT_small<T, true> : small::tbl_crFFT_small<T, false>)[order](
            srcRe, srcIm, dstRe, dstIm, plan.scaleFactor);
    }
    T *work = alignedWork(plan, workMem);
    const Split<const T> in{srcRe, srcIm};
    const Split<T> out{dstRe, dstIm};
    if (order >= Traits<T>::largeOrder) {
        owns_cFft_Large(in, GroupedSplit<T>{dstRe, dstIm}, out, order, srcRe == dstRe, plan, scaled,
                        work);
        return kepStatusOk;
    }
    owns_cRadix4Norm(in, out, order, plan, scaled, work);
    return kepStatusOk;
}

// A real signal to its spectrum.
template <Layout layout, class T>
KEPS_INLINE KepStatus realToSpectrum(int tag, const T *src, T *dst, const KepsFftPlan *handle,
                                     Kep8u *work) {
    if (const KepStatus refused = refusePlan<T>(tag, handle, work, src, dst)) return refused;
    const Plan<T> &plan = planOf<T>(handle);
    if (plan.order <= 4) {
        return (plan.scaleForward ? small::tbl_rFFT_small<T, forward, layout, true>
                                  : small::tbl_rFFT_small<T, forward, layout, false>)[plan.order](
            src, dst, plan.scaleFactor);
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
        moveReals(dst + 2, dst + 1, reals - 2);
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
        return (plan.scaleInverse ? small::tbl_rFFT_small<T, inverse, layout, true>
                                  : small::tbl_rFFT_small<T, inverse, layout, false>)[plan.order](
            src, dst, plan.scaleFactor);
    }
    const size points = size{1} << (plan.order - 1), reals = 2 * points;
    const T zeroth = loadOne(src);
    const T middle = loadOne(src + (layout == layoutCcs    ? reals
                                    : layout == layoutPerm ? 1
                                                           : reals - 1));
    if constexpr (layout == layoutPack) {
        moveReals(src + 1, dst + 2, reals - 2);
        src = dst;
    }
    owns_cCcsRecombine(src, dst, points, plan.ccsRecombineTable);
    storeOne(dst, zeroth + middle);
    storeOne(dst + 1, zeroth - middle);
    runComplex<inverse>(dst, dst, plan, plan.order - 1, alignedWork(plan, work));
    return kepStatusOk;
}

} // namespace keps::fft
