// Fourier transforms of double precision: plans, complex, split and real transforms.
#include "transforms/fft/init.hpp"
#include "transforms/fft/transform.hpp"

using namespace keps;
using namespace keps::fft;

namespace {

const double *reals(const Kep64fc *p) {
    return reinterpret_cast<const double *>(p);
}
double *reals(Kep64fc *p) {
    return reinterpret_cast<double *>(p);
}

} // namespace

// clang-format off
KepStatus kepsFFTGetSize_C_64fc(int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) { return getSize<double>({tagC_64fc, false}, order, flag, hint, specSize, specBufferSize, workSize); }
KepStatus kepsFFTGetSize_C_64f(int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) { return getSize<double>({tagC_64f, false}, order, flag, hint, specSize, specBufferSize, workSize); }
KepStatus kepsFFTGetSize_R_64f(int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) { return getSize<double>({tagR_64f, true}, order, flag, hint, specSize, specBufferSize, workSize); }

KepStatus kepsFFTInit_C_64fc(KepsFftPlan **plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem, Kep8u *specBuffer) { return init<double>({tagC_64fc, false}, plan, order, flag, hint, specMem, specBuffer); }
KepStatus kepsFFTInit_C_64f(KepsFftPlan **plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem, Kep8u *specBuffer) { return init<double>({tagC_64f, false}, plan, order, flag, hint, specMem, specBuffer); }
KepStatus kepsFFTInit_R_64f(KepsFftPlan **plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem, Kep8u *specBuffer) { return init<double>({tagR_64f, true}, plan, order, flag, hint, specMem, specBuffer); }

KepStatus kepsFFTFwd_CToC_64fc(const Kep64fc *src, Kep64fc *dst, const KepsFftPlan *plan, Kep8u *work) { return complexTransform<forward>(tagC_64fc, reals(src), reals(dst), plan, work); }
KepStatus kepsFFTInv_CToC_64fc(const Kep64fc *src, Kep64fc *dst, const KepsFftPlan *plan, Kep8u *work) { return complexTransform<inverse>(tagC_64fc, reals(src), reals(dst), plan, work); }
KepStatus kepsFFTFwd_CToC_64fc_I(Kep64fc *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_CToC_64fc(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_CToC_64fc_I(Kep64fc *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_CToC_64fc(srcDst, srcDst, plan, work); }

KepStatus kepsFFTFwd_CToC_64f(const Kep64f *srcRe, const Kep64f *srcIm, Kep64f *dstRe, Kep64f *dstIm, const KepsFftPlan *plan, Kep8u *work) { return splitTransform<forward>(tagC_64f, srcRe, srcIm, dstRe, dstIm, plan, work); }
KepStatus kepsFFTInv_CToC_64f(const Kep64f *srcRe, const Kep64f *srcIm, Kep64f *dstRe, Kep64f *dstIm, const KepsFftPlan *plan, Kep8u *work) { return splitTransform<inverse>(tagC_64f, srcRe, srcIm, dstRe, dstIm, plan, work); }
KepStatus kepsFFTFwd_CToC_64f_I(Kep64f *re, Kep64f *im, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_CToC_64f(re, im, re, im, plan, work); }
KepStatus kepsFFTInv_CToC_64f_I(Kep64f *re, Kep64f *im, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_CToC_64f(re, im, re, im, plan, work); }

KepStatus kepsFFTFwd_RToCCS_64f(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) { return realToSpectrum<layoutCcs>(tagR_64f, src, dst, plan, work); }
KepStatus kepsFFTFwd_RToPack_64f(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) { return realToSpectrum<layoutPack>(tagR_64f, src, dst, plan, work); }
KepStatus kepsFFTFwd_RToPerm_64f(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) { return realToSpectrum<layoutPerm>(tagR_64f, src, dst, plan, work); }
KepStatus kepsFFTInv_CCSToR_64f(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) { return spectrumToReal<layoutCcs>(tagR_64f, src, dst, plan, work); }
KepStatus kepsFFTInv_PackToR_64f(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) { return spectrumToReal<layoutPack>(tagR_64f, src, dst, plan, work); }
KepStatus kepsFFTInv_PermToR_64f(const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work) { return spectrumToReal<layoutPerm>(tagR_64f, src, dst, plan, work); }

KepStatus kepsFFTFwd_RToCCS_64f_I(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_RToCCS_64f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTFwd_RToPack_64f_I(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_RToPack_64f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTFwd_RToPerm_64f_I(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_RToPerm_64f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_CCSToR_64f_I(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_CCSToR_64f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_PackToR_64f_I(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_PackToR_64f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_PermToR_64f_I(Kep64f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_PermToR_64f(srcDst, srcDst, plan, work); }
// clang-format on
