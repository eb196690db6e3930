/** @file
 * Element-wise arithmetic and conversion.
 *
 * Unless a family says otherwise, its functions return #kepStatusOk, #kepStatusNullPointer or
 * #kepStatusBadLength, tested in this order, and a destination may be one of the sources.
 *
 * Scale factors. Where a function takes a `scaleFactor`, the exact integer result is multiplied by
 * 2^-scaleFactor, rounded to nearest with ties to even, and saturated to the target's range; the
 * parts of complex results each on their own. Every 32-bit scale factor is lawful.
 */
#ifndef KEPS_ARITH_H
#define KEPS_ARITH_H

#include "keps_status.h"
#include "keps_types.h"

/** @name Add
 * @{ */
/** dst[i] = src1[i] + src2[i]; in place srcDst[i] = src[i] + srcDst[i]. The complex forms refuse a
 * bad length ahead of null pointers. */
KEPS_FN(KepStatus, kepsAdd_32f, (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_64f, (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_32fc,
        (const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_32fc_I, (const Kep32fc *src, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_64fc,
        (const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_64fc_I, (const Kep64fc *src, Kep64fc *srcDst, int32_t len));
/** Integer sums under the rule of scale factors. Forms without one saturate; `8u16u` holds every
 * sum, `16s32f` is exact. */
KEPS_FN(KepStatus, kepsAdd_8u_Sfs,
        (const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_8u_ISfs,
        (const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16s_ISfs,
        (const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16u_Sfs,
        (const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16u_ISfs,
        (const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_32s_Sfs,
        (const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_32s_ISfs,
        (const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16sc_Sfs,
        (const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16sc_ISfs,
        (const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_32sc_Sfs,
        (const Kep32sc *src1, const Kep32sc *src2, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_32sc_ISfs,
        (const Kep32sc *src, Kep32sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAdd_16s, (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_16s_I, (const Kep16s *src, Kep16s *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_16s32f,
        (const Kep16s *src1, const Kep16s *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_16u, (const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_32u, (const Kep32u *src1, const Kep32u *src2, Kep32u *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_8u16u, (const Kep8u *src1, const Kep8u *src2, Kep16u *dst, int32_t len));
KEPS_FN(KepStatus, kepsAdd_16s32s_I, (const Kep16s *src, Kep32s *srcDst, int32_t len));
/** @} */

/** @name Sub
 * @{ */
/** dst[i] = src2[i] - src1[i]; in place srcDst[i] = srcDst[i] - src[i]. The complex forms refuse a
 * bad length ahead of null pointers. */
KEPS_FN(KepStatus, kepsSub_32f, (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSub_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSub_64f, (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSub_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSub_32fc,
        (const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSub_32fc_I, (const Kep32fc *src, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSub_64fc,
        (const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSub_64fc_I, (const Kep64fc *src, Kep64fc *srcDst, int32_t len));
/** Integer differences under the rule of scale factors; `16s32f` is exact. */
KEPS_FN(KepStatus, kepsSub_8u_Sfs,
        (const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_8u_ISfs,
        (const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16s_ISfs,
        (const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16u_Sfs,
        (const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16u_ISfs,
        (const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_32s_Sfs,
        (const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_32s_ISfs,
        (const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16sc_Sfs,
        (const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16sc_ISfs,
        (const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_32sc_Sfs,
        (const Kep32sc *src1, const Kep32sc *src2, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_32sc_ISfs,
        (const Kep32sc *src, Kep32sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSub_16s, (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsSub_16s_I, (const Kep16s *src, Kep16s *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSub_16s32f,
        (const Kep16s *src1, const Kep16s *src2, Kep32f *dst, int32_t len));
/** @} */

/** @name Mul
 * @{ */
/** dst[i] = src1[i] * src2[i]; in place srcDst[i] = src[i] * srcDst[i]. Complex products are
 * (re1 re2 - im1 im2, im1 re2 + re1 im2), each part two rounded products and one rounded sum. */
KEPS_FN(KepStatus, kepsMul_32f, (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMul_64f, (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMul_32fc,
        (const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_32fc_I, (const Kep32fc *src, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMul_64fc,
        (const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_64fc_I, (const Kep64fc *src, Kep64fc *srcDst, int32_t len));
/** Integer products under the rule of scale factors; `8u16u` holds every product, `16s32f` rounds
 * it to float, `16u16s` takes an unsigned and a signed array. A real times a complex array
 * multiplies both parts. */
KEPS_FN(KepStatus, kepsMul_8u_Sfs,
        (const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_8u_ISfs,
        (const Kep8u *src, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16s_ISfs,
        (const Kep16s *src, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16u_Sfs,
        (const Kep16u *src1, const Kep16u *src2, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16u_ISfs,
        (const Kep16u *src, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_32s_Sfs,
        (const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_32s_ISfs,
        (const Kep32s *src, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16sc_Sfs,
        (const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16sc_ISfs,
        (const Kep16sc *src, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_32sc_Sfs,
        (const Kep32sc *src1, const Kep32sc *src2, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_32sc_ISfs,
        (const Kep32sc *src, Kep32sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16s, (const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_16s_I, (const Kep16s *src, Kep16s *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMul_16s32f,
        (const Kep16s *src1, const Kep16s *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_8u16u, (const Kep8u *src1, const Kep8u *src2, Kep16u *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_16s32s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_16u16s_Sfs,
        (const Kep16u *src1, const Kep16s *src2, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMul_32f32fc,
        (const Kep32f *src1, const Kep32fc *src2, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMul_32f32fc_I, (const Kep32f *src, Kep32fc *srcDst, int32_t len));
/** @} */

/** @name AddC
 * @{ */
/** dst[i] = src[i] + val; in place srcDst[i] = srcDst[i] + val. A real float constant of 0 copies.
 */
KEPS_FN(KepStatus, kepsAddC_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_64f, (const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_64f_I, (Kep64f val, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_32fc, (const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_32fc_I, (Kep32fc val, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_64fc, (const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsAddC_64fc_I, (Kep64fc val, Kep64fc *srcDst, int32_t len));
/** Integers under the rule of scale factors. A constant of 0 at scale factor 0 copies. */
KEPS_FN(KepStatus, kepsAddC_8u_Sfs,
        (const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_8u_ISfs, (Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16s_Sfs,
        (const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16s_ISfs, (Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16u_Sfs,
        (const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16u_ISfs, (Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_32s_Sfs,
        (const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_32s_ISfs, (Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16sc_Sfs,
        (const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16sc_ISfs,
        (Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_32sc_Sfs,
        (const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_32sc_ISfs,
        (Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddC_16s_I, (Kep16s val, Kep16s *srcDst, int32_t len));
/** @} */

/** @name SubC
 * @{ */
/** dst[i] = src[i] - val; in place srcDst[i] = srcDst[i] - val. A real float constant of 0 copies.
 */
KEPS_FN(KepStatus, kepsSubC_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_64f, (const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_64f_I, (Kep64f val, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_32fc, (const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_32fc_I, (Kep32fc val, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_64fc, (const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubC_64fc_I, (Kep64fc val, Kep64fc *srcDst, int32_t len));
/** Integers under the rule of scale factors. A constant of 0 at scale factor 0 copies. */
KEPS_FN(KepStatus, kepsSubC_8u_Sfs,
        (const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_8u_ISfs, (Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16s_Sfs,
        (const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16s_ISfs, (Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16u_Sfs,
        (const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16u_ISfs, (Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_32s_Sfs,
        (const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_32s_ISfs, (Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16sc_Sfs,
        (const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16sc_ISfs,
        (Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_32sc_Sfs,
        (const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_32sc_ISfs,
        (Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubC_16s_I, (Kep16s val, Kep16s *srcDst, int32_t len));
/** @} */

/** @name SubCRev
 * @{ */
/** dst[i] = val - src[i]; in place srcDst[i] = val - srcDst[i]. */
KEPS_FN(KepStatus, kepsSubCRev_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_64f, (const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_64f_I, (Kep64f val, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_32fc, (const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_32fc_I, (Kep32fc val, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_64fc, (const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSubCRev_64fc_I, (Kep64fc val, Kep64fc *srcDst, int32_t len));
/** Integers under the rule of scale factors. */
KEPS_FN(KepStatus, kepsSubCRev_8u_Sfs,
        (const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_8u_ISfs, (Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_16s_Sfs,
        (const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_16s_ISfs,
        (Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_16u_Sfs,
        (const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_16u_ISfs,
        (Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_32s_Sfs,
        (const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_32s_ISfs,
        (Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_16sc_Sfs,
        (const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_16sc_ISfs,
        (Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_32sc_Sfs,
        (const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSubCRev_32sc_ISfs,
        (Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name MulC
 * @{ */
/** dst[i] = src[i] * val; in place srcDst[i] = srcDst[i] * val. A real float factor of 1 copies; a
 * factor of 0, of either sign, writes zeros even where the source is infinite or NaN. */
KEPS_FN(KepStatus, kepsMulC_32f, (const Kep32f *src, Kep32f val, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_32f_I, (Kep32f val, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_64f, (const Kep64f *src, Kep64f val, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_64f_I, (Kep64f val, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_32fc, (const Kep32fc *src, Kep32fc val, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_32fc_I, (Kep32fc val, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_64fc, (const Kep64fc *src, Kep64fc val, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_64fc_I, (Kep64fc val, Kep64fc *srcDst, int32_t len));
/** Integers under the rule of scale factors. A constant of 0 writes zeros, 1 at scale factor 0
 * copies. `32f16s` multiplies in float, then scales, rounds to nearest with ties to even and
 * saturates; `Low` rounds by the current rounding mode and doesn't scale. */
KEPS_FN(KepStatus, kepsMulC_8u_Sfs,
        (const Kep8u *src, Kep8u val, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_8u_ISfs, (Kep8u val, Kep8u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16s_Sfs,
        (const Kep16s *src, Kep16s val, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16s_ISfs, (Kep16s val, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16u_Sfs,
        (const Kep16u *src, Kep16u val, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16u_ISfs, (Kep16u val, Kep16u *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_32s_Sfs,
        (const Kep32s *src, Kep32s val, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_32s_ISfs, (Kep32s val, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16sc_Sfs,
        (const Kep16sc *src, Kep16sc val, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16sc_ISfs,
        (Kep16sc val, Kep16sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_32sc_Sfs,
        (const Kep32sc *src, Kep32sc val, Kep32sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_32sc_ISfs,
        (Kep32sc val, Kep32sc *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_16s_I, (Kep16s val, Kep16s *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulC_32f16s_Sfs,
        (const Kep32f *src, Kep32f val, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsMulC_Low_32f16s, (const Kep32f *src, Kep32f val, Kep16s *dst, int32_t len));
/** @} */

/** @name 64-bit integers
 * @{ */
/** dst[i] = src1[i] + src2[i] under the rule of scale factors, with one exception: at scale factors
 * from 2 to 63, a sum of 0 or above whose operands are neither both positive nor both negative
 * gives 0 where it is a tie. From 64 on all results are 0. */
KEPS_FN(KepStatus, kepsAdd_64s_Sfs,
        (const Kep64s *src1, const Kep64s *src2, Kep64s *dst, int32_t len, int scaleFactor));
/** dst[i] = src[i] + val, times 2^-scaleFactor, rounded by @p rndMode (a #KepRoundMode; values
 * other than 0 and 1 round ties away from zero), saturated. The length counts as unsigned: only 0
 * is bad. */
KEPS_FN(KepStatus, kepsAddC_64s_Sfs,
        (const Kep64s *src, Kep64s val, Kep64s *dst, int32_t len, int scaleFactor, int rndMode));
KEPS_FN(KepStatus, kepsAddC_64u_Sfs,
        (const Kep64u *src, Kep64u val, Kep64u *dst, int32_t len, int scaleFactor, int rndMode));
/** srcDst[i] = srcDst[i] * val under the rule of scale factors. */
KEPS_FN(KepStatus, kepsMulC_64s_ISfs, (Kep64s val, Kep64s *srcDst, int32_t len, int scaleFactor));
/** srcDst[i] = srcDst[i] * val in double precision, times 2^-scaleFactor, rounded to nearest with
 * ties to even, saturated. The length counts as unsigned: only 0 is bad. */
KEPS_FN(KepStatus, kepsMulC_64f64s_ISfs,
        (Kep64f val, Kep64s *srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name AddProduct
 * @{ */
/** srcDst[i] = srcDst[i] + src1[i] * src2[i] (AddProductC: + src[i] * val), the product rounded
 * ahead of the sum. */
KEPS_FN(KepStatus, kepsAddProduct_32f,
        (const Kep32f *src1, const Kep32f *src2, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddProduct_64f,
        (const Kep64f *src1, const Kep64f *src2, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddProduct_32fc,
        (const Kep32fc *src1, const Kep32fc *src2, Kep32fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddProduct_64fc,
        (const Kep64fc *src1, const Kep64fc *src2, Kep64fc *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAddProductC_32f,
        (const Kep32f *src, Kep32f val, Kep32f *srcDst, int32_t len));
/** srcDst[i] + src1[i] * src2[i], exact, under the rule of scale factors. */
KEPS_FN(KepStatus, kepsAddProduct_16s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep16s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddProduct_16s32s_Sfs,
        (const Kep16s *src1, const Kep16s *src2, Kep32s *srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsAddProduct_32s_Sfs,
        (const Kep32s *src1, const Kep32s *src2, Kep32s *srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name MulPack, MulPerm
 * @{ */
/** Products of two packed spectra of real signals of @p len points, bin by bin, in the order of the
 * complex Mul; MulPackConj takes the conjugate of srcDst. Pack holds R(0), the pairs R(k), I(k)
 * and, for even @p len, R(len/2); Perm holds R(0), for even @p len R(len/2), then the pairs. Where
 * @p dst is one of the sources, the in-place form is called ahead of all tests. */
KEPS_FN(KepStatus, kepsMulPack_32f,
        (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulPack_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulPack_64f,
        (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulPack_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulPerm_32f,
        (const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulPerm_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulPerm_64f,
        (const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsMulPerm_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulPackConj_32f_I, (const Kep32f *src, Kep32f *srcDst, int32_t len));
KEPS_FN(KepStatus, kepsMulPackConj_64f_I, (const Kep64f *src, Kep64f *srcDst, int32_t len));
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
KEPS_FN(KepStatus, kepsConvert_8s16s, (const Kep8s *src, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_8s32f, (const Kep8s *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_8u32f, (const Kep8u *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_16s32s, (const Kep16s *src, Kep32s *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_16s32f, (const Kep16s *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_16u32f, (const Kep16u *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_32s64f, (const Kep32s *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_32f64f, (const Kep32f *src, Kep64f *dst, int32_t len));
/** Rounded by the caller's current rounding mode. */
KEPS_FN(KepStatus, kepsConvert_32s32f, (const Kep32s *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_64s64f, (const Kep64s *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_64f32f, (const Kep64f *src, Kep32f *dst, int32_t len));
/** Saturated. */
KEPS_FN(KepStatus, kepsConvert_32s16s, (const Kep32s *src, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_8s8u, (const Kep8s *src, Kep8u *dst, int32_t len));
/** dst[i] = src[i] * 2^-scaleFactor in the target's float arithmetic: `32s32f` rounds ahead of the
 * scaling, and a result beyond the type's range is an infinity or 0. */
KEPS_FN(KepStatus, kepsConvert_16s32f_Sfs,
        (const Kep16s *src, Kep32f *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_16s64f_Sfs,
        (const Kep16s *src, Kep64f *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32s32f_Sfs,
        (const Kep32s *src, Kep32f *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32s64f_Sfs,
        (const Kep32s *src, Kep64f *dst, int32_t len, int scaleFactor));
/** dst[i] = src[i] * 2^-scaleFactor, rounded to nearest, ties to even, and saturated. */
KEPS_FN(KepStatus, kepsConvert_32s16s_Sfs,
        (const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor));
/** dst[i] = src[i] * 2^-scaleFactor, rounded and saturated. @p rndMode is a #KepRoundMode; any
 * value but 0 and 1 rounds ties away from zero. */
KEPS_FN(KepStatus, kepsConvert_16s8s_Sfs,
        (const Kep16s *src, Kep8s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_8u8s_Sfs,
        (const Kep8u *src, Kep8s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64s32s_Sfs,
        (const Kep64s *src, Kep32s *dst, int32_t len, int rndMode, int scaleFactor));
/** dst[i] = src[i] * 2^-scaleFactor, rounded and saturated. @p rndMode is a #KepRoundMode; any
 * value but 0 and 1 rounds ties away from zero. NaN becomes the smallest value of the target.
 *
 * `64f64s` takes @p len as an unsigned count and refuses 0 only; ties-away rounding there adds one
 * half in double, and products that would be subnormal are 0. */
KEPS_FN(KepStatus, kepsConvert_32f8s_Sfs,
        (const Kep32f *src, Kep8s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32f8u_Sfs,
        (const Kep32f *src, Kep8u *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32f16s_Sfs,
        (const Kep32f *src, Kep16s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32f16u_Sfs,
        (const Kep32f *src, Kep16u *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32f32s_Sfs,
        (const Kep32f *src, Kep32s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64f8s_Sfs,
        (const Kep64f *src, Kep8s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64f8u_Sfs,
        (const Kep64f *src, Kep8u *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64f16s_Sfs,
        (const Kep64f *src, Kep16s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64f16u_Sfs,
        (const Kep64f *src, Kep16u *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64f32s_Sfs,
        (const Kep64f *src, Kep32s *dst, int32_t len, int rndMode, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_64f64s_Sfs,
        (const Kep64f *src, Kep64s *dst, int32_t len, int rndMode, int scaleFactor));
/** Packed 24-bit samples, 3 bytes each, the low byte first; the value is the integer, unscaled. */
KEPS_FN(KepStatus, kepsConvert_24s32s, (const Kep8u *src, Kep32s *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_24s32f, (const Kep8u *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_24u32u, (const Kep8u *src, Kep32u *dst, int32_t len));
KEPS_FN(KepStatus, kepsConvert_24u32f, (const Kep8u *src, Kep32f *dst, int32_t len));
/** To packed 24-bit samples: dst[i] = src[i] * 2^-scaleFactor, rounded to nearest, ties to even,
 * and saturated. NaN becomes the smallest value. */
KEPS_FN(KepStatus, kepsConvert_32s24s_Sfs,
        (const Kep32s *src, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32u24u_Sfs,
        (const Kep32u *src, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32f24s_Sfs,
        (const Kep32f *src, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsConvert_32f24u_Sfs,
        (const Kep32f *src, Kep8u *dst, int32_t len, int scaleFactor));
/** From half precision; exact. */
KEPS_FN(KepStatus, kepsConvert_16f32f, (const Kep16f *src, Kep32f *dst, int32_t len));
/** To half precision, to nearest with @p rndMode 1, else toward zero, where what is too large stops
 * at 65504; but mode 2 is refused with #kepStatusBadRoundMode, behind pointers and length. */
KEPS_FN(KepStatus, kepsConvert_32f16f, (const Kep32f *src, Kep16f *dst, int32_t len, int rndMode));
KEPS_FN(KepStatus, kepsConvert_16s16f, (const Kep16s *src, Kep16f *dst, int32_t len, int rndMode));
/** dst[i] = src[i] * 2^-scaleFactor, saturated; modes as to half precision. NaN becomes -32768. */
KEPS_FN(KepStatus, kepsConvert_16f16s_Sfs,
        (const Kep16f *src, Kep16s *dst, int32_t len, int rndMode, int scaleFactor));
/** @} */

#endif
