/** @file
 * Fourier transforms.
 */
#ifndef KEPS_TRANSFORMS_H
#define KEPS_TRANSFORMS_H

#include "keps_status.h"
#include "keps_types.h"

/** A plan of Fourier transforms of 2^order points, made by `kepsFFTInit` in the caller's memory. It
 * holds addresses inside itself, so it cannot be copied or moved; it needs no release. Transforms
 * only read it: threads may share it, each with a work buffer of its own. */
typedef struct KepsFftPlan KepsFftPlan;

/** @name FFT sizes
 * @{ */
/** Sizes in bytes for a transform of 2^@p order points: @p specSize of the plan's memory, @p
 * specBufferSize of a buffer that `kepsFFTInit` needs while it runs, @p workSize of the buffer of
 * each transform. Both buffers may be null where their size is 0. @p flag is one of #KepFftScale;
 * @p hint is ignored. Orders go from 0 to 28 for `C_32fc` and `C_32f`, 29 for `R_32f`, 27 for
 * `C_64fc` and `C_64f`, 28 for `R_64f`.
 * @return #kepStatusOk; in the order of the tests: #kepStatusBadFftOrder for an order outside 0 to
 * 30, #kepStatusNullPointer, #kepStatusBadFftFlag, #kepStatusBadFftOrder. */
KEPS_FN(KepStatus, kepsFFTGetSize_C_32fc,
        (int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize,
         int32_t *workSize));
KEPS_FN(KepStatus, kepsFFTGetSize_C_32f,
        (int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize,
         int32_t *workSize));
KEPS_FN(KepStatus, kepsFFTGetSize_R_32f,
        (int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize,
         int32_t *workSize));
KEPS_FN(KepStatus, kepsFFTGetSize_C_64fc,
        (int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize,
         int32_t *workSize));
KEPS_FN(KepStatus, kepsFFTGetSize_C_64f,
        (int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize,
         int32_t *workSize));
KEPS_FN(KepStatus, kepsFFTGetSize_R_64f,
        (int32_t order, int32_t flag, int32_t hint, int32_t *specSize, int32_t *specBufferSize,
         int32_t *workSize));
/** @} */

/** @name FFT plans
 * @{ */
/** Builds a plan in @p specMem, rounded up to a 64-byte boundary, and stores its address in @p
 * plan: transforms take that address. @p order and @p flag are those of the size query; @p
 * specBuffer is free again afterwards and needed from order 11 on. @p hint is stored and never
 * read. The scale factor is 1/N, or 1/sqrt(N) for #kepFftScaleBySqrtN, N = 2^order.
 * @return #kepStatusOk; in the order of the tests: #kepStatusNullPointer for @p plan,
 * #kepStatusBadFftOrder, #kepStatusNullPointer for @p specMem, #kepStatusBadFftFlag,
 * #kepStatusNullPointer for @p specBuffer. After a bad flag the memory holds no plan. */
KEPS_FN(KepStatus, kepsFFTInit_C_32fc,
        (KepsFftPlan * *plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem,
         Kep8u *specBuffer));
KEPS_FN(KepStatus, kepsFFTInit_C_32f,
        (KepsFftPlan * *plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem,
         Kep8u *specBuffer));
KEPS_FN(KepStatus, kepsFFTInit_R_32f,
        (KepsFftPlan * *plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem,
         Kep8u *specBuffer));
KEPS_FN(KepStatus, kepsFFTInit_C_64fc,
        (KepsFftPlan * *plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem,
         Kep8u *specBuffer));
KEPS_FN(KepStatus, kepsFFTInit_C_64f,
        (KepsFftPlan * *plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem,
         Kep8u *specBuffer));
KEPS_FN(KepStatus, kepsFFTInit_R_64f,
        (KepsFftPlan * *plan, int32_t order, int32_t flag, int32_t hint, Kep8u *specMem,
         Kep8u *specBuffer));
/** @} */

/** @name Complex FFT
 * @{ */
/** Forward: X(k) = sum of x(n) exp(-2 pi i n k / N); inverse: the same with exp(+2 pi i n k / N);
 * scaled by the plan's factor where its flag says so. Interleaved forms take complex arrays, the
 * `32f` and `64f` forms real and imaginary parts in two arrays. Arrays may lie at any address; a
 * destination is its source (the `_I` forms) or does not overlap it. NaN and infinities spread by
 * the arithmetic.
 * @return #kepStatusOk; in the order of the tests: #kepStatusNullPointer for @p plan,
 * #kepStatusContextMismatch for a plan of another kind, #kepStatusNullPointer for the arrays, and
 * for @p work where the plan's work size is not 0. */
KEPS_FN(KepStatus, kepsFFTFwd_CToC_32fc,
        (const Kep32fc *src, Kep32fc *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_32fc_I,
        (Kep32fc * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_32fc,
        (const Kep32fc *src, Kep32fc *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_32fc_I,
        (Kep32fc * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_64fc,
        (const Kep64fc *src, Kep64fc *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_64fc_I,
        (Kep64fc * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_64fc,
        (const Kep64fc *src, Kep64fc *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_64fc_I,
        (Kep64fc * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_32f,
        (const Kep32f *srcRe, const Kep32f *srcIm, Kep32f *dstRe, Kep32f *dstIm,
         const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_32f_I,
        (Kep32f * re, Kep32f *im, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_32f,
        (const Kep32f *srcRe, const Kep32f *srcIm, Kep32f *dstRe, Kep32f *dstIm,
         const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_32f_I,
        (Kep32f * re, Kep32f *im, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_64f,
        (const Kep64f *srcRe, const Kep64f *srcIm, Kep64f *dstRe, Kep64f *dstIm,
         const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_CToC_64f_I,
        (Kep64f * re, Kep64f *im, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_64f,
        (const Kep64f *srcRe, const Kep64f *srcIm, Kep64f *dstRe, Kep64f *dstIm,
         const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CToC_64f_I,
        (Kep64f * re, Kep64f *im, const KepsFftPlan *plan, Kep8u *work));
/** @} */

/** @name Real FFT
 * @{ */
/** A real signal of N = 2^order points to its spectrum and back, R(k) and I(k) being the parts of
 * bin k. CCS: R(0), 0, R(1), I(1), ..., R(N/2), 0, which are N + 2 reals. Pack: R(0), R(1), I(1),
 * ..., R(N/2). Perm: R(0), R(N/2), R(1), I(1), ..., R(N/2 - 1), I(N/2 - 1). For N = 1 all hold
 * R(0), CCS a 0 behind it. The zeros of CCS are written and never read. Scaling, aliasing and
 * statuses are those of the complex transforms. */
KEPS_FN(KepStatus, kepsFFTFwd_RToCCS_32f,
        (const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToCCS_32f_I,
        (Kep32f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPack_32f,
        (const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPack_32f_I,
        (Kep32f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPerm_32f,
        (const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPerm_32f_I,
        (Kep32f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CCSToR_32f,
        (const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CCSToR_32f_I,
        (Kep32f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PackToR_32f,
        (const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PackToR_32f_I,
        (Kep32f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PermToR_32f,
        (const Kep32f *src, Kep32f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PermToR_32f_I,
        (Kep32f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToCCS_64f,
        (const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToCCS_64f_I,
        (Kep64f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPack_64f,
        (const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPack_64f_I,
        (Kep64f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPerm_64f,
        (const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTFwd_RToPerm_64f_I,
        (Kep64f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CCSToR_64f,
        (const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_CCSToR_64f_I,
        (Kep64f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PackToR_64f,
        (const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PackToR_64f_I,
        (Kep64f * srcDst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PermToR_64f,
        (const Kep64f *src, Kep64f *dst, const KepsFftPlan *plan, Kep8u *work));
KEPS_FN(KepStatus, kepsFFTInv_PermToR_64f_I,
        (Kep64f * srcDst, const KepsFftPlan *plan, Kep8u *work));
/** @} */

#endif
