/** @file
 * Element-wise functions of one argument: absolute value, square, roots, exponential, logarithm,
 * arc tangent.
 *
 * Unless a family says otherwise, its functions return #kepStatusOk, #kepStatusNullPointer or
 * #kepStatusBadLength, tested in this order, and a destination may be the source. `_Sfs` forms
 * multiply the exact value by 2^-scaleFactor, round to nearest, ties to even, and saturate. The
 * caller's rounding mode and exception masks are kept and, but in Abs and Sqr of floats, have no
 * bearing on the result.
 */
#ifndef KEPS_ELEMENTARY_H
#define KEPS_ELEMENTARY_H

#include "keps_status.h"
#include "keps_types.h"

/** @name Abs
 * @{ */
/** Absolute values. The most negative integer becomes the largest; floats lose their sign bit. */
KEPS_FN(KepStatus, kepsAbs_16s, (const Kep16s *src, Kep16s *dst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_32s, (const Kep32s *src, Kep32s *dst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_16s_I, (Kep16s * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_32s_I, (Kep32s * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_32f_I, (Kep32f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsAbs_64f_I, (Kep64f * srcDst, int32_t len));
/** @} */

/** @name Sqr
 * @{ */
/** Squares; of a + bi, a^2 - b^2 and 2ab. */
KEPS_FN(KepStatus, kepsSqr_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_32fc, (const Kep32fc *src, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_64fc, (const Kep64fc *src, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_32f_I, (Kep32f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_64f_I, (Kep64f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_32fc_I, (Kep32fc * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_64fc_I, (Kep64fc * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqr_8u_Sfs, (const Kep8u *src, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_16u_Sfs, (const Kep16u *src, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_16s_Sfs, (const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_16sc_Sfs,
        (const Kep16sc *src, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_8u_ISfs, (Kep8u * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_16u_ISfs, (Kep16u * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_16s_ISfs, (Kep16s * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqr_16sc_ISfs, (Kep16sc * srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name Sqrt
 * @{ */
/** Square roots, correctly rounded. A negative element of a real form gives NaN in a float array,
 * 0 in an integer one, and the status #kepStatusSqrtWarning; -0 is its own root. Complex roots are
 * the principal ones, with a real part of 0 or more, at any magnitude and without a warning.
 * 16-bit roots are formed in single precision, those of 32s in double; above a scale factor of 16
 * the latter are zeros without a warning. Long arrays are split between two threads. */
KEPS_FN(KepStatus, kepsSqrt_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_32fc, (const Kep32fc *src, Kep32fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_64fc, (const Kep64fc *src, Kep64fc *dst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_32f_I, (Kep32f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_64f_I, (Kep64f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_32fc_I, (Kep32fc * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_64fc_I, (Kep64fc * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsSqrt_8u_Sfs, (const Kep8u *src, Kep8u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_16u_Sfs,
        (const Kep16u *src, Kep16u *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_16s_Sfs,
        (const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_16sc_Sfs,
        (const Kep16sc *src, Kep16sc *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_32s16s_Sfs,
        (const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_8u_ISfs, (Kep8u * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_16u_ISfs, (Kep16u * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_16s_ISfs, (Kep16s * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsSqrt_16sc_ISfs, (Kep16sc * srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name Exp
 * @{ */
/** e to the power of each element. Floats: relative error at most 2^-21 in single, 2^-50 in double
 * precision; overflow gives infinity, underflow is gradual, neither has a status. */
KEPS_FN(KepStatus, kepsExp_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsExp_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsExp_32f_I, (Kep32f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsExp_64f_I, (Kep64f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsExp_16s_Sfs, (const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsExp_32s_Sfs, (const Kep32s *src, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsExp_16s_ISfs, (Kep16s * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsExp_32s_ISfs, (Kep32s * srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name Ln
 * @{ */
/** Natural logarithms. Zero gives minus infinity and #kepStatusLogWarning, a negative number NaN
 * and #kepStatusLnNegArg; integer forms put the most negative integer in both places. Of several
 * such elements the last one decides the status in float arrays, the first one in integer arrays.
 * Floats: relative error at most 2^-21 in single, 2^-50 in double precision. A negative scale
 * factor shifts the rounded logarithm, with saturation. */
KEPS_FN(KepStatus, kepsLn_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsLn_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsLn_32f_I, (Kep32f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsLn_64f_I, (Kep64f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsLn_16s_Sfs, (const Kep16s *src, Kep16s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsLn_32s_Sfs, (const Kep32s *src, Kep32s *dst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsLn_16s_ISfs, (Kep16s * srcDst, int32_t len, int scaleFactor));
KEPS_FN(KepStatus, kepsLn_32s_ISfs, (Kep32s * srcDst, int32_t len, int scaleFactor));
/** @} */

/** @name Arctan
 * @{ */
/** Arc tangents in [-pi/2, pi/2]; relative error at most 2^-21 in single, 2^-50 in double
 * precision. */
KEPS_FN(KepStatus, kepsArctan_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsArctan_64f, (const Kep64f *src, Kep64f *dst, int32_t len));
KEPS_FN(KepStatus, kepsArctan_32f_I, (Kep32f * srcDst, int32_t len));
KEPS_FN(KepStatus, kepsArctan_64f_I, (Kep64f * srcDst, int32_t len));
/** @} */

/** @name Cubrt
 * @{ */
/** Cube roots; relative error at most 2^-21. The integer form works in single precision. */
KEPS_FN(KepStatus, kepsCubrt_32f, (const Kep32f *src, Kep32f *dst, int32_t len));
KEPS_FN(KepStatus, kepsCubrt_32s16s_Sfs,
        (const Kep32s *src, Kep16s *dst, int32_t len, int scaleFactor));
/** @} */

#endif
