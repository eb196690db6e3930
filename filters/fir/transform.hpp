// The transforms that the FFT path of a FIR filter is made of, by element type: real signals in
// the Perm layout, complex ones as they are.
#pragma once

#include "frame/worker.h"

namespace keps::fir {

// Bytes of a plan, of its initialisation and of the work area of a transform.
struct FftSizes {
    std::int32_t plan = 0, init = 0, work = 0;
};

template <class T>
struct Transform;

template <>
struct Transform<Kep32f> {
    static KepStatus sizes(int order, FftSizes &s) {
        return kepsFFTGetSize_R_32f(order, kepFftScaleInverseByN, 0, &s.plan, &s.init, &s.work);
    }
    static KepStatus init(KepsFftPlan **plan, int order, Kep8u *memory, Kep8u *buffer) {
        return kepsFFTInit_R_32f(plan, order, kepFftScaleInverseByN, 0, memory, buffer);
    }
    static KepStatus forward(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) {
        return kepsFFTFwd_RToPerm_32f(src, dst, plan, work);
    }
    static KepStatus inverse(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) {
        return kepsFFTInv_PermToR_32f_I(srcDst, plan, work);
    }
    static void multiply(const Kep32f *spectrum, Kep32f *srcDst, int len) {
        kepsMulPerm_32f_I(spectrum, srcDst, len);
    }
};

template <>
struct Transform<Kep64f> {
    static KepStatus sizes(int order, FftSizes &s) {
        return kepsFFTGetSize_R_64f(order, kepFftScaleInverseByN, 0, &s.plan, &s.init, &s.work);
    }
    static KepStatus init(KepsFftPlan **plan, int order, Kep8u *memory, Kep8u *buffer) {
        return kepsFFTInit_R_64f(plan, order, kepFftScaleInverseByN, 0, memory, buffer);
    }
    static KepStatus forward(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) {
        return kepsFFTFwd_RToPerm_64f(src, dst, plan, work);
    }
    static KepStatus inverse(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) {
        return kepsFFTInv_PermToR_64f_I(srcDst, plan, work);
    }
    static void multiply(const Kep64f *spectrum, Kep64f *srcDst, int len) {
        kepsMulPerm_64f_I(spectrum, srcDst, len);
    }
};

template <>
struct Transform<Kep32fc> {
    static KepStatus sizes(int order, FftSizes &s) {
        return kepsFFTGetSize_C_32fc(order, kepFftScaleInverseByN, 0, &s.plan, &s.init, &s.work);
    }
    static KepStatus init(KepsFftPlan **plan, int order, Kep8u *memory, Kep8u *buffer) {
        return kepsFFTInit_C_32fc(plan, order, kepFftScaleInverseByN, 0, memory, buffer);
    }
    static KepStatus forward(const Kep32fc *src, Kep32fc *dst, const KepsFftPlan *plan,
                             Kep8u *work) {
        return kepsFFTFwd_CToC_32fc(src, dst, plan, work);
    }
    static KepStatus inverse(Kep32fc *srcDst, const KepsFftPlan *plan, Kep8u *work) {
        return kepsFFTInv_CToC_32fc_I(srcDst, plan, work);
    }
    static void multiply(const Kep32fc *spectrum, Kep32fc *srcDst, int len) {
        kepsMul_32fc_I(spectrum, srcDst, len);
    }
};

template <>
struct Transform<Kep64fc> {
    static KepStatus sizes(int order, FftSizes &s) {
        return kepsFFTGetSize_C_64fc(order, kepFftScaleInverseByN, 0, &s.plan, &s.init, &s.work);
    }
    static KepStatus init(KepsFftPlan **plan, int order, Kep8u *memory, Kep8u *buffer) {
        return kepsFFTInit_C_64fc(plan, order, kepFftScaleInverseByN, 0, memory, buffer);
    }
    static KepStatus forward(const Kep64fc *src, Kep64fc *dst, const KepsFftPlan *plan,
                             Kep8u *work) {
        return kepsFFTFwd_CToC_64fc(src, dst, plan, work);
    }
    static KepStatus inverse(Kep64fc *srcDst, const KepsFftPlan *plan, Kep8u *work) {
        return kepsFFTInv_CToC_64fc_I(srcDst, plan, work);
    }
    static void multiply(const Kep64fc *spectrum, Kep64fc *srcDst, int len) {
        kepsMul_64fc_I(spectrum, srcDst, len);
    }
};

} // namespace keps::fir
