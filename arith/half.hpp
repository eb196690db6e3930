// Half precision: conversions by the processor's instructions (ivx), which are above AVX and are
// reached only where the companion reports them, and by plain code. Both give the same bits.
// Rounding is to nearest, or toward zero.
#pragma once

#include "frame/worker.h"

OWN_FN(void, ownkepsCnvrt_ivx_16f32f, (const Kep16f *src, Kep32f *dst, keps::size n));
OWN_FN(void, ownkepsCnvrt_ivx_32f16f,
       (const Kep32f *src, Kep16f *dst, keps::size n, bool isNearest));
OWN_FN(void, ownkepsCnvrt_ivx_16s16f,
       (const Kep16s *src, Kep16f *dst, keps::size n, bool isNearest));

OWN_FN(void, ownkepsCnvrt_16f32f, (const Kep16f *src, Kep32f *dst, keps::size n));
OWN_FN(void, ownkepsCnvrt_32f16f_Asm,
       (const Kep32f *src, Kep16f *dst, keps::size n, bool isNearest));
OWN_FN(void, ownkepsCnvrt_16s16f, (const Kep16s *src, Kep16f *dst, keps::size n, bool isNearest));
