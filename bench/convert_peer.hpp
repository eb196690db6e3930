// Plain loops of conversions: scaled, rounded to nearest, saturated.
#pragma once

#include "keps_types.h"

namespace peer {

void convert(const float *src, Kep8s *dst, int n, float scale);
void convert(const float *src, Kep8u *dst, int n, float scale);
void convert(const float *src, Kep16u *dst, int n, float scale);
void convert(const float *src, Kep32s *dst, int n, float scale);
void convert(const double *src, Kep16s *dst, int n, double scale);
void convert(const double *src, Kep32s *dst, int n, double scale);
void convert(const double *src, Kep64s *dst, int n, double scale);
void convertScaled(const Kep16s *src, float *dst, int n, float scale);
void convertScaled(const Kep32s *src, float *dst, int n, float scale);
void convertScaled(const Kep32s *src, double *dst, int n, double scale);

// To nearest, ties to even, bits from 1 to 31.
void shiftDown(const Kep32s *src, Kep16s *dst, int n, int bits);
void shiftDown(const Kep16s *src, Kep8s *dst, int n, int bits);
void shiftDown(const Kep64s *src, Kep32s *dst, int n, int bits);
void narrow(const Kep32s *src, Kep16s *dst, int n);

// Packed 24 bits.
void unpack24(const Kep8u *src, Kep32s *dst, int n);
void unpack24(const Kep8u *src, float *dst, int n);
void pack24(const float *src, Kep8u *dst, int n, float scale);
void pack24(const Kep32s *src, Kep8u *dst, int n);

} // namespace peer

namespace half_peer {

// By the processor's instructions, as a compiler makes them of the plain loop.
void fromHalf(const Kep16f *src, float *dst, int n);
void toHalf(const float *src, Kep16f *dst, int n);

} // namespace half_peer
