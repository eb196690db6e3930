/** @file
 * Element types, selectors and the declaration macro of the keps library.
 *
 * A code in a function's name is an element type: `16s` is #Kep16s, `32fc` is #Kep32fc, and so on.
 * Lengths count elements of the named type. Any byte address is lawful for an element pointer.
 */
#ifndef KEPS_TYPES_H
#define KEPS_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
#define KEPS_EXTERN extern "C"
#else
#define KEPS_EXTERN extern
#endif

/* Every exported function is one KEPS_FN line in its room's header. Readers other than callers
 * define the macro themselves: the library's units (frame/worker.h) and the stub maker. */
#ifndef KEPS_FN
#define KEPS_FN(result, name, arguments) KEPS_EXTERN result name arguments
#endif

typedef uint8_t Kep8u;   /**< unsigned sample, and the unit for raw bytes */
typedef int8_t Kep8s;    /**< signed sample */
typedef uint16_t Kep16u; /**< unsigned sample */
typedef int16_t Kep16s;  /**< signed sample */
typedef uint16_t Kep16f; /**< IEEE 754 binary16, a storage format: converted, never computed with */
typedef uint32_t Kep32u; /**< unsigned sample */
typedef int32_t Kep32s;  /**< signed sample */
typedef float Kep32f;    /**< IEEE 754 binary32 sample */
typedef uint64_t Kep64u; /**< unsigned sample */
typedef int64_t Kep64s;  /**< signed sample */
typedef double Kep64f;   /**< IEEE 754 binary64 sample */

/** Complex sample of two #Kep8s; exists as an allocation type only. */
typedef struct {
    Kep8s re; /**< real part */
    Kep8s im; /**< imaginary part */
} Kep8sc;
/** Complex sample of two #Kep16s. */
typedef struct {
    Kep16s re; /**< real part */
    Kep16s im; /**< imaginary part */
} Kep16sc;
/** Complex sample of two #Kep32s. */
typedef struct {
    Kep32s re; /**< real part */
    Kep32s im; /**< imaginary part */
} Kep32sc;
/** Complex sample of two #Kep64s. */
typedef struct {
    Kep64s re; /**< real part */
    Kep64s im; /**< imaginary part */
} Kep64sc;
/** Complex sample of two #Kep32f. */
typedef struct {
    Kep32f re; /**< real part */
    Kep32f im; /**< imaginary part */
} Kep32fc;
/** Complex sample of two #Kep64f. */
typedef struct {
    Kep64f re; /**< real part */
    Kep64f im; /**< imaginary part */
} Kep64fc;

/** Selector of an element type in size queries. Each function lists the values that it takes. */
typedef enum {
    kepType8u = 1,    /**< #Kep8u */
    kepType16u = 5,   /**< #Kep16u */
    kepType16s = 7,   /**< #Kep16s */
    kepType32u = 9,   /**< #Kep32u */
    kepType32s = 11,  /**< #Kep32s */
    kepType32f = 13,  /**< #Kep32f */
    kepType32fc = 14, /**< #Kep32fc */
    kepType64u = 15,  /**< #Kep64u */
    kepType64s = 17,  /**< #Kep64s */
    kepType64f = 19,  /**< #Kep64f */
    kepType64fc = 20  /**< #Kep64fc */
} KepDataType;

/** Rounding of a result that the target type cannot hold exactly. */
typedef enum {
    kepRoundTowardZero = 0, /**< truncation */
    kepRoundNearest = 1,    /**< to nearest, ties to even */
    kepRoundHalfAway = 2    /**< to nearest, ties away from zero */
} KepRoundMode;

/** Choice of method in FIR filters, convolution and correlation. */
typedef enum {
    kepAlgorithmAuto = 0,   /**< direct or by FFT, by fixed thresholds */
    kepAlgorithmDirect = 1, /**< sums of products only */
    kepAlgorithmFft = 2     /**< by FFT on every call */
} KepAlgorithm;

/** Scaling of Fourier transforms of N points; exactly one of these values. */
typedef enum {
    kepFftScaleForwardByN = 1, /**< forward results are divided by N */
    kepFftScaleInverseByN = 2, /**< inverse results are divided by N */
    kepFftScaleBySqrtN = 4,    /**< results of both directions are divided by sqrt(N) */
    kepFftScaleNone = 8        /**< no scaling */
} KepFftScale;

#endif
