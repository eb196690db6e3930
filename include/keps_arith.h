/** @file
 * Element-wise arithmetic and conversion.
 *
 * Unless a family says otherwise, its functions return #kepStatusOk, #kepStatusNullPointer or
 * #kepStatusBadLength, tested in this order, and a destination may be one of the sources.
 */
#ifndef KEPS_ARITH_H
#define KEPS_ARITH_H

#include "keps_status.h"
#include "keps_types.h"

/** @name Mul
 * @{ */
/** dst[i] = src1[i] * src2[i]; in place srcDst[i] = src[i] * srcDst[i]. Complex products are
 * (re1 re2 - im1 im2, im1 re2 + re1 im2), each part two rounded products and one rounded sum. */
KEPS_FN(KepStatus, kepsMul_32fc,
        (const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_32fc_I, (const Kep32fc *src, Kep32fc *srcDst, int32_t len));
/** @} */

/** @name MulC
 * @{ */
/** dst[i] = src[i] * val; in place srcDst[i] = srcDst[i] * val. A real float factor of 1 copies; a
 * factor of 0, of either sign, writes zeros even where the source is infinite or NaN. */
KEPS_FN(KepStatus, kepsMulC_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
/** @} */

/** @name MulPack, MulPerm
 * @{ */
/** Products of two packed spectra of real signals of @p len points, bin by bin, in the order of the
 * complex Mul. Perm holds R(0), for even @p len R(len/2), then the pairs R(k), I(k). Where @p dst
 * is one of the sources, the in-place form is called ahead of all tests. */
KEPS_FN(KepStatus, kepsMulPerm_32f,
        (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulPerm_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
/** @} */

/** @name Convert
 * @{ */
/** Exact. */
KEPS_FN(KepStatus, kepsConvert_16s32f, (const Kep16s *src, Kep32f *dst, int32_t len));
/** dst[i] = src[i] * 2^-scaleFactor, rounded and saturated. @p rndMode is a #KepRoundMode; any
 * value but 0 and 1 rounds ties away from zero. NaN becomes the smallest value of the target. */
KEPS_FN(KepStatus, kepsConvert_32f16s_Sfs,
        (const Kep32f *src, Kep16s *dst, int32_t len, int rndMode, int scaleFactor));
/** @} */

#endif
