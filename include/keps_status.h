/** @file
 * Status codes. 0 is success; a negative code is a refusal, after which nothing has been written
 * unless the function says so; a positive code is a warning beside a whole result.
 * kepGetStatusString() in kepcore.h gives each code's name and meaning as text.
 */
#ifndef KEPS_STATUS_H
#define KEPS_STATUS_H

#include <stdint.h>

/** A status code; see the constants `kepStatus...`. */
typedef int32_t KepStatus;

/* One line a code: KEP_STATUS(number, name, one plain sentence). */
#define KEP_STATUS_LIST(KEP_STATUS)                                                                \
    KEP_STATUS(0, kepStatusOk, "The call succeeded.")                                              \
    KEP_STATUS(3, kepStatusSqrtWarning, "A square root of a negative number was met.")             \
    KEP_STATUS(4, kepStatusThresholdZeroWarning, "A zero element was met with a level of 0.")      \
    KEP_STATUS(5, kepStatusEvenMaskSize,                                                           \
               "The mask size is even; the next lower odd one was used.")                          \
    KEP_STATUS(6, kepStatusDivisionWarning, "A divisor was zero; a substitute stands there.")      \
    KEP_STATUS(7, kepStatusLogWarning, "A logarithm of zero was met.")                             \
    KEP_STATUS(8, kepStatusLnNegArg, "A logarithm of a negative number was met.")                  \
    KEP_STATUS(9, kepStatusNaNWarning, "A NaN was met among the inputs.")                          \
    KEP_STATUS(-4, kepStatusSizeOverflow, "A computed size exceeds what its type can hold.")       \
    KEP_STATUS(-5, kepStatusBadArgument, "An argument is out of its range.")                       \
    KEP_STATUS(-6, kepStatusBadLength, "A length is below 1.")                                     \
    KEP_STATUS(-7, kepStatusBadMode, "A mode selector is not one of the listed values.")           \
    KEP_STATUS(-8, kepStatusNullPointer, "A required pointer is null.")                            \
    KEP_STATUS(-9, kepStatusNoMemory, "The state would not fit a 31-bit size.")                    \
    KEP_STATUS(-10, kepStatusDivideByZero, "The scalar divisor or leading coefficient is zero.")   \
    KEP_STATUS(-12, kepStatusBadDataType, "The function does not take this data type.")            \
    KEP_STATUS(-15, kepStatusBadFftOrder, "The FFT order is out of range.")                        \
    KEP_STATUS(-16, kepStatusBadFftFlag, "The scale flag is not one of the four values.")          \
    KEP_STATUS(-17, kepStatusContextMismatch, "The block is not of the kind that the call needs.") \
    KEP_STATUS(-18, kepStatusThresholdOrderError, "The lower level is above the upper level.")     \
    KEP_STATUS(-19, kepStatusNegativeThreshold, "A threshold is negative.")                        \
    KEP_STATUS(-25, kepStatusBadOrder, "The filter order is below 1.")                             \
    KEP_STATUS(-26, kepStatusBadTapsLength, "The number of taps is below 1.")                      \
    KEP_STATUS(-27, kepStatusBadRelativeFrequency, "The relative frequency is outside [0, 1).")    \
    KEP_STATUS(-28, kepStatusFIRPhaseError, "The multi-rate phase is outside [0, factor).")        \
    KEP_STATUS(-29, kepStatusFIRFactorError, "The multi-rate factor is negative.")                 \
    KEP_STATUS(-30, kepStatusSamplePhaseError, "The sample phase is outside [0, factor).")         \
    KEP_STATUS(-31, kepStatusSampleFactorError, "The sample factor is below 1.")                   \
    KEP_STATUS(-32, kepStatusBadShift, "The shift count is negative.")                             \
    KEP_STATUS(-33, kepStatusBadWindowSize, "The mask or window size is below 1.")                 \
    KEP_STATUS(-35, kepStatusWaveletOffsetError, "The delay offset is below -1.")                  \
    KEP_STATUS(-38, kepStatusBadJaehneMagnitude, "The magnitude is negative.")                     \
    KEP_STATUS(-39, kepStatusHugeWinParameter, "The window parameter would overflow.")             \
    KEP_STATUS(-40, kepStatusTriangleAsymmetryError, "The asymmetry is outside [-pi, pi).")        \
    KEP_STATUS(-41, kepStatusTrianglePhaseError, "The triangle's phase is outside [0, 2 pi).")     \
    KEP_STATUS(-42, kepStatusTriangleFrequencyError, "The frequency is outside [0, 0.5).")         \
    KEP_STATUS(-43, kepStatusTriangleMagnitudeError, "The triangle's magnitude is not positive.")  \
    KEP_STATUS(-44, kepStatusTonePhaseError, "The tone's phase is outside [0, 2 pi).")             \
    KEP_STATUS(-45, kepStatusToneFrequencyError, "The tone's frequency is outside [0, 0.5).")      \
    KEP_STATUS(-46, kepStatusToneMagnitudeError, "The tone's magnitude is not positive.")          \
    KEP_STATUS(-47, kepStatusBadChannelCount, "The number of channels is below 1.")                \
    KEP_STATUS(-53, kepStatusBadPlaneCount, "The number of planes is below 1.")                    \
    KEP_STATUS(-194, kepStatusBadSparseOffset, "A tap position is negative or out of order.")      \
    KEP_STATUS(-206, kepStatusIIRGenOrderError, "The design order is outside 1 to 12.")            \
    KEP_STATUS(-208, kepStatusIIRGenFrequencyError, "The cut-off is outside (0, 0.5).")            \
    KEP_STATUS(-209, kepStatusIIRGenRippleError, "The ripple is outside (0, 29] dB.")              \
    KEP_STATUS(-213, kepStatusBadRoundMode, "The function does not take this rounding mode.")      \
    KEP_STATUS(-228, kepStatusBadAlgorithm, "The algorithm selector is not one of its values.")    \
    KEP_STATUS(-234, kepStatusIIRIIRLengthError, "The length is below three times the order.")

/** The status codes. */
enum {
#define KEP_STATUS_CONSTANT(number, name, sentence) name = (number),
    KEP_STATUS_LIST(KEP_STATUS_CONSTANT)
#undef KEP_STATUS_CONSTANT
};

#endif
