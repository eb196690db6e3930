// Plain loops of the division family: zero divisors get the substitutes of ours.
#pragma once

#include "keps_types.h"

namespace peer {

// Quotients times scale, rounded to nearest and saturated; the first array is the divisor.
void divide(const Kep8u *src1, const Kep8u *src2, Kep8u *dst, int n, float scale);
void divide(const Kep16s *src1, const Kep16s *src2, Kep16s *dst, int n, float scale);
void divide(const Kep32s *src1, const Kep32s *src2, Kep32s *dst, int n, double scale);
void divide(const Kep16sc *src1, const Kep16sc *src2, Kep16sc *dst, int n, double scale);
void divide(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int n);
void divide(const Kep64fc *src1, const Kep64fc *src2, Kep64fc *dst, int n);
void divideBy(const Kep16s *src, Kep16s val, Kep16s *dst, int n, float scale);
void divideBy(const Kep8u *src, Kep8u val, Kep8u *dst, int n, float scale);

// What the divide unit takes: n quotients in vectors of 32 bytes, nothing around them.
void divideUnitFloats(int n);
void divideUnitDoubles(int n);

} // namespace peer
