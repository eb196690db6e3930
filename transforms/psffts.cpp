// Fourier transforms of single precision: plans, complex, split and real transforms.
#include "transforms/fft/init.hpp"
#include "transforms/fft/transform.hpp"

using namespace keps;
using namespace keps::fft;

namespace {

const float *reals(const Kep32fc *p) {
    return reinterpret_cast<const float *>(p);
}
float *reals(Kep32fc *p) {
    return reinterpret_cast<float *>(p);
}

} // namespace

// clang-format off
KepStatus kepsFFTGetSize_C_32fc(int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) { return getSize<float>({tagC_32fc, false}, order, flag, hint, specSize, specBufferSize, workSize); }
KepStatus kepsFFTGetSize_C_32f(int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) { return getSize<float>({tagC_32f, false}, order, flag, hint, specSize, specBufferSize, workSize); }
KepStatus kepsFFTGetSize_R_32f(int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize, int32_t *workSize) { return getSize<float>({tagR_32f, true}, order, flag, hint, specSize, specBufferSize, workSize); }

KepStatus kepsFFTInit_C_32fc(KepsFftPlan **plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem, Kep8u *specBuffer) { return init<float>({tagC_32fc, false}, plan, order, flag, hint, specMem, specBuffer); }
KepStatus kepsFFTInit_C_32f(KepsFftPlan **plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem, Kep8u *specBuffer) { return init<float>({tagC_32f, false}, plan, order, flag, hint, specMem, specBuffer); }
KepStatus kepsFFTInit_R_32f(KepsFftPlan **plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem, Kep8u *specBuffer) { return init<float>({tagR_32f, true}, plan, order, flag, hint, specMem, specBuffer); }

KepStatus kepsFFTFwd_CToC_32fc(const Kep32fc *src, Kep32fc *dst, const KepsFftPlan *plan, Kep8u *work) { return complexTransform<forward>(tagC_32fc, reals(src), reals(dst), plan, work); }
KepStatus kepsFFTInv_CToC_32fc(const Kep32fc *src, Kep32fc *dst, const KepsFftPlan *plan, Kep8u *work) { return complexTransform<inverse>(tagC_32fc, reals(src), reals(dst), plan, work); }
KepStatus kepsFFTFwd_CToC_32fc_I(Kep32fc *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_CToC_32fc(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_CToC_32fc_I(Kep32fc *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_CToC_32fc(srcDst, srcDst, plan, work); }

KepStatus kepsFFTFwd_CToC_32f(const Kep32f *srcRe, const Kep32f *srcIm, Kep32f *dstRe, Kep32f *dstIm, const KepsFftPlan *plan, Kep8u *work) { return splitTransform<forward>(tagC_32f, srcRe, srcIm, dstRe, dstIm, plan, work); }
KepStatus kepsFFTInv_CToC_32f(const Kep32f *srcRe, const Kep32f *srcIm, Kep32f *dstRe, Kep32f *dstIm, const KepsFftPlan *plan, Kep8u *work) { return splitTransform<inverse>(tagC_32f, srcRe, srcIm, dstRe, dstIm, plan, work); }
KepStatus kepsFFTFwd_CToC_32f_I(Kep32f *re, Kep32f *im, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_CToC_32f(re, im, re, im, plan, work); }
KepStatus kepsFFTInv_CToC_32f_I(Kep32f *re, Kep32f *im, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_CToC_32f(re, im, re, im, plan, work); }

KepStatus kepsFFTFwd_RToCCS_32f(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) { return realToSpectrum<layoutCcs>(tagR_32f, src, dst, plan, work); }
KepStatus kepsFFTFwd_RToPack_32f(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) { return realToSpectrum<layoutPack>(tagR_32f, src, dst, plan, work); }
KepStatus kepsFFTFwd_RToPerm_32f(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) { return realToSpectrum<layoutPerm>(tagR_32f, src, dst, plan, work); }
KepStatus kepsFFTInv_CCSToR_32f(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) { return spectrumToReal<layoutCcs>(tagR_32f, src, dst, plan, work); }
KepStatus kepsFFTInv_PackToR_32f(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) { return spectrumToReal<layoutPack>(tagR_32f, src, dst, plan, work); }
KepStatus kepsFFTInv_PermToR_32f(const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work) { return spectrumToReal<layoutPerm>(tagR_32f, src, dst, plan, work); }

KepStatus kepsFFTFwd_RToCCS_32f_I(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_RToCCS_32f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTFwd_RToPack_32f_I(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_RToPack_32f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTFwd_RToPerm_32f_I(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTFwd_RToPerm_32f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_CCSToR_32f_I(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_CCSToR_32f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_PackToR_32f_I(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_PackToR_32f(srcDst, srcDst, plan, work); }
KepStatus kepsFFTInv_PermToR_32f_I(Kep32f *srcDst, const KepsFftPlan *plan, Kep8u *work) { return kepsFFTInv_PermToR_32f(srcDst, srcDst, plan, work); }
// clang-format on
