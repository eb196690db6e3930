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

/** @name Div
 * @{ */
/** dst[i] = src2[i] / src1[i]: the first array is the divisor; in place srcDst[i] /= src[i].
 * Integer results are the quotient times 2^-scaleFactor, rounded to nearest, ties to even, and
 * saturated; `32s` quotients go through double, complex ones through the reciprocal of |src1[i]|^2
 * in double. Float results are those of IEEE division; complex floats are sums times a reciprocal
 * of |src1[i]|^2, which takes a bit or two of accuracy.
 *
 * A zero divisor puts a substitute there and makes the call return #kepStatusDivisionWarning:
 * integers give the limit of the dividend's sign, or 0 for a dividend of 0, and (0, 0) for `16sc`;
 * real floats give an infinity, or NaN; complex floats give NaN in both parts, also where the
 * squared magnitude has underflowed to 0. The scale factors of `16sc` outside -32 to 32 settle
 * results: above, dst is cleared before the divisors are looked at; below, the sums are formed in
 * wrapping 32 bits. Long arrays are shared by two threads. */
KEPS_FN(KepStatus, kepsDiv_8u_Sfs,
        (const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_8u_ISfs,
        (const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_16u_Sfs,
        (const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_16u_ISfs,
        (const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_16s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_16s_ISfs,
        (const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_32s_Sfs,
        (const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_32s_ISfs,
        (const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_16sc_Sfs,
        (const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_16sc_ISfs,
        (const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_32s16s_Sfs,
        (const Kep16s *src1, const Kep32s *src2, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_32f, (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_64f, (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_32fc,
        (const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_32fc_I, (const Kep32fc *src, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_64fc,
        (const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsDiv_64fc_I, (const Kep64fc *src, Kep64fc *srcDst, int32_t len));
/** @} */

/** @name Div_Round
 * @{ */
/** As Div of integers, with a #KepRoundMode; the quotient is formed in float. Any other mode is
 * refused with #kepStatusBadRoundMode, behind pointers and length. Long arrays are shared by as
 * many threads as are allowed. */
KEPS_FN(KepStatus, kepsDiv_Round_8u_Sfs,
        (const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int rndMode,
         int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_Round_8u_ISfs,
        (const Kep8u *src, Kep8u *srcDst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_Round_16u_Sfs,
        (const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int rndMode,
         int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_Round_16u_ISfs,
        (const Kep16u *src, Kep16u *srcDst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_Round_16s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int rndMode,
         int scaleFactor));
KEPS_FN(KepStatus, kepsDiv_Round_16s_ISfs,
        (const Kep16s *src, Kep16s *srcDst, int32_t len, int rndMode, int scaleFactor));
/** @} */

/** @name DivC
 * @{ */
/** dst[i] = src[i] / val; in place srcDst[i] /= val. A @p val of 0, of either sign, is refused with
 * #kepStatusDivideByZero, behind pointers and length; complex ones when both parts are 0. Real
 * integer results are exact as in Div; complex ones take the reciprocal of |val|^2 in double. Float
 * elements are multiplied by the reciprocal of @p val, as MulC does: a reciprocal of 1 copies, one
 * of 0 writes zeros. Long integer arrays are shared by two threads.
 *
 * `16u`: with a @p scaleFactor above 16 or below -31 only @p src is tested ahead of the Zero or Set
 * that fills @p dst, and the constant 1 with scale factor 0 is a Copy. */
KEPS_FN(KepStatus, kepsDivC_8u_Sfs,
        (const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_8u_ISfs, (Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_16u_Sfs,
        (const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_16u_ISfs, (Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_16s_Sfs,
        (const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_16s_ISfs, (Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_16sc_Sfs,
        (const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_16sc_ISfs,
        (Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsDivC_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_64f, (const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_64f_I, (Kep64f val, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_32fc, (const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_32fc_I, (Kep32fc val, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_64fc, (const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsDivC_64fc_I, (Kep64fc val, Kep64fc *srcDst, int32_t len));
/** srcDst[i] = srcDst[i] / val * 2^-scaleFactor, exact for every scale factor. Here a @p val of 0
 * gives each element's limit by its sign, 0 for 0, and returns #kepStatusDivisionWarning. */
KEPS_FN(KepStatus, kepsDivC_64s_ISfs, (Kep64s val, Kep64s *srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name DivCRev
 * @{ */
/** dst[i] = val / src[i]; in place srcDst[i] = val / srcDst[i]. `16u` rounds to nearest, ties to
 * even, and gives 65535 for a zero element, 0 for any element when @p val is 0; `32f` is IEEE
 * division. A zero element makes the call return #kepStatusDivisionWarning. Long arrays are shared
 * by two threads. */
KEPS_FN(KepStatus, kepsDivCRev_16u, (const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len));
KEPS_FN(KepStatus, kepsDivCRev_16u_I, (Kep16u val, Kep16u *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsDivCRev_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsDivCRev_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
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
