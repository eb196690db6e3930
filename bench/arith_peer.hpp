// The plain loops of the arithmetic and conversion families: what a compiler makes of them. Like
// ours they may be called in place, so nothing promises the compiler separate arrays.
#pragma once

#include "keps_types.h"

namespace peer {

void mulC(const float *src, float val, float *dst, int n);
void mul(const Kep32fc *src1, const Kep32fc *src2, Kep32fc *dst, int n);
void mulPerm(const float *src1, const float *src2, float *dst, int n);
void convert(const Kep16s *src, float *dst, int n);
void convert(const float *src, Kep16s *dst, int n, float scale);

} // namespace peer
