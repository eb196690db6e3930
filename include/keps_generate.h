/** @file
 * Signal generation: random numbers.
 */
#ifndef KEPS_GENERATE_H
#define KEPS_GENERATE_H

#include "keps_status.h"
#include "keps_types.h"

/** A stream of uniform random numbers: a record in the caller's memory, at any address, of the size
 * that GetSize reports. */
typedef struct KepRandUniformState KepRandUniformState;
/** A stream of normally distributed random numbers, likewise. */
typedef struct KepRandGaussState KepRandGaussState;

/** @name RandUniform
 * @{ */
/** GetSize gives a state's bytes; Init starts a stream; the fill functions write @p len values
 * between @p low and @p high, the same however a stream is cut into calls. The values are
 * (low + high) / 2 + (high - low) 2^-32 r with r a 32-bit integer: a subtract-with-borrow generator
 * plus a congruential one; integers are rounded to nearest. Limits are not tested; with high below
 * low the range is run through backwards. One thread at a time may use a state.
 *
 * Status: #kepStatusNullPointer; #kepStatusBadLength; #kepStatusContextMismatch when the state was
 * not made for the type. */
KEPS_FN(KepStatus, kepsRandUniformGetSize_8u, (int *size));
KEPS_FN(KepStatus, kepsRandUniformGetSize_16s, (int *size));
KEPS_FN(KepStatus, kepsRandUniformGetSize_32f, (int *size));
KEPS_FN(KepStatus, kepsRandUniformGetSize_64f, (int *size));
KEPS_FN(KepStatus, kepsRandUniformInit_8u,
        (KepRandUniformState * state, Kep8u low, Kep8u high, unsigned seed));
KEPS_FN(KepStatus, kepsRandUniformInit_16s,
        (KepRandUniformState * state, Kep16s low, Kep16s high, unsigned seed));
KEPS_FN(KepStatus, kepsRandUniformInit_32f,
        (KepRandUniformState * state, Kep32f low, Kep32f high, unsigned seed));
KEPS_FN(KepStatus, kepsRandUniformInit_64f,
        (KepRandUniformState * state, Kep64f low, Kep64f high, unsigned seed));
KEPS_FN(KepStatus, kepsRandUniform_8u, (Kep8u * dst, int32_t len, KepRandUniformState *state));
KEPS_FN(KepStatus, kepsRandUniform_16s, (Kep16s * dst, int32_t len, KepRandUniformState *state));
KEPS_FN(KepStatus, kepsRandUniform_32f, (Kep32f * dst, int32_t len, KepRandUniformState *state));
KEPS_FN(KepStatus, kepsRandUniform_64f, (Kep64f * dst, int32_t len, KepRandUniformState *state));
/** @} */

/** @name RandGauss
 * @{ */
/** As RandUniform, with values of mean @p mean and standard deviation @p stdDev by the polar
 * method; integers are rounded and saturated. A value of a pair that a call has no place for is
 * kept for the next one, where its last place may come out otherwise than in an uncut fill. */
KEPS_FN(KepStatus, kepsRandGaussGetSize_8u, (int *size));
KEPS_FN(KepStatus, kepsRandGaussGetSize_16s, (int *size));
KEPS_FN(KepStatus, kepsRandGaussGetSize_32f, (int *size));
KEPS_FN(KepStatus, kepsRandGaussGetSize_64f, (int *size));
KEPS_FN(KepStatus, kepsRandGaussInit_8u,
        (KepRandGaussState * state, Kep8u mean, Kep8u stdDev, unsigned seed));
KEPS_FN(KepStatus, kepsRandGaussInit_16s,
        (KepRandGaussState * state, Kep16s mean, Kep16s stdDev, unsigned seed));
KEPS_FN(KepStatus, kepsRandGaussInit_32f,
        (KepRandGaussState * state, Kep32f mean, Kep32f stdDev, unsigned seed));
KEPS_FN(KepStatus, kepsRandGaussInit_64f,
        (KepRandGaussState * state, Kep64f mean, Kep64f stdDev, unsigned seed));
KEPS_FN(KepStatus, kepsRandGauss_8u, (Kep8u * dst, int32_t len, KepRandGaussState *state));
KEPS_FN(KepStatus, kepsRandGauss_16s, (Kep16s * dst, int32_t len, KepRandGaussState *state));
KEPS_FN(KepStatus, kepsRandGauss_32f, (Kep32f * dst, int32_t len, KepRandGaussState *state));
KEPS_FN(KepStatus, kepsRandGauss_64f, (Kep64f * dst, int32_t len, KepRandGaussState *state));
/** @} */

#endif
