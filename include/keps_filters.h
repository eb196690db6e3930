/** @file
 * Filters.
 */
#ifndef KEPS_FILTERS_H
#define KEPS_FILTERS_H

#include "keps_status.h"
#include "keps_types.h"

/** @name Single-rate FIR
 * `dst[i]` is the sum of `taps[k] * s[i - k]` over all taps, where `s` is @p src and, before it,
 * the @p tapsLen - 1 samples of the delay vector @p dlySrc, oldest first. Complex taps are not
 * conjugated. A stream is cut into calls of any length by handing each call's @p dlyDst to the next
 * one as its @p dlySrc; for a 64-tap filter over blocks of 4096 samples:
 *
 *     int32_t specSize, bufSize;
 *     kepsFIRSRGetSize(64, kepType32f, &specSize, &bufSize);
 *     Kep8u *spec = kepsMalloc_8u(specSize), *buf = kepsMalloc_8u(bufSize);
 *     kepsFIRSRInit_32f(taps, 64, kepAlgorithmAuto, spec);
 *     // for each block
 *     kepsFIRSR_32f(src, dst, 4096, spec, past, future, buf);
 *     // exchange past and future
 *
 * The spec block is constant once it is made: streams and threads may share it, each with its own
 * delay vectors and work buffer. It holds pointers into itself and so cannot be moved. Blocks
 * carry no mark of their element type; that it fits the function is the caller's word.
 * @{ */
/** Sizes in bytes of the spec block and the work buffer of a filter of @p tapsLen taps, for every
 * #KepAlgorithm. Neither needs an alignment. The 16-bit forms take those of `32f` and `32fc`.
 * @param tapsLen   number of taps; sizes beyond 31 bits wrap
 * @param tapsType  #kepType32f, #kepType32fc, #kepType64f or #kepType64fc
 * @param specSize  size of the spec block
 * @param bufSize   size of the work buffer
 * @return #kepStatusOk; #kepStatusBadLength when @p tapsLen is below 1; #kepStatusBadDataType;
 * #kepStatusNullPointer. */
KEPS_FN(KepStatus, kepsFIRSRGetSize,
        (int32_t tapsLen, int32_t tapsType, int32_t *specSize, int32_t *bufSize));
/** @} */

/** @name Single-rate FIR: Init
 * @{ */
/** Makes a filter in the memory at @p spec, of the size that kepsFIRSRGetSize() gave.
 * @p taps are in natural order, `taps[0]` for the newest sample; they are not kept.
 * @param algType  a #KepAlgorithm: #kepAlgorithmDirect sums products on every call,
 * #kepAlgorithmFft filters by overlap-save on every call, and #kepAlgorithmAuto takes the FFT from
 * 32 taps and 256 samples a call on (`64f`: 62 and 512; complex: 18 and 128)
 * @return #kepStatusOk; #kepStatusBadLength when @p tapsLen is below 1; #kepStatusNullPointer;
 * #kepStatusBadAlgorithm; the FFT's refusal of an order that it doesn't have. */
KEPS_FN(KepStatus, kepsFIRSRInit_32f,
        (const Kep32f *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec));
KEPS_FN(KepStatus, kepsFIRSRInit_64f,
        (const Kep64f *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec));
KEPS_FN(KepStatus, kepsFIRSRInit_32fc,
        (const Kep32fc *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec));
KEPS_FN(KepStatus, kepsFIRSRInit_64fc,
        (const Kep64fc *taps, int32_t tapsLen, uint32_t algType, Kep8u *spec));
/** @} */

/** @name Single-rate FIR: filtering
 * @{ */
/** Filters @p numIters samples.
 *
 * @p dlySrc may be null: the past is silence. @p dlyDst may be null: nothing is kept; else it
 * receives the last `tapsLen - 1` samples of the stream, and may be @p dlySrc. @p dst may be
 * @p src or @p dlySrc exactly; otherwise arrays don't overlap. @p buf is free again after the call.
 *
 * Sums of products run from the oldest sample to the newest (`64f` with more than 8 taps: even and
 * odd products apart, joined for every 64 taps), so direct results don't depend on where a stream
 * is cut but for that type; results of the FFT path agree within rounding. Horizontal tables,
 * `32f` from 32 taps and `64f` from 9 taps on, multiply samples near an output by zeros, so an
 * infinity or NaN can spread to outputs that it does not belong to, up to 7 places further.
 *
 * The 16-bit forms take a spec block of `32f` or `32fc`, compute in that type by direct sums
 * whatever its algorithm, and round once, to nearest, saturating.
 * @return #kepStatusOk; #kepStatusNullPointer for @p spec, @p src, @p dst or @p buf;
 * #kepStatusBadLength when @p numIters is below 1. */
KEPS_FN(KepStatus, kepsFIRSR_32f,
        (const Kep32f *src, Kep32f *dst, int32_t numIters, const Kep8u *spec, const Kep32f *dlySrc,
         Kep32f *dlyDst, Kep8u *buf));
KEPS_FN(KepStatus, kepsFIRSR_64f,
        (const Kep64f *src, Kep64f *dst, int32_t numIters, const Kep8u *spec, const Kep64f *dlySrc,
         Kep64f *dlyDst, Kep8u *buf));
KEPS_FN(KepStatus, kepsFIRSR_32fc,
        (const Kep32fc *src, Kep32fc *dst, int32_t numIters, const Kep8u *spec,
         const Kep32fc *dlySrc, Kep32fc *dlyDst, Kep8u *buf));
KEPS_FN(KepStatus, kepsFIRSR_64fc,
        (const Kep64fc *src, Kep64fc *dst, int32_t numIters, const Kep8u *spec,
         const Kep64fc *dlySrc, Kep64fc *dlyDst, Kep8u *buf));
KEPS_FN(KepStatus, kepsFIRSR_16s,
        (const Kep16s *src, Kep16s *dst, int32_t numIters, const Kep8u *spec, const Kep16s *dlySrc,
         Kep16s *dlyDst, Kep8u *buf));
KEPS_FN(KepStatus, kepsFIRSR_16sc,
        (const Kep16sc *src, Kep16sc *dst, int32_t numIters, const Kep8u *spec,
         const Kep16sc *dlySrc, Kep16sc *dlyDst, Kep8u *buf));
/** @} */

#endif
