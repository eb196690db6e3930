// The private transcendental kernels: entries named for their accuracy in bits, and behind them a
// dispatch table for each function with a low-accuracy, a high-accuracy and an enhanced-performance
// kernel. All take len of 1 or more unchecked, dst may be src, and all return 0 or the last
// non-zero code met:
//   12 overflow, 17 underflow, 18 singularity, 19 outside the domain.
// A value does not depend on its place in the array; the vector control register is as found.
#pragma once

#include "frame/worker.h"

#define OWN_TABLE(kernel, name)                                                                    \
    extern "C" [[gnu::visibility("hidden")]] kernel *const name[3] __asm__("e9_" #name)

namespace keps::vmath {

inline constexpr int overflow = 12, underflow = 17, singularity = 18, domain = 19;

using Unary32 = int(const Kep32f *src, Kep32f *dst, int32_t len);
using Unary64 = int(const Kep64f *src, Kep64f *dst, int32_t len);
using Binary32 = int(const Kep32f *src1, const Kep32f *src2, Kep32f *dst, int32_t len);
using Binary64 = int(const Kep64f *src1, const Kep64f *src2, Kep64f *dst, int32_t len);
using Pair32 = int(const Kep32f *src, Kep32f *dstSin, Kep32f *dstCos, int32_t len);
using Pair64 = int(const Kep64f *src, Kep64f *dstSin, Kep64f *dstCos, int32_t len);

namespace slot {
enum { low, high, enhanced, count };
}

} // namespace keps::vmath

// Kernels: own_keps_<kind><function>_E9<level>, levels LAynn, HAynn, EPnnn; and their tables.
OWN_FN(int, own_keps_sSin_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_sCos_E9HAynn, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, own_keps_dSin_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, own_keps_dCos_E9HAynn, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_TABLE(keps::vmath::Unary32, own_keps_sSin_E9_ttab);
OWN_TABLE(keps::vmath::Unary32, own_keps_sCos_E9_ttab);
OWN_TABLE(keps::vmath::Unary64, own_keps_dSin_E9_ttab);
OWN_TABLE(keps::vmath::Unary64, own_keps_dCos_E9_ttab);

// Entries. A21, A50: relative error at most 2^-21, 2^-50; A24, A53: at most 1 unit in the last
// place; A26: relative error at most 2^-26.
OWN_FN(int, kepsSin_32f_A24, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsCos_32f_A24, (const Kep32f *src, Kep32f *dst, int32_t len));
OWN_FN(int, kepsSin_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
OWN_FN(int, kepsCos_64f_A53, (const Kep64f *src, Kep64f *dst, int32_t len));
